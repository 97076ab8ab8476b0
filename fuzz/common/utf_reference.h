// Plain UTF-8 decoding and encoding for the checks of the fuzz targets, written without the
// library's own walks so that the two can be compared.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ic::fuzz {

/// The code points of well-formed UTF-8 (shortest forms, no surrogates, at most U+10FFFF), or
/// nothing for any other input.
inline std::optional<std::u32string> DecodeWellFormedUtf8(const std::string& text) {
  std::u32string out;
  for (size_t i = 0; i < text.size();) {
    const auto byte = [&](size_t k) { return static_cast<uint8_t>(text[k]); };
    const uint8_t lead = byte(i);
    size_t n;
    uint32_t cp;
    if (lead < 0x80) {
      n = 0;
      cp = lead;
    } else if (lead >= 0xc2 && lead <= 0xdf) {
      n = 1;
      cp = lead & 0x1f;
    } else if (lead >= 0xe0 && lead <= 0xef) {
      n = 2;
      cp = lead & 0x0f;
    } else if (lead >= 0xf0 && lead <= 0xf4) {
      n = 3;
      cp = lead & 0x07;
    } else {
      return std::nullopt;
    }
    if (i + n >= text.size() && n != 0) return std::nullopt;
    for (size_t k = 1; k <= n; ++k) {
      if ((byte(i + k) & 0xc0) != 0x80) return std::nullopt;
      cp = (cp << 6) | (byte(i + k) & 0x3f);
    }
    const uint32_t minimum[] = {0, 0x80, 0x800, 0x10000};
    if (cp < minimum[n] || cp > 0x10ffff || (cp >= 0xd800 && cp <= 0xdfff)) return std::nullopt;
    out.push_back(cp);
    i += n + 1;
  }
  return out;
}

/// The UTF-8 form of Unicode scalar values; nothing when one is a surrogate or above U+10FFFF.
inline std::optional<std::string> EncodeUtf8(const std::u32string& codePoints) {
  std::string out;
  for (char32_t c : codePoints) {
    const uint32_t cp = c;
    if (cp < 0x80) {
      out += static_cast<char>(cp);
    } else if (cp < 0x800) {
      out += static_cast<char>(0xc0 | cp >> 6);
      out += static_cast<char>(0x80 | (cp & 0x3f));
    } else if (cp < 0x10000) {
      if (cp >= 0xd800 && cp <= 0xdfff) return std::nullopt;
      out += static_cast<char>(0xe0 | cp >> 12);
      out += static_cast<char>(0x80 | (cp >> 6 & 0x3f));
      out += static_cast<char>(0x80 | (cp & 0x3f));
    } else if (cp <= 0x10ffff) {
      out += static_cast<char>(0xf0 | cp >> 18);
      out += static_cast<char>(0x80 | (cp >> 12 & 0x3f));
      out += static_cast<char>(0x80 | (cp >> 6 & 0x3f));
      out += static_cast<char>(0x80 | (cp & 0x3f));
    } else {
      return std::nullopt;
    }
  }
  return out;
}

}  // namespace ic::fuzz

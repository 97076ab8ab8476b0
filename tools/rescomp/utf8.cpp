#include "utf8.h"

namespace ic::rescomp {

std::optional<std::u32string> DecodeUtf8(std::string_view bytes) {
  std::u32string out;
  out.reserve(bytes.size());
  std::size_t i = 0;
  while (i < bytes.size()) {
    const auto lead = static_cast<unsigned char>(bytes[i]);
    if (lead < 0x80) {
      out.push_back(lead);
      ++i;
      continue;
    }
    char32_t codePoint = 0;
    std::size_t extra = 0;
    char32_t smallest = 0;
    if ((lead & 0xE0) == 0xC0) {
      codePoint = lead & 0x1F;
      extra = 1;
      smallest = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
      codePoint = lead & 0x0F;
      extra = 2;
      smallest = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
      codePoint = lead & 0x07;
      extra = 3;
      smallest = 0x10000;
    } else {
      return std::nullopt;
    }
    if (bytes.size() - i <= extra) return std::nullopt;
    for (std::size_t k = 1; k <= extra; ++k) {
      const auto next = static_cast<unsigned char>(bytes[i + k]);
      if ((next & 0xC0) != 0x80) return std::nullopt;
      codePoint = (codePoint << 6) | (next & 0x3F);
    }
    if (codePoint < smallest || codePoint > 0x10FFFF ||
        (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
      return std::nullopt;
    }
    out.push_back(codePoint);
    i += extra + 1;
  }
  return out;
}

void AppendUtf8(std::string& out, char32_t codePoint) {
  if (codePoint < 0x80) {
    out.push_back(static_cast<char>(codePoint));
  } else if (codePoint < 0x800) {
    out.push_back(static_cast<char>(0xC0 | (codePoint >> 6)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  } else if (codePoint < 0x10000) {
    out.push_back(static_cast<char>(0xE0 | (codePoint >> 12)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  } else {
    out.push_back(static_cast<char>(0xF0 | (codePoint >> 18)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F)));
    out.push_back(static_cast<char>(0x80 | (codePoint & 0x3F)));
  }
}

std::string ToUtf8(std::u32string_view codePoints) {
  std::string out;
  out.reserve(codePoints.size());
  for (char32_t c : codePoints)
    AppendUtf8(out, c);
  return out;
}

std::u16string ToUtf16(std::u32string_view codePoints) {
  std::u16string out;
  out.reserve(codePoints.size());
  for (char32_t c : codePoints) {
    if (c < 0x10000) {
      out.push_back(static_cast<char16_t>(c));
    } else {
      const char32_t offset = c - 0x10000;
      out.push_back(static_cast<char16_t>(0xD800 + (offset >> 10)));
      out.push_back(static_cast<char16_t>(0xDC00 + (offset & 0x3FF)));
    }
  }
  return out;
}

}  // namespace ic::rescomp

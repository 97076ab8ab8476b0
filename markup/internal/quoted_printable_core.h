// The text work of the quoted-printable encoder over 16-bit units, writing into a sink with
// Add(const char16_t*, int32_t count, int32_t unread) and StepBack().
#pragma once

#include <cstdint>

#include <ic/number/number_format.h>

namespace ic::internal {

/// Encodes the `length` units at `text` in the quoted-printable style into `sink`: tab and
/// printable ASCII other than '=' pass (a '.' only inside a line), CR LF ends a line (a blank
/// just before it is encoded), a lone CR ends a line with CR LF, anything else becomes '=' and
/// upper-case hex digits (two at least). A soft break "=\r\n" follows the first piece that finds
/// the line at 70 units or more. `unread` tells the sink how many input units remain.
template <class Sink>
void EncodeQuotedPrintableTo(const char16_t* text, int32_t length, Sink& sink) {
  static constexpr char16_t kEquals[] = u"=";
  static constexpr StringHexFormatOptions<char16_t> kHex{true, kEquals, 3, u'0'};
  static constexpr char16_t kLineEnd[] = u"\r\n";
  static constexpr char16_t kSoftBreak[] = u"=\r\n";
  int32_t lineLength = 0;
  char16_t previous = 0;
  char16_t piece[16];
  for (int32_t i = 0; i < length; ++i) {
    const char16_t c = text[i];
    const int32_t unread = length - i - 1;
    int n;
    if (c == u'\t' || (c >= 0x20 && c <= 0x2D) || (c >= 0x2F && c <= 0x3C) ||
        (c >= 0x3E && c <= 0x7E) || (c == u'.' && lineLength != 0)) {
      piece[0] = c;
      n = 1;
    } else if (c == u'\n' && previous == u'\r') {
      continue;  // the pair was written with the carriage return; previous stays CR
    } else if (c == u'\r') {
      if (previous == u' ' || previous == u'\t') {
        sink.StepBack();  // a trailing blank never ends a line: it is written encoded
        FormatHex(piece, 16, previous, 2, kHex);
        piece[3] = u'\r';
        piece[4] = u'\n';
        sink.Add(piece, 5, unread);
      } else {
        sink.Add(kLineEnd, 2, unread);
      }
      lineLength = 0;
      previous = c;
      continue;
    } else {
      FormatHex(piece, 16, c, 2, kHex);
      n = 0;
      while (piece[n] != 0)
        ++n;
    }
    sink.Add(piece, n, unread);
    if (lineLength >= 70) {
      sink.Add(kSoftBreak, 3, unread);
      lineLength = 0;
    } else {
      lineLength += n;
    }
    previous = c;
  }
}

}  // namespace ic::internal

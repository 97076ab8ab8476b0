// A short tour of the string shapes: prints what each one holds and how it owns its block.
#include <cstdio>

#include <ic/string/ic_string.h>
#include <ic/string/inline.h>

int main() {
  ic::ICStringShared first("shared text");
  ic::ICStringShared second = first;  // one block, two owners
  std::printf("shared: \"%s\" and \"%s\", same block: %s\n", first.GetText(), second.GetText(),
              first.GetText() == second.GetText() ? "yes" : "no");

  const char* foreign = "a tail that nobody copied";
  ic::ICStringView view(foreign + 2);
  std::printf("view: \"%s\" (length %d, owns a block: %s)\n", view.GetText(), view.GetLength(),
              view.OwnsBlock() ? "yes" : "no");

  ic::ICStringInline<16> small("fits inline");
  std::printf("inline: \"%s\" in its own buffer: %s\n", small.GetText(),
              small.IsInBuffer() ? "yes" : "no");

  ic::ICStringUnique unique(char32_t{0x4e2d});  // one CJK character, three UTF-8 bytes
  std::printf("unique from a code point: %d bytes\n", unique.GetLength());
  return 0;
}

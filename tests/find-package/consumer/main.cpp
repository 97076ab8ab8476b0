// Uses the installed headers and library: builds strings of two shapes and checks them.
#include <cstdio>
#include <cstring>

#include <ic/string/ic_string.h>
#include <ic/string/inline.h>

int main() {
  ic::ICStringShared shared("installed");
  ic::ICStringShared copy = shared;
  ic::ICStringInlineW<8> wide(u"wide");
  const bool ok = copy.GetText() == shared.GetText() && copy.GetLength() == 9 &&
                  wide.IsInBuffer() && wide.GetLength() == 4;
  std::puts(ok ? "consumer ok" : "consumer FAILED");
  return ok ? 0 : 1;
}

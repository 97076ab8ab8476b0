// genunicode --blocks FILE --unicode-data FILE --property-value-aliases FILE --scripts FILE
//            --script-extensions FILE --out FILE
//
// Writes the constant data of the Unicode tables of the text library. Run by the build; see
// table_data.h.
#include <iostream>
#include <string>
#include <vector>

#include "table_data.h"

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  return ic::genunicode::RunGenunicode(args, std::cerr);
}

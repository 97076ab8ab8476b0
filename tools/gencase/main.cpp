// gencase --unicode-data FILE --case-folding FILE --out FILE
//
// Writes the case table source of the text library. Run by the build; see case_data.h.
#include <iostream>
#include <string>
#include <vector>

#include "case_data.h"

int main(int argc, char** argv) {
  const std::vector<std::string> args(argv + 1, argv + argc);
  return ic::gencase::RunGencase(args, std::cerr);
}

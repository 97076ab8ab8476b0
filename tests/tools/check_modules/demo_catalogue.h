// A language module made by hand, for the check of a module against a reference module: one
// catalogue "demo" whose rows a source file lists. Each module's source defines its rows and
// one DemoCatalogue of them; the resource runtime linked into the module exports the chain.
#pragma once

#include <cstdint>

#include <ic/resources/library.h>

namespace ic::test {

struct DemoRow {
  const char16_t* key;
  const char16_t* text;
};

template <const DemoRow* Rows, int32_t Count>
class DemoCatalogue {
 public:
  DemoCatalogue() : _record(u"demo", &Text, &Key, Count, nullptr, nullptr, 0) {}

 private:
  static const char16_t* Key(const resources::ResourceStringLibrary*, int32_t row) {
    return row >= 0 && row < Count ? Rows[row].key : nullptr;
  }
  static const char16_t* Text(const resources::ResourceStringLibrary*, int32_t row) {
    return row >= 0 && row < Count ? Rows[row].text : nullptr;
  }

  resources::ResourceStringLibrary _record;
};

}  // namespace ic::test

// One load, use and unload of the language module, and the allocator's count of bytes in use:
// the pieces of the tests that load the module many times and check that nothing stays.
#pragma once

#include <cstddef>

#include <gtest/gtest.h>
#include <ic/resources/library.h>

#include "heap_usage.h"
#include "loaded_module.h"
#include "module_paths.h"

namespace ic::test {

/// Expects the allocator to hold fewer bytes than `limit`. Under AddressSanitizer the allocator
/// keeps no such statistics; its leak check at exit covers these runs instead.
inline void ExpectBytesInUseBelow(size_t limit) {
#if defined(__SANITIZE_ADDRESS__)
  (void)limit;
#else
  const size_t inUse = BytesInUse();
  EXPECT_LT(inUse, limit) << "in use " << inUse;
#endif
}

/// Loads, uses and unloads the module, building key indices and setting the language, so that
/// every kind of allocation that the module makes is made once.
inline void UseModuleOnce() {
  LoadedModule module(ModulePath);
  ASSERT_TRUE(module.IsLoaded()) << module.Error();
  const auto chain = module.Chain();
  ASSERT_EQ(chain.size(), 13u);
  EXPECT_EQ(module.Language(false), u"en");  // each load has a fresh manager
  module.setLanguage(u"Deutsch");
  for (resources::ResourceStringLibrary* record : chain)
    module.buildKeyIndex(record);
  EXPECT_EQ(module.findRow(module.Find(u"xml"), u"wfc_GIMatch"),
            module.Find(u"xml")->KeyIndex.at(u"wfc_GIMatch"));
  ASSERT_TRUE(module.Unload());
  EXPECT_FALSE(IsModuleMapped(ModulePath));
}

}  // namespace ic::test

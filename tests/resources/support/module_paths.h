// Where the tests find the built module, the catalogue sources, the row listing and (in the
// tests of the host tool) the built icres; the build sets them as compile definitions.
#pragma once

namespace ic::test {

inline constexpr const char* ModulePath = IC_TEST_MODULE_PATH;
inline constexpr const char* CatalogueSourceDir = IC_TEST_CATALOGUE_DIR;
inline constexpr const char* CatalogueRowsPath = IC_TEST_CATALOGUE_ROWS;

#if defined(IC_TEST_ICRES_PATH)
inline constexpr const char* IcresPath = IC_TEST_ICRES_PATH;
#endif

}  // namespace ic::test

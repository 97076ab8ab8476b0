# The Debian package of the installed tree: cpack -G DEB in the build folder (after the build)
# writes ictext_<version>_<arch>.deb with everything under /usr.
set(CPACK_PACKAGE_NAME "ictext")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_CONTACT "ictext developers <ictext@example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX "/usr")
set(CPACK_GENERATOR "DEB")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION "libdevel")
# The module, the shared library and icres need the C and C++ run-times only.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6, libstdc++6, libgcc-s1")
set(CPACK_SOURCE_IGNORE_FILES "/build/;/\\\\.git/")
include(CPack)

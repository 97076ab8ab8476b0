# Builds the Debian package of the build tree with CPack, unpacks it into a scratch root with
# dpkg-deb -x and runs the unpacked icres, which must find the unpacked module from its own
# folder. Variables: BUILD_DIR, WORK_DIR, CPACK, DPKG_DEB.
file(REMOVE_RECURSE "${WORK_DIR}")

include("${CMAKE_CURRENT_LIST_DIR}/run_step.cmake")

run("cpack" "${CPACK}" -G DEB --config "${BUILD_DIR}/CPackConfig.cmake" -B "${WORK_DIR}/package")
file(GLOB debs "${WORK_DIR}/package/*.deb")
list(LENGTH debs n)
if(NOT n EQUAL 1)
  message(FATAL_ERROR "expected one .deb, found: ${debs}")
endif()
run("dpkg-deb -x" "${DPKG_DEB}" -x "${debs}" "${WORK_DIR}/root")

set(icres "${WORK_DIR}/root/usr/bin/icres")
unset(ENV{ICRES_MODULE})
run("icres module" "${icres}" module)
file(GLOB_RECURSE module "${WORK_DIR}/root/usr/*icres_zh.*")
if(NOT out STREQUAL "${module}\tinstalled\n")
  message(FATAL_ERROR "the unpacked icres loads another module: ${out}")
endif()
run("icres get" "${icres}" get xml wfc_GIMatch etag=b stag=a)
if(NOT out STREQUAL "结束标记名称b与开始标记名称a不匹配。\n")
  message(FATAL_ERROR "icres get printed: ${out}")
endif()

# A translator's checks with what the package holds: a catalogue source and the module, each
# against itself, find nothing.
set(xml "${WORK_DIR}/root/usr/share/ictext/catalogues/xml.xml")
run("icres check of a source" "${icres}" check "${xml}" --ref "${xml}")
run("icres check of the module" "${icres}" check "${module}" --ref "${module}")
if(NOT out STREQUAL "")
  message(FATAL_ERROR "icres check of the module found: ${out}")
endif()

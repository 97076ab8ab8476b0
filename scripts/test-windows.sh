#!/usr/bin/env bash
# Builds the library, the language module and the test suite for Windows with MinGW-w64 and runs
# the tests under wine: 64-bit (preset windows-x64) always; 32-bit (windows-x86) where the 32-bit
# wine installs, else the x86 build is made and only its module's export table is checked.
#
# Steps: Debian packages (compilers, wine), GoogleTest cross-built from /usr/src/googletest, the
# host tools (preset host-tools: rescomp, gencase, genunicode run on this machine), then each
# Windows preset: configure, build everything, ctest with wine as CMAKE_CROSSCOMPILING_EMULATOR
# in a throw-away WINEPREFIX. The whole test suite is built for Windows except the tests of the
# host tools (the resource compiler and icres run on the build machine, where the Linux presets
# test them).
# Usage: scripts/test-windows.sh [x64|x86 ...]   (default: x64 x86)
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)
start=$(date +%s)
arches=("$@")
((${#arches[@]})) || arches=(x64 x86)

jobs=$(nproc 2>/dev/null || echo 2)

sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive

installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"; }
install_missing() {
  local missing=()
  for p in "$@"; do installed "$p" || missing+=("$p"); done
  ((${#missing[@]})) || return 0
  echo "test-windows: installing ${missing[*]}"
  "${sudo_cmd[@]}" apt-get update -qq
  "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# The native build's packages (the host tools need expat), then the Windows ones.
scripts/setup.sh
install_missing g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix wine64 wine googletest

# 32-bit wine needs the i386 architecture; without it x86 is built and its exports checked only.
wine32_ok=0
if [[ " ${arches[*]} " == *" x86 "* ]]; then
  if ! installed wine32:i386; then
    if ! dpkg --print-foreign-architectures | grep -qx i386; then
      "${sudo_cmd[@]}" dpkg --add-architecture i386 || true
    fi
    "${sudo_cmd[@]}" apt-get update -qq || true
    "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends wine32:i386 || true
  fi
  installed wine32:i386 && wine32_ok=1
fi

wine_bin=$(command -v wine || command -v wine64)
wine_prefix=$(mktemp -d /tmp/ictext-wineprefix.XXXXXX)
trap 'wineserver -k >/dev/null 2>&1 || true; rm -rf "$wine_prefix"' EXIT
export WINEPREFIX="$wine_prefix" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="

echo "=== host tools"
cmake --preset host-tools >/dev/null
cmake --build --preset host-tools -j "$jobs"

# Tests of the behaviour that the platform layer gives itself off Windows, where Windows answers
# with its own: the Unicode mapping of the wide case functions (the C run-time maps by its
# locale), the 16-bit formatter compared with glibc's narrow one and glibc's rounding of a
# halfway "%.1f", and the C99 length "hh" (the run-time's formatter takes it as "h"). On Windows the differential tests hold the library's own converters, wide case
# rules and 16-bit formatter against the system's instead.
posix_contract="WideRuntimeTest.MapsLettersBeyondAscii:WideRuntimeTest.DoesNotDependOnTheProcessLocale"
posix_contract+=":WideRuntimeTest.LowerAndUpperCaseInPlace"
posix_contract+=":WideRuntimeTest.ComparesIgnoringCase:WideFormat.MatchesTheNarrowFormatterOnRandomSpecs"
posix_contract+=":BoundedFormatWide.NumbersFormatAsInTheNarrowForm"
posix_contract+=":BoundedFormatNarrow.TakesTheLengthOfACharacter"
# The absolute heap limit of the thousand-cycle test was set for glibc's statistics; on Windows
# LeavesNoMoreOnTheHeapThanABareModule measures the module against a bare DLL linked the same way.
posix_contract+=":LanguageModuleLifetimeTest.LoadAndUnloadAThousandTimes"
# Wine loads its built-in kernel32 for any path that ends in that name; Windows does not.
posix_contract+=":DynamicLibraryTest.FailuresGiveAnEmptyObjectAndAReason"

declare -A triple=([x64]=x86_64-w64-mingw32 [x86]=i686-w64-mingw32)
declare -A toolchain=([x64]=mingw-w64-x86_64 [x86]=mingw-w64-i686)

for arch in "${arches[@]}"; do
  t=${triple[$arch]}
  gtest_prefix="$root/build/googletest-$arch"
  if [ ! -f "$gtest_prefix/lib/cmake/GTest/GTestConfig.cmake" ]; then
    echo "=== $arch: GoogleTest from /usr/src/googletest"
    cmake -S /usr/src/googletest -B "$root/build/googletest-$arch-build" -G Ninja \
      -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchains/${toolchain[$arch]}.cmake" \
      -DCMAKE_BUILD_TYPE=Release -Dgtest_disable_pthreads=OFF \
      -DCMAKE_INSTALL_PREFIX="$gtest_prefix" >/dev/null
    cmake --build "$root/build/googletest-$arch-build" -j "$jobs" >/dev/null
    cmake --install "$root/build/googletest-$arch-build" >/dev/null
  fi

  run_tests=1
  [ "$arch" = x64 ] || run_tests=$wine32_ok
  emulator=()
  if ((run_tests)); then
    emulator=(-DCMAKE_CROSSCOMPILING_EMULATOR="$root/scripts/wine-emulator.sh")
    # The first start of a prefix takes a while; do it before the tests count time.
    "$wine_bin" cmd /c exit >/dev/null 2>&1 || true
  fi
  echo "=== windows-$arch: configure"
  cmake --preset "windows-$arch" -DGTest_DIR="$gtest_prefix/lib/cmake/GTest" "${emulator[@]}" \
    -DIC_GTEST_EXCLUDE="$posix_contract" >/dev/null
  if ((run_tests)); then
    echo "=== windows-$arch: build"
    cmake --build --preset "windows-$arch" -j "$jobs"
    echo "=== windows-$arch: test (wine)"
    echo "    not run here, as they check the contract of the platform layer off Windows, where"
    echo "    Windows answers with its own (platform/README.md, \"Where the platforms differ\"):"
    echo "    ${posix_contract//:/ }"
    ctest --preset "windows-$arch" --output-on-failure
    # Each test program is one CTest test here; the tests inside them, as GoogleTest counts them:
    grep -h '^\[  PASSED  \]' "$root"/build/windows-$arch/Testing/Temporary/LastTest.log |
      awk '{ n += $4 } END { print "    GoogleTest tests passed under wine: " n }' || true
  else
    echo "=== windows-$arch: 32-bit wine is not installable here: building the module and checking"
    echo "    its export table only; the x86 test programs are not run"
    cmake --build --preset "windows-$arch" -j "$jobs" --target icres_zh
    ctest --preset "windows-$arch" -R '^module_export_table$'
  fi
done
echo "=== test-windows: done in $(( $(date +%s) - start )) s"

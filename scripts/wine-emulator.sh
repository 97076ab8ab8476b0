#!/usr/bin/env bash
# Runs a Windows program under wine for CMake and CTest (CMAKE_CROSSCOMPILING_EMULATOR). The
# program's C run-time writes text-mode line ends, "\r\n"; they become "\n", so that GoogleTest's
# test listing reads as it does on Linux. The program's exit status is kept.
set -o pipefail
wine "$@" | sed -u 's/\r$//'

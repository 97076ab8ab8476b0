#!/usr/bin/env bash
# Sets up the machine, builds the release preset and runs the main job: the host tool
# icres loads the language module and lists its catalogues. Arguments go to icres
# (default: "list"), e.g. scripts/run.sh get xml wfc_GIMatch etag=b stag=a
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
cmake --preset release >/dev/null
cmake --build --preset release -j "$(nproc 2>/dev/null || echo 2)" >/dev/null
((${#@})) || set -- list
exec build/release/tools/icres/icres "$@"

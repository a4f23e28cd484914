#!/usr/bin/env bash
# Installs what is missing and builds into the build folder (BUILD_DIR, default build);
# the program and its data files land in its bin folder, the program folder.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
build=${BUILD_DIR:-build}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$(nproc)"

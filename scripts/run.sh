#!/usr/bin/env bash
# Installs what is missing and builds the calendar into build/bin, its program folder.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
build=${BUILD_DIR:-build}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$(nproc)"
echo "Built into $build/bin. The main window is not part of the program yet, so nothing starts."

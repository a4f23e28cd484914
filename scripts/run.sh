#!/usr/bin/env bash
# Installs what is missing, builds the calendar into build/bin (its program folder) and
# starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
build=${BUILD_DIR:-build}
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$build" -j"$(nproc)"
exec "$build/bin/orva-calendar"

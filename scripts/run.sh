#!/usr/bin/env bash
# Installs what is missing, builds the calendar into build/bin (its program folder) and
# starts it.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
build=${BUILD_DIR:-build}
exec "$build/bin/orva-calendar"

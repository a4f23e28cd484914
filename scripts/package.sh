#!/usr/bin/env bash
# Installs what is missing and builds the Debian package into the package build folder
# (PACKAGE_BUILD_DIR, default build-deb): orva-calendar_VERSION_ARCH.deb.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
build=${PACKAGE_BUILD_DIR:-build-deb}
# The program alone, built like the tests' build so that the compiler cache serves it.
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVA_PACKAGE=ON \
    -DCMAKE_INSTALL_PREFIX=/usr -DORVA_PACKAGE_VERSION= \
    -DORVA_BUILD_TESTS=OFF -DORVA_BUILD_TOOLS=OFF -DORVA_BUILD_BENCH=OFF >/dev/null
cmake --build "$build" -j"$(nproc)"
rm -f "$build"/orva-calendar_*.deb
(cd "$build" && cpack -G DEB)

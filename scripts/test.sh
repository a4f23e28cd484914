#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test headless. Then, unless ORVA_QUICK is
# set, runs the unit tests again built with AddressSanitizer and UndefinedBehaviorSanitizer,
# each fuzz target for 30 seconds on its corpus, and the Debian package's test.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh
build=${BUILD_DIR:-build}
export QT_QPA_PLATFORM=offscreen
export XDG_RUNTIME_DIR=$(mktemp -d)
chmod 700 "$XDG_RUNTIME_DIR"
fuzzwork=$(mktemp -d)
trap 'rm -rf "$XDG_RUNTIME_DIR" "$fuzzwork"' EXIT
ctest --test-dir "$build" --output-on-failure -j"$(nproc)" | tee "$fuzzwork/ctest.log"
# The run's last line sums up the tests, whatever stages follow.
summary() {
    sed -n 's/^[0-9]*% tests passed, \([0-9]*\) tests failed out of \([0-9]*\)$/\2 \1/p' \
        "$fuzzwork/ctest.log" | awk '{print "tests: " $1 - $2 " passed, " $2 " failed"}'
}
if [ -n "${ORVA_QUICK:-}" ]; then
    summary
    exit 0
fi

echo "== unit tests under AddressSanitizer and UndefinedBehaviorSanitizer"
# Qt is not instrumented: leaks that are provably Qt's or the system's are suppressed in
# scripts/lsan.supp. The tests that need a real X server run in the plain build only.
# Built with clang, the fuzz targets' compiler too.
asan=${ASAN_BUILD_DIR:-build-asan}
sanitize="-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer"
cmake -S . -B "$asan" -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_FLAGS="$sanitize" \
    -DCMAKE_EXE_LINKER_FLAGS="-fsanitize=address,undefined" \
    -DORVA_BUILD_TOOLS=OFF -DORVA_BUILD_BENCH=OFF >/dev/null
cmake --build "$asan" -j"$(nproc)"
ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1 \
    LSAN_OPTIONS=suppressions=$PWD/scripts/lsan.supp:print_suppressions=0 \
    UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir "$asan" --output-on-failure -j"$(nproc)" -LE e2e -E '^tst_logo_render$'

echo "== fuzz targets, 30 s each on their corpus"
fuzz=${FUZZ_BUILD_DIR:-build-fuzz}
cmake -S . -B "$fuzz" -DORVA_FUZZ=ON -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build "$fuzz" -j"$(nproc)"
for target in profile datetext store; do
    # New inputs go to a scratch folder, not into the corpus; a finding to $fuzz/.
    mkdir "$fuzzwork/$target"
    if ! "$fuzz/fuzz/fuzz_$target" -max_total_time=30 -timeout=30 -dict=fuzz/dictionary.txt \
        -artifact_prefix="$fuzz/$target-" "$fuzzwork/$target" "fuzz/corpus/$target" \
        >"$fuzzwork/$target.log" 2>&1; then
        cat "$fuzzwork/$target.log"
        echo "fuzz_$target found a fault" >&2
        exit 1
    fi
    echo "fuzz_$target: $(grep -m1 '^Done' "$fuzzwork/$target.log")"
done

echo "== the Debian package: built and checked; as root also installed, used, upgraded, removed"
bash tests/packaging/deb.sh
summary

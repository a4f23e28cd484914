#!/usr/bin/env bash
# Builds and runs every benchmark and the measurement of the whole program with 10,000 + 1,000
# events (scripts/measure-program.sh), then prints one table of the figures next to their
# targets. A report, not a test: the figures depend on the machine and on what else it is
# doing, and a missed target does not fail the command.
#
#   bash scripts/bench-report.sh          (BUILD_DIR=build-xyz to pick another build)
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/setup.sh
build=${BUILD_DIR:-build}
benches=(store/bench_load store/bench_profile backup/bench_backup mainwindow/bench_activate
         mainwindow/bench_tick mainwindow/bench_missed yearcalendar/bench_calendar ical/bench_import)

cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DORVA_BUILD_BENCH=ON >/dev/null
cmake --build "$build" -j"$(nproc)" --target orva-calendar "${benches[@]##*/}" bench_idle \
    >/dev/null

out=$(mktemp -d)
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
chmod 700 "$XDG_RUNTIME_DIR"
trap 'rm -rf "$out" "$XDG_RUNTIME_DIR"' EXIT
for bench in "${benches[@]}"; do
    echo "running ${bench##*/} ..." >&2
    QT_QPA_PLATFORM=offscreen "$build/bench/$bench" >"$out/${bench##*/}.txt"
done
echo "running measure-program.sh 10000 1000 (about 4 minutes) ..." >&2
BUILD_DIR="$build" bash scripts/measure-program.sh 10000 1000 >"$out/program.txt"
echo "running bench_idle under Xvfb (30 s) ..." >&2
xvfb-run -a "$build/bench/mainwindow/bench_idle" 30 >"$out/bench_idle.txt" 2>/dev/null

# The first number after `pattern` in a benchmark's output.
figure() {
    grep -oP -m1 "$2\\K[0-9]+(\\.[0-9]+)?" "$out/$1.txt" || echo "?"
}

missed=0
printf '\n%-50s %16s  %-10s %s\n' "figure" "measured" "target" ""
printf '%-50s %16s  %-10s %s\n' "------" "--------" "------" ""
# row WHAT VALUE UNIT LIMIT: LIMIT empty for a figure without a target.
row() {
    local verdict=""
    if [ -n "$4" ]; then
        if awk -v v="$2" -v l="$4" 'BEGIN { exit !(v != "?" && v + 0 < l + 0) }'; then
            verdict="met"
        else
            verdict="MISSED"
            missed=$((missed + 1))
        fi
    fi
    printf '%-50s %13s %-2s  %-10s %s\n' "$1" "$2" "$3" "${4:+< $4 $3}" "$verdict"
}

row "load, first in a fresh process (bench_load)" "$(figure bench_load 'load, first in process\s+')" ms 40
row "load, cache cold" "$(figure bench_load 'load, cache cold\s+')" ms 20
row "  parses the load costs (processor time)" "$(figure bench_load 'load, cache cold.*\(')" "" 5
row "load, cache warm" "$(figure bench_load 'load, cache warm\s+')" ms ""
row "every key through ReadINI, cold (bench_profile)" \
    "$(figure bench_profile 'every key through ReadINI, cold cache:\s+')" ms ""
row "every key through ReadINI, warm" \
    "$(figure bench_profile 'every key through ReadINI, warm cache:\s+')" ms ""
row "one WriteINI" "$(figure bench_profile 'one WriteINI \(atomic rewrite\):\s+')" ms ""
row "backup copy, 1 MB store, median (bench_backup)" \
    "$(figure bench_backup 'copy before a change: median ')" ms 5
row "backup copy, slowest" "$(figure bench_backup 'copy before a change: .*slowest ')" ms ""
row "activation, median (bench_activate)" "$(figure bench_activate 'median ')" ms ""
row "activation, 90th percentile" "$(figure bench_activate '90th percentile ')" ms 50
row "reminder tick, median (bench_tick)" "$(figure bench_tick 'median ')" ms 0.4
row "reminder tick, 99th percentile" "$(figure bench_tick '99th percentile ')" ms ""
row "missed reminders, 7-day gap (bench_missed)" "$(figure bench_missed '7-day gap.*median ')" ms 50
row "missed reminders pass at a tick, median" "$(figure bench_missed 'at a tick: median ')" ms ""
row "calendar click, mean (bench_calendar)" "$(figure bench_calendar 'left click\s+\d+ runs\s+mean\s+')" ms 5
row "calendar click, worst" "$(figure bench_calendar 'left click\s+\d+ runs.*worst\s+')" ms ""
row "calendar click and repaint, mean" \
    "$(figure bench_calendar 'left click, then painting the widget\s+\d+ runs\s+mean\s+')" ms 5
row "20,000 colour calls, mean" \
    "$(figure bench_calendar '10,000 GetDayBackcolor\s+\d+ runs\s+mean\s+')" ms 20
row "iCalendar import of 1,000 events, median" "$(figure bench_import 'median ')" ms 2000
# The median of measure-program.sh's three runs.
median() {
    awk -v what="$1" 'index($0, what) == 1 { print $(NF - 1); found = 1 } END { if (!found) print "?" }' \
        "$out/program.txt"
}
row "program: splash after launch, median" "$(median 'splash after launch')" ms 300
row "program: main window after the splash, median" "$(median 'window after splash')" ms 200
row "program: shown, logo turning (CPU), median" "$(median 'CPU shown')" % 1.5
row "program: hidden in the tray (CPU), median" "$(median 'CPU hidden')" % 0.1
row "program: RSS 10 s after start, median" "$(median 'RSS at 10 s')" MB 80
row "a bare 40 ms Qt timer, hidden window (CPU)" "$(figure bench_idle 'hidden window:\s*')" % ""

echo
if [ "$missed" -eq 0 ]; then
    echo "every target met"
else
    echo "$missed target(s) missed"
fi

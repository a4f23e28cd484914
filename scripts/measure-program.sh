#!/usr/bin/env bash
# What the built program costs the user, for a store of a given size: how soon the splash and
# the main window appear, the processor it uses with the window shown (logo turning) and hidden
# in the tray, and its memory. Three runs under Xvfb (so OpenGL is Mesa's software renderer),
# each in a fresh program folder holding a copy of the program and a generated Data.ini;
# figures as min / median / max.
#
#   bash scripts/measure-program.sh ONE-OFF RECURRING [--categories TEXT] [--runs N]
#
# --categories writes TEXT as the category count, for instance 1e9 for a damaged store.
# BUILD_DIR=build-xyz picks another build. SHOWN and HIDDEN set the seconds measured (30).
#
# Figures:
#   splash after launch    process start to the splash window mapped
#   window after splash    splash unmapped to the main window mapped
#   CPU shown / hidden     utime + stime of /proc/PID/stat over the period, % of one core
#   RSS at 10 s            VmRSS of /proc/PID/status 10 s after the start
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -ge 2 ] || { sed -n '2,18p' "$0" >&2; exit 2; }
events=$1 recurring=$2
shift 2
categories="" runs=3
while [ $# -gt 0 ]; do
    case $1 in
    --categories) categories=$2; shift 2 ;;
    --runs) runs=$2; shift 2 ;;
    *) echo "unknown option $1" >&2; exit 2 ;;
    esac
done
bin=$PWD/${BUILD_DIR:-build}/bin
[ -x "$bin/orva-calendar" ] || { echo "no program in $bin: build it first" >&2; exit 1; }

if [ -z "${MEASURE_UNDER_XVFB:-}" ]; then
    exec env MEASURE_UNDER_XVFB=1 xvfb-run -a -s "-screen 0 1280x800x24" \
        bash "$0" "$events" "$recurring" ${categories:+--categories "$categories"} --runs "$runs"
fi

unset QT_QPA_PLATFORM
work=$(mktemp -d)
pids=()
trap 'kill "${pids[@]}" 2>/dev/null; rm -rf "$work"' EXIT
export XDG_RUNTIME_DIR=$work/runtime HOME=$work/home
mkdir -m 700 "$XDG_RUNTIME_DIR" "$HOME"

# Without a tray, minimising would not hide the window.
trayer --edge top --align right --widthtype request --height 24 &
pids+=($!)
sleep 1

# The store of the benchmarks (bench/StoreGenerator.h): seven categories, one-off events
# spread over 2026, recurring events of every kind at 9:00 AM.
python3 - "$work/Data.ini" "$events" "$recurring" "$categories" <<'PY'
import sys
path, events, recurring, count = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), sys.argv[4]
cats = ["More", "Work", "Personal", "Birthday", "Health", "Holiday", "Bills"]
days = ["Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"]
out = ["[Categories]", "c=" + (count or "7")]
for i in range(1, 8):
    out += [f"{i}={cats[i - 1]}", f"{i}c={0x102030 * i}"]
out += ["[rcount]", f"c={recurring}"]
for n in range(1, recurring + 1):
    out.append(f"[r{n}]")
    kind = n % 4
    if kind == 0:
        out.append("Type=Daily")
    elif kind == 1:
        out += ["Type=Weekly", f"Day={days[n % 7]}"]
    elif kind == 2:
        out += ["Type=Monthly", f"Day={n % 31 + 1}"]
    else:
        out += ["Type=Yearly", f"Day={n % 28 + 1}", f"Month={n % 12 + 1}"]
    out += ["Time=9:00 AM", f"Memo=Recurring reminder {n}", f"Cat={cats[n % 6 + 1]}"]
out += ["[count]", f"c={events}"]
for n in range(1, events + 1):
    time = f"{n % 12 + 1}:30 PM" if n % 5 else "00:00"
    out += [f"[{n}]", f"Date={n % 12 + 1}/{n % 28 + 1}/2026", f"Time={time}",
            f"Memo=Event number {n}", f"Cat={cats[n % 6 + 1]}"]
with open(path, "w", newline="") as f:
    f.write("\r\n".join(out) + "\r\n")
PY

echo "store: $events one-off, $recurring recurring, categories ${categories:-7}; $runs runs"
python3 - "$bin" "$work" "$runs" "${SHOWN:-30}" "${HIDDEN:-30}" <<'PY'
import ctypes, os, select, shutil, statistics, subprocess, sys, time

bin_dir, work, runs, shown_s, hidden_s = sys.argv[1], sys.argv[2], int(sys.argv[3]), \
    float(sys.argv[4]), float(sys.argv[5])
MAIN, SPLASH = b"ORVA's Calender", b"Form2"
TICK = os.sysconf("SC_CLK_TCK")

x11 = ctypes.cdll.LoadLibrary("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
x11.XDefaultRootWindow.restype = ctypes.c_ulong
x11.XSelectInput.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_long]
x11.XConnectionNumber.argtypes = [ctypes.c_void_p]
x11.XPending.argtypes = [ctypes.c_void_p]
x11.XNextEvent.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
x11.XFetchName.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.POINTER(ctypes.c_char_p)]
x11.XInternAtom.restype = ctypes.c_ulong
x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
x11.XChangeProperty.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong, ctypes.c_ulong,
                                ctypes.c_int, ctypes.c_int, ctypes.c_void_p, ctypes.c_int]
x11.XFlush.argtypes = [ctypes.c_void_p]
display = x11.XOpenDisplay(None)
x11.XSelectInput(display, x11.XDefaultRootWindow(display), 1 << 19)  # SubstructureNotify
fd = x11.XConnectionNumber(display)
names = {}


def events(until):
    """(kind, name, window, monotonic time) of maps and unmaps of top-level windows."""
    event = (ctypes.c_long * 24)()
    while True:
        while x11.XPending(display):
            x11.XNextEvent(display, event)
            now = time.monotonic()
            kind, window = event[0] & 0xFFFFFFFF, event[5]
            if kind == 19:  # MapNotify
                name = ctypes.c_char_p()
                if x11.XFetchName(display, window, ctypes.byref(name)) and name.value:
                    names[window] = name.value
                yield "map", names.get(window), window, now
            elif kind == 18:  # UnmapNotify
                yield "unmap", names.get(window), window, now
        left = until - time.monotonic()
        if left <= 0:
            return
        select.select([fd], [], [], left)


def wait_for(kind, name, deadline):
    for k, n, w, t in events(deadline):
        if k == kind and n == name:
            return w, t
    raise SystemExit(f"no {kind} of {name.decode()} within the time allowed")


def cpu_ticks(pid):
    with open(f"/proc/{pid}/stat") as f:
        fields = f.read().rsplit(")", 1)[1].split()
    return int(fields[11]) + int(fields[12])  # utime, stime


def rss_mb(pid):
    with open(f"/proc/{pid}/status") as f:
        for line in f:
            if line.startswith("VmRSS:"):
                return int(line.split()[1]) / 1024
    return float("nan")


def cpu_over(pid, seconds):
    before, start = cpu_ticks(pid), time.monotonic()
    list(events(start + seconds))
    return (cpu_ticks(pid) - before) / TICK / (time.monotonic() - start) * 100


def iconify(window):
    wm_state = x11.XInternAtom(display, b"WM_STATE", 0)
    iconic = (ctypes.c_long * 2)(3, 0)
    x11.XChangeProperty(display, window, wm_state, wm_state, 32, 0, iconic, 2)
    x11.XFlush(display)


def run(n):
    folder = os.path.join(work, f"run{n}")
    os.mkdir(folder)
    for name in os.listdir(bin_dir):
        if name != "Data.ini" and os.path.isfile(os.path.join(bin_dir, name)):
            shutil.copy2(os.path.join(bin_dir, name), folder)
    shutil.copy(os.path.join(work, "Data.ini"), folder)
    list(events(time.monotonic()))  # what came before is not this run's
    launched = time.monotonic()
    program = subprocess.Popen([os.path.join(folder, "orva-calendar")],
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        _, splash = wait_for("map", SPLASH, launched + 30)
        _, splash_end = wait_for("unmap", SPLASH, splash + 30)
        window, shown = wait_for("map", MAIN, splash_end + 120)
        # Start-up and the renderer's first compile of its shaders are not what is measured.
        list(events(max(shown + 3, launched + 10)))
        rss = rss_mb(program.pid)
        cpu_shown = cpu_over(program.pid, shown_s)
        iconify(window)
        wait_for("unmap", MAIN, time.monotonic() + 10)
        list(events(time.monotonic() + 2))
        cpu_hidden = cpu_over(program.pid, hidden_s)
        return [(splash - launched) * 1000, (shown - splash_end) * 1000, cpu_shown, cpu_hidden,
                rss]
    finally:
        program.kill()
        program.wait()


rows = [("splash after launch", "ms"), ("window after splash", "ms"), ("CPU shown", "%"),
        ("CPU hidden", "%"), ("RSS at 10 s", "MB")]
results = []
for n in range(runs):
    results.append(run(n))
    print(f"run {n + 1}: " + ", ".join(f"{v:.2f}" for v in results[-1]), file=sys.stderr)
print(f"{'figure':<22} {'min':>9} {'median':>9} {'max':>9}")
for i, (what, unit) in enumerate(rows):
    values = [r[i] for r in results]
    print(f"{what + ' (' + unit + ')':<22} {min(values):9.2f} {statistics.median(values):9.2f}"
          f" {max(values):9.2f}")
PY

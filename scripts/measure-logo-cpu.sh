#!/usr/bin/env bash
# How much processor the whole program uses while its logo turns: 10 s with the main window
# shown, then 10 s with it minimised into the tray. Runs the built program under Xvfb (so
# OpenGL is Mesa's software renderer) with trayer as the tray, and reads the time every
# thread of the process has run from /proc. Figures are in percent of one core.
#
#   bash scripts/measure-logo-cpu.sh          (BUILD_DIR=build-xyz to pick another build)
set -euo pipefail
cd "$(dirname "$0")/.."
program=$PWD/${BUILD_DIR:-build}/bin/orva-calendar
[ -x "$program" ] || { echo "no program at $program: build it first" >&2; exit 1; }

if [ -z "${MEASURE_UNDER_XVFB:-}" ]; then
    exec env MEASURE_UNDER_XVFB=1 xvfb-run -a -s "-screen 0 1280x800x24" bash "$0" "$@"
fi

unset QT_QPA_PLATFORM
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
chmod 700 "$XDG_RUNTIME_DIR"
pids=()
trap 'kill "${pids[@]}" 2>/dev/null; rm -rf "$XDG_RUNTIME_DIR"' EXIT

# Without a tray, minimising would not hide the window.
trayer --edge top --align right --widthtype request --height 24 &
pids+=($!)
sleep 1
"$program" &
pid=$!
pids+=($pid)

window=""
for _ in $(seq 100); do
    window=$(xdotool search --onlyvisible --name "ORVA's Calender" 2>/dev/null | head -n1) || true
    [ -n "$window" ] && break
    sleep 0.1
done
[ -n "$window" ] || { echo "the main window did not appear" >&2; exit 1; }

# Nanoseconds on a processor, summed over the threads (the renderer has its own).
runtime() {
    cat /proc/"$pid"/task/*/schedstat | awk '{ sum += $1 } END { printf "%.0f\n", sum }'
}

# Percent of one core over the next 10 s.
measure() {
    local before after
    before=$(runtime)
    sleep 10
    after=$(runtime)
    awk -v d=$((after - before)) 'BEGIN { printf "%.2f%%\n", d / 1e9 / 10 * 100 }'
}

# Start-up and the renderer's first compile of its shaders are not what is measured.
sleep 3
echo "window shown, logo turning: $(measure)"

# Minimise as a window manager does: it marks the window iconic, and the program hides
# itself in the tray.
python3 - "$window" <<'PY'
import ctypes, sys
x11 = ctypes.cdll.LoadLibrary("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XInternAtom.restype = ctypes.c_ulong
x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
x11.XChangeProperty.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong,
                                ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
                                ctypes.c_void_p, ctypes.c_int]
x11.XFlush.argtypes = [ctypes.c_void_p]
display = x11.XOpenDisplay(None)
wm_state = x11.XInternAtom(display, b"WM_STATE", 0)
iconic = (ctypes.c_long * 2)(3, 0)
x11.XChangeProperty(display, int(sys.argv[1]), wm_state, wm_state, 32, 0, iconic, 2)
x11.XFlush(display)
PY
sleep 2
if xdotool search --onlyvisible --name "ORVA's Calender" >/dev/null 2>&1; then
    echo "the main window did not hide" >&2
    exit 1
fi
echo "window hidden in the tray:  $(measure)"

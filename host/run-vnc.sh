#!/usr/bin/env bash
# Serves a program's windows over VNC for machines without a display, reachable from this
# machine only: a private X server (Xvfb, no TCP) and x11vnc bound to the loopback interface
# (127.0.0.1 and ::1). Qt's own "vnc" platform cannot do this: it listens on every interface.
#
#   host/run-vnc.sh PROGRAM [ARGS...]
#   QXCK_VNC_PORT  port to serve on (default 5900)
#   QXCK_VNC_SIZE  screen size (default 1280x800)
#
# Connect with a VNC viewer to 127.0.0.1:PORT (e.g. `vncviewer 127.0.0.1::5900`; from another
# machine tunnel first: `ssh -L 5900:127.0.0.1:5900 thishost`). Ends when the program ends.
set -euo pipefail

port="${QXCK_VNC_PORT:-5900}"
size="${QXCK_VNC_SIZE:-1280x800}"

for tool in Xvfb x11vnc; do
    if ! command -v "$tool" >/dev/null 2>&1; then
        echo "run-vnc: $tool is missing; install it with: sudo apt-get install -y xvfb x11vnc" >&2
        exit 1
    fi
done
if ss -ltnH "sport = :${port}" 2>/dev/null | grep -q .; then
    echo "run-vnc: port ${port} is in use; choose another with QXCK_VNC_PORT=..." >&2
    exit 1
fi

# The first free display number.
number=""
for n in $(seq 90 199); do
    if [ ! -e "/tmp/.X11-unix/X${n}" ] && [ ! -e "/tmp/.X${n}-lock" ]; then number="$n"; break; fi
done
if [ -z "$number" ]; then echo "run-vnc: no free X display number" >&2; exit 1; fi
display=":${number}"

pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
}
trap cleanup EXIT INT TERM

Xvfb "$display" -screen 0 "${size}x24" -nolisten tcp >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 1 50); do [ -e "/tmp/.X11-unix/X${number}" ] && break; sleep 0.1; done
if [ ! -e "/tmp/.X11-unix/X${number}" ]; then echo "run-vnc: Xvfb did not start" >&2; exit 1; fi

x11vnc -display "$display" -localhost -rfbport "$port" -nopw -forever -shared -quiet \
    >/dev/null 2>&1 &
pids+=($!)
for _ in $(seq 1 50); do ss -ltnH "sport = :${port}" 2>/dev/null | grep -q . && break; sleep 0.1; done
if ! ss -ltnH "sport = :${port}" 2>/dev/null | grep -q .; then
    echo "run-vnc: x11vnc did not start on port ${port}" >&2
    exit 1
fi

echo "Serving on VNC at 127.0.0.1:${port} (this machine only). Connect with: vncviewer 127.0.0.1::${port}"
DISPLAY="$display" QT_QPA_PLATFORM=xcb "$@"

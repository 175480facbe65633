#!/usr/bin/env bash
# Starts the host. With a display it opens a normal window; without one it serves the window
# over VNC on 127.0.0.1 only (a private Xvfb display shared by x11vnc -localhost), so it can be
# used from a VNC viewer on this machine or through an ssh tunnel.
set -euo pipefail
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    exec "$@"
fi
echo "No display found: QX_CK will be served over VNC on this machine only."
echo "Demo login: user 'admin', password 'admin'. Stop with Ctrl+C."
exec "$(dirname "$0")/../host/run-vnc.sh" "$@"

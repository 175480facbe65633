#!/usr/bin/env bash
# Starts the host. With a display it opens a normal window; without one it serves the
# window over VNC on 127.0.0.1 so it can be used from a VNC viewer on this machine.
set -euo pipefail
if [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; then
    exec "$@"
fi
port="${QXCK_VNC_PORT:-5900}"
echo "No display found: serving QX_CK over VNC at 127.0.0.1:${port} (connect with: vncviewer 127.0.0.1:${port})"
echo "Demo login: user 'admin', password 'admin'. Stop with Ctrl+C."
export QT_QPA_PLATFORM="vnc:size=1280x800:port=${port}:addr=127.0.0.1"
exec "$@"

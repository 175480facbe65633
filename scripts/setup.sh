#!/usr/bin/env bash
# Installs the Debian 12 packages the project builds, runs and tests with.
# Only missing packages are installed; nothing else on the machine is touched.
set -euo pipefail

packages=(
    build-essential cmake ninja-build pkg-config ccache
    qt6-base-dev qt6-base-dev-tools qt6-qpa-plugins libgl-dev
    libsqlite3-dev sqlite3 libpq-dev postgresql libicu-dev libssl-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    libzint-dev libzbar-dev libpoppler-qt6-dev
    fonts-wqy-zenhei xvfb xauth x11vnc
    liborcus-dev libfreexl-dev python3-xlsxwriter python3-xlwt
    libxlsxwriter-dev qt6-charts-dev libqt6opengl6-dev
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

echo "setup: installing ${missing[*]}"
sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"

#!/usr/bin/env bash
# Installs every Debian package the build, the tests, the screenshots and the running program
# need.
# Quiet and quick when everything is already there.
set -euo pipefail

packages=(
  cmake g++ make pkg-config
  qt6-base-dev qt6-base-dev-tools libqt6opengl6-dev qt6-multimedia-dev
  libassimp-dev libgl1-mesa-dri
  xvfb xauth xdotool imagemagick poppler-utils trayer openbox fonts-liberation2 faketime
  dbus-daemon dbus-bin python3-dbus python3-gi
  at-spi2-core gir1.2-atspi-2.0
  clang libclang-rt-14-dev
  libical-dev python3-icalendar
  dpkg-dev file lintian appstream desktop-file-utils
  xdg-utils
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -q
$sudo apt-get install -y -q --no-install-recommends "${missing[@]}"

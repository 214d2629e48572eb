#!/usr/bin/env bash
# Installs what building and testing Marlo needs on Debian 12, if it is missing.
set -euo pipefail
# desktop-file-utils, appstream and groff-base check the installed desktop entry, metainfo and
# manual pages in the install test; qt6-tools-dev and qt6-l10n-tools build the translations
# (lupdate, lrelease), qt6-translations-l10n holds Qt's own.
packages=(build-essential cmake qt6-base-dev qt6-serialport-dev libqt6sql6-sqlite desktop-file-utils appstream groff-base
          qt6-tools-dev qt6-l10n-tools qt6-translations-l10n)
[ "${MARLO_WITH_SCREENSHOT_TOOLS:-0}" = 1 ] && packages+=(xvfb xauth imagemagick xdotool)
[ "${MARLO_WITH_FUZZ_TOOLS:-0}" = 1 ] && packages+=(clang libclang-rt-14-dev)
# cpack -G DEB needs file (to find the executables whose libraries it names); lintian checks the package.
[ "${MARLO_WITH_PACKAGE_TOOLS:-0}" = 1 ] && packages+=(file lintian)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  sudo=""; [ "$(id -u)" -ne 0 ] && sudo="sudo"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
fi

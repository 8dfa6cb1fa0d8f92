#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, only when some are missing.
set -euo pipefail
packages=(cmake g++ make qt6-base-dev qt6-base-dev-tools qt6-svg-dev qt6-image-formats-plugins libgl-dev libopencv-dev
  qt6-tools-dev qt6-l10n-tools fonts-dejavu-core python3 python3-ezdxf
  libmagick++-dev # the filter bench's ImageMagick reference only; never linked into the library
  "$@")
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"

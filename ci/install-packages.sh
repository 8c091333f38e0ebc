#!/usr/bin/env bash
# Installs what is missing of the packages that the purposes named need: install-packages.sh run test
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

missing=()
for purpose in "$@"; do
    for package in $(sed -n "s/^$purpose  *//p" "$here/packages.txt"); do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
    done
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}" >&2
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Run as root, or install sudo: packages are missing." >&2; exit 1; }
    as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq >&2
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >&2

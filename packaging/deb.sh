#!/usr/bin/env bash
# Makes the Debian package of what is built and prints its path: packaging/deb.sh [BUILD [FOLDER]]
# The version is that of CMakeLists.txt, the date that of the last commit.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(dirname "$here")
build=$(realpath "${1:-$root/build/release}")
[ -f "$build/CMakeCache.txt" ] || { echo "Nothing is built there yet: ci/build.sh release" >&2; exit 1; }
mkdir -p "${2:-$root/build/package}"
out=$(realpath "${2:-$root/build/package}")

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tree=$work/debian/brindlehum
SOURCE_DATE_EPOCH=$(git -C "$root" log -1 --format=%ct 2>/dev/null || date +%s)
export SOURCE_DATE_EPOCH
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")

# The entries for file managers' menus need headers that the rest of the build does without.
{ cmake "$build" && cmake --build "$build" --target menus; } >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }

umask 022
DESTDIR=$tree cmake --install "$build" --prefix /usr --strip >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
mapfile -t programs < <(find "$tree/usr/bin" "$tree/usr/libexec" -type f)
# File managers bring the libraries of their modules, and a machine without one needs none of them.
mapfile -t modules < <(find "$tree/usr" -name '*.so')
strip --strip-unneeded --remove-section=.comment --remove-section=.note "${programs[@]}" "${modules[@]}"
chmod -f 644 "${modules[@]}" || true  # none where the headers are missing
find "$tree/usr/share/man" -type f -exec gzip -9n {} +
ln -s brindlehum.1.gz "$tree/usr/share/man/man1/brindlehum-resident.1.gz"
rm "$tree/usr/share/man/man1/brindlehum-resident.1"

mkdir -p "$work/debian"
cp "$here/debian/control" "$work/debian"
cat >"$work/debian/changelog" <<CHANGES
brindlehum ($version-0local1) unstable; urgency=medium

  * Version $version. What changes for its users is in changelog.gz.

 -- $(sed -n 's/^Maintainer: //p' "$here/debian/control")  $(date -R -u -d "@$SOURCE_DATE_EPOCH")
CHANGES

documents=$tree/usr/share/doc/brindlehum
mkdir -p "$documents"
cp "$here/debian/copyright" "$documents"
gzip -9nc "$work/debian/changelog" >"$documents/changelog.Debian.gz"
gzip -9nc "$root/CHANGELOG.md" >"$documents/changelog.gz"

cd "$work"
dpkg-shlibdeps -O "${programs[@]/#$work\//-e}" >debian/substvars
mkdir "$tree/DEBIAN"
dpkg-gencontrol -pbrindlehum -P"$tree" -Tdebian/substvars -fdebian/files
(cd "$tree" && find usr -type f -print0 | LC_ALL=C sort -z | xargs -0 md5sum >DEBIAN/md5sums)
dpkg-deb --root-owner-group -Zxz --build "$tree" "$out" >&2
echo "$out/$(cut -d' ' -f1 debian/files)"

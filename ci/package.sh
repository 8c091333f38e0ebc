#!/usr/bin/env bash
# Makes the Debian package of the release build, checks it, and installs, starts and purges it on a bare Debian:
# ci/package.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
ci/install-packages.sh package trial

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
deb=$(packaging/deb.sh 2>"$work/log") || { cat "$work/log" >&2; exit 1; }
dpkg-deb -x "$deb" "$work/tree"
share=$work/tree/usr/share

lintian --allow-root --fail-on error,warning "$deb"
desktop-file-validate "$share"/applications/*.desktop
appstreamcli validate --no-net "$share"/metainfo/*.xml
rm "$share"/man/man1/brindlehum-resident.1.gz  # a link
for page in "$share"/man/man1/*.gz; do
    gunzip "$page"
    man --warnings -l "${page%.gz}" 2>&1 >/dev/null | tee "$work/log"
    [ ! -s "$work/log" ]
    mandoc -T lint "${page%.gz}"
done
mkdir -p "$work/mime/packages"
cp /usr/share/mime/packages/freedesktop.org.xml "$share/mime/packages/brindlehum.xml" "$work/mime/packages"
update-mime-database "$work/mime" >/dev/null 2>"$work/log" || { cat "$work/log" >&2; exit 1; }
zsh -n "$share"/zsh/vendor-completions/_brindlehum*
packaging/check_pages.py "$work/tree/usr"
for module in "$work"/tree/usr/lib/*/*/libbrindlehum-thunar.so "$work"/tree/usr/lib/*/*/*/libbrindlehum-nautilus.so; do
    # What a file manager calls.
    [ "$(nm -D --defined-only "$module" | grep -c ' T .*_\(initialize\|list_types\|shutdown\)$')" -eq 3 ]
done

if [ "$(id -u)" -ne 0 ] || ! unshare --mount --net true 2>/dev/null; then
    echo "SKIPPED: the installation on a bare Debian, which needs root and namespaces"
    exit 0
fi
sources=/etc/apt/sources.list.d/debian.sources
[ -f $sources ] || sources=/etc/apt/sources.list
mmdebstrap --quiet --variant=minbase --include=desktop-file-utils --format=null \
    --dpkgopt=force-unsafe-io --dpkgopt='path-exclude=/usr/share/doc/*' --dpkgopt='path-exclude=/usr/share/locale/*' \
    --customize-hook="packaging/try-package.sh '$deb' \"\$1\"" bookworm - "$sources"

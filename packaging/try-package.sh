#!/usr/bin/env bash
# Installs a package in the root of a bare Debian, starts it there and purges it again: try-package.sh DEB ROOT
set -euo pipefail
deb=$1
root=$2
inside() { chroot "$root" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 "$@"; }
fail() { echo "try-package: $*" >&2; exit 1; }

# Another application for the same files, whose name comes late.
sed -e '/^NoDisplay/d' -e 's/=brindlehum/=vlc/' <"$(dirname "$0")/zz-brindlehum-files.desktop" \
    >"$root/usr/share/applications/vlc.desktop"

cp "$deb" "$root/brindlehum.deb"
inside apt-get install -y -qq --no-install-recommends /brindlehum.deb >"$root/log" 2>&1 || { cat "$root/log" >&2; exit 1; }
rm "$root/brindlehum.deb"

first=$(sed -n 's/^[a-z]*\/[^=]*=\([^;]*\);.*zz-brindlehum.*/\1/p' "$root/usr/share/applications/mimeinfo.cache" | sort -u)
[ "$first" = vlc.desktop ] || fail "the first application for sounds is $first"
grep -q ':\*\.w64$' "$root/usr/share/mime/globs2" || fail "Wave64 has no type"

# As a user, on a network of its own, so that no other Brindlehum has the port.
inside useradd -m listener
ask() { exec 3<>/dev/tcp/127.0.0.1/47806 && printf 'GET /status HTTP/1.1\r\nHost: 127.0.0.1\r\nX-Brindlehum: 1\r\n\r\n' >&3 && timeout 5 cat <&3; }
export root
export -f ask
unshare --net bash -euc '
    ip link set lo up
    chroot "$root" su listener -c "exec brindlehum" >"$root/log" 2>&1 &
    for _ in $(seq 100); do
        answer=$(ask 2>/dev/null) && break
        sleep 0.1
    done
    pid=$(cat "$root"/tmp/brindlehum-*/brindlehum.lock | head -n 1)
    kill "$pid"
    wait
    echo "$answer" >"$root/answer"
' || { cat "$root/log" >&2; fail "it doesn't start"; }
grep -q '"playing":false' "$root/answer" || { cat "$root/log" "$root/answer" >&2; fail "status isn't answered"; }
[[ $(inside su listener -c 'brindlehum-cli help') == "brindlehum-cli probe"* ]] || fail "brindlehum-cli has no help"

inside apt-get purge -y -qq brindlehum >"$root/log" 2>&1 || { cat "$root/log" >&2; exit 1; }
left=$(cd "$root" && find . -xdev -ipath '*brindlehum*' -not -path './home/*' -not -path './proc/*' -not -path './tmp/*')
[ -z "$left" ] || fail "what the purge leaves: $left"
! grep -rqs brindlehum "$root"/usr/share/applications/mimeinfo.cache "$root"/etc || fail "the purge leaves its name"
[ -d "$root/home/listener/.local/share/Brindlehum" ] || fail "the user's own data is gone"
echo "Installed, started and purged on a bare Debian."

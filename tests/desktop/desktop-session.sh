#!/usr/bin/env bash
# Runs a command on a desktop of its own: X server, window manager, session bus (which starts an accessibility bus on
# demand) and folders of the user, all gone afterwards: desktop-session.sh COMMAND...
set -euo pipefail
home=$(mktemp -d)
mkdir -m 700 "$home"/{run,config,data,cache,state}
export HOME=$home XDG_RUNTIME_DIR=$home/run XDG_CONFIG_HOME=$home/config XDG_DATA_HOME=$home/data
export XDG_CACHE_HOME=$home/cache XDG_STATE_HOME=$home/state XDG_CURRENT_DESKTOP=X-Generic
export LANG=C.UTF-8 GSETTINGS_BACKEND=memory
# Nautilus loads a folder only when it has nothing to draw. On a busy machine without a graphics card its turning wheel
# would keep it drawing for ever.
mkdir "$XDG_CONFIG_HOME/gtk-4.0"
printf '[Settings]\ngtk-enable-animations=0\n' >"$XDG_CONFIG_HOME/gtk-4.0/settings.ini"
export GSK_RENDERER=cairo
unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS

exec {number}<> <(:)
# Without -noreset the end of its only client would throw out those that are just coming.
Xvfb -noreset -displayfd "$number" -screen 0 1280x900x24 -nolisten tcp >/dev/null 2>&1 &
server=$!
# Services of the bus may still write while the folder goes.
trap 'kill $server 2>/dev/null; wait $server 2>/dev/null || true; rm -rf "$home" 2>/dev/null || rm -rf "$home" || true' EXIT
read -r -t 20 display <&"$number"
export DISPLAY=:$display
# Services of the bus write to its output as long as they live, so only the command gets ours.
dbus-run-session -- bash -c '
    openbox &
    manager=$!
    for _ in $(seq 200); do
        xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 0x && break
        sleep 0.05
    done
    kill -0 $manager || { echo "openbox did not start" >&3; exit 1; }
    code=0
    "$@" >&3 2>&1 || code=$?
    kill $manager
    exit $code' _ "$@" 3>&1 >/dev/null 2>&1

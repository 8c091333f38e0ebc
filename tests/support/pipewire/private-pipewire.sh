#!/bin/sh
# A PipeWire apart from the desktop's own, with null sinks of 2, 12 and 16 channels, for tests and trials:
#   private-pipewire.sh serve FOLDER          runs it in the foreground, FOLDER being its runtime folder
#   private-pipewire.sh run COMMAND [ARG...]  runs a command on one in a fresh folder and ends it afterwards
here=$(cd "$(dirname "$0")" && pwd)
unset PIPEWIRE_REMOTE PIPEWIRE_RUNTIME_DIR PIPEWIRE_CONFIG_DIR

case $1 in
serve)
    export XDG_RUNTIME_DIR="$2" PIPEWIRE_RUNTIME_DIR="$2"
    exec pipewire -c "$here/pipewire.conf"
    ;;
run)
    shift
    folder=$(mktemp -d) || exit 1
    "$0" serve "$folder" &
    server=$!
    trap 'kill -9 $server 2>/dev/null; wait $server 2>/dev/null; rm -rf "$folder"' EXIT
    trap 'exit 130' INT TERM
    tries=0
    while [ ! -S "$folder/pipewire-0" ] && [ $tries -lt 200 ]; do
        tries=$((tries + 1))
        sleep 0.05
    done
    # Only PipeWire's folder moves, so that the command still finds its display and its session bus.
    PIPEWIRE_RUNTIME_DIR="$folder" "$@"
    ;;
*)
    sed -n '2,4s/^# //p' "$0" >&2
    exit 2
    ;;
esac

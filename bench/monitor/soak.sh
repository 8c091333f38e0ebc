#!/usr/bin/env bash
# Runs soak_monitor on a sound server of its own: soak.sh PROGRAM SECONDS [QUANTUM] [RATE] [with-session-manager]
# Prints its figures, and the load of the machine before and after.
set -euo pipefail
program=$(realpath "$1")
seconds=$2
quantum=${3:-256}
rate=${4:-48000}
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

folder=$(mktemp -d)
export XDG_RUNTIME_DIR=$folder PIPEWIRE_RUNTIME_DIR=$folder XDG_CONFIG_HOME=$folder/config XDG_STATE_HOME=$folder/state
unset PIPEWIRE_REMOTE
children=()
end() {
    for child in "${children[@]}"; do kill "$child" 2>/dev/null || true; done
    wait
    rm -rf "$folder"
}
trap end EXIT

pipewire -c "$root/tests/support/pipewire/pipewire.conf" >"$folder/server.log" 2>&1 &
children+=($!)
until [ -S "$folder/pipewire-0" ]; do sleep 0.05; done
if [ "${5:-}" = with-session-manager ]; then
    wireplumber >"$folder/manager.log" 2>&1 &
    children+=($!)
    sleep 2
fi
sleep 0.5
pw-metadata -n settings 0 clock.force-quantum "$quantum" >/dev/null
pw-metadata -n settings 0 clock.force-rate "$rate" >/dev/null
echo "load before: $(cut -d' ' -f1-3 /proc/loadavg)"
status=0
"$program" "$seconds" || status=$?
echo "load after: $(cut -d' ' -f1-3 /proc/loadavg)"
if [ "${5:-}" = with-session-manager ]; then
    standard=$(pw-metadata -n default 0 default.audio.sink | grep -o '"name":"[^"]*"' || true)
    echo "default output: ${standard:-none}"
    case $standard in
        "") echo "the session manager chose no default output"; status=1 ;;
        *brindlehum-bus*) echo "the session manager made the bus the default output"; status=1 ;;
    esac
fi
exit $status

#!/usr/bin/env bash
# The monitor beside a session manager, which mustn't touch its links nor make the bus the default output: compares every
# sample for 12 seconds. with_session_manager.sh PATH/soak_monitor
exec dbus-run-session -- "$(dirname "${BASH_SOURCE[0]}")/../../bench/monitor/soak.sh" "$1" 12 1024 48000 with-session-manager

#!/usr/bin/env bash
# Configures a preset if need be and builds it, or the targets named: build.sh PRESET [TARGET...]
# Quiet unless something goes wrong.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
shift
cd "$root"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
# Without tests only when every target named is a program.
tests=ON
[ $# -gt 0 ] && [[ " $* " != *" test_"* ]] && tests=OFF
if [ ! -f "build/$preset/build.ninja" ] || { [ $tests = ON ] && ! grep -q '^BRINDLEHUM_TESTS:BOOL=ON' "build/$preset/CMakeCache.txt"; }; then
    extra=()
    case $preset in bench | fuzz) ;; *) extra=("-DBRINDLEHUM_TESTS=$tests") ;; esac
    cmake --preset "$preset" "${extra[@]}" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
fi
started=$SECONDS
echo "Building ($preset) ..." >&2
targets=()
[ $# -gt 0 ] && targets=(--target "$@")
cmake --build --preset "$preset" "${targets[@]}" >"$log" 2>&1 || { tail -n 60 "$log" >&2; exit 1; }
echo "Built in $((SECONDS - started)) s." >&2

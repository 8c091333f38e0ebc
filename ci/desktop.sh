#!/usr/bin/env bash
# Builds and runs the tests on real file managers, and of keys for DAWs, on a desktop of their own: ci/desktop.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
ci/install-packages.sh run test desktop
cmake --preset release -DBRINDLEHUM_DESKTOP_TESTS=ON >/dev/null
ci/build.sh release test_desktop test_key_grab
ctest --preset release -L desktop "$@"

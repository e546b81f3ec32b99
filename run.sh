#!/usr/bin/env bash
# Installs what is missing, builds, makes the run-time folders with the
# delivered databases on the first run, and starts the program.
set -euo pipefail
cd "$(dirname "$0")"
./scripts/deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build --target tillora tillora-admin
./build/bin/tillora-admin init >/dev/null
exec ./build/bin/tillora "$@"

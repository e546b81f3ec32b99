#!/usr/bin/env bash
# Installs what is missing, builds, starts a private MariaDB server on
# 127.0.0.1, runs every test on SQLite and on MariaDB, and stops the server.
set -euo pipefail
cd "$(dirname "$0")"
./scripts/deps.sh test
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTILLORA_TESTS=ON -DTILLORA_BENCH=ON >/dev/null
cmake --build build

export QT_QPA_PLATFORM=offscreen
export XDG_RUNTIME_DIR="${XDG_RUNTIME_DIR:-$(mktemp -d /tmp/tillora-xdg.XXXXXX)}"
chmod 700 "$XDG_RUNTIME_DIR"

# shellcheck source=scripts/mariadb.sh
. ./scripts/mariadb.sh
mariadb_start "$PWD/build/mariadb-test"
trap mariadb_stop EXIT
export TILLORA_TEST_MYSQL="127.0.0.1:${MARIADB_PORT}:tillora:tillora"

ctest --test-dir build --output-on-failure -j "$(nproc)" "$@"

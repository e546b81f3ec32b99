#!/usr/bin/env bash
# Installs what is missing, builds, builds the Debian package and checks it
# (as root: installs it and starts it), starts a private MariaDB server on
# 127.0.0.1 and a private print server, runs every test on SQLite and on
# MariaDB, and stops the servers.
set -euo pipefail
cd "$(dirname "$0")"
./scripts/deps.sh test
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTILLORA_TESTS=ON -DTILLORA_BENCH=ON >/dev/null
cmake --build build
# The Debian package: its contents, and (as root) that it installs and starts.
cmake --build build --target package >/dev/null
./scripts/package-check.sh build

export QT_QPA_PLATFORM=offscreen
export XDG_RUNTIME_DIR="${XDG_RUNTIME_DIR:-$(mktemp -d /tmp/tillora-xdg.XXXXXX)}"
chmod 700 "$XDG_RUNTIME_DIR"

# shellcheck source=scripts/mariadb.sh
. ./scripts/mariadb.sh
# shellcheck source=scripts/cups.sh
. ./scripts/cups.sh
stop_servers() { cups_stop; mariadb_stop; }
trap stop_servers EXIT
mariadb_start "$PWD/build/mariadb-test"
export TILLORA_TEST_MYSQL="127.0.0.1:${MARIADB_PORT}:tillora:tillora"
# A print server of the tests' own, seen only by the printer tests.
cups_start "$PWD/build/cups-test"

ctest --test-dir build --output-on-failure -j "$(nproc)" "$@"

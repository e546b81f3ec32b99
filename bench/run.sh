#!/usr/bin/env bash
# Builds tillora-bench, starts a private MariaDB server on 127.0.0.1, runs the
# store and diary benchmarks on SQLite and on MariaDB, and stops the server.
# Arguments go to the benchmark program, e.g.
#   bench/run.sh --benchmark_filter=DLookup --benchmark_repetitions=3
# With TILLORA_TEST_MYSQL already set ("host:port:user:password") that server
# is used and none is started; with no MariaDB installed only SQLite runs.
set -euo pipefail
top="$(cd "$(dirname "$0")/.." && pwd)"
build="${TILLORA_BUILD_DIR:-$top/build}"

if [ ! -f "$build/CMakeCache.txt" ]; then
  cmake -S "$top" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTILLORA_BENCH=ON >/dev/null
elif ! grep -q '^TILLORA_BENCH:BOOL=ON' "$build/CMakeCache.txt"; then
  cmake -S "$top" -B "$build" -DTILLORA_BENCH=ON >/dev/null
fi
if ! grep '^benchmark_DIR:PATH=' "$build/CMakeCache.txt" | grep -qv NOTFOUND; then
  echo "Google Benchmark was not found (Debian package libbenchmark-dev): no tillora-bench." >&2
  exit 1
fi
cmake --build "$build" --target tillora-bench

if [ -z "${TILLORA_TEST_MYSQL:-}" ]; then
  if command -v mariadbd >/dev/null 2>&1 && command -v mariadb-install-db >/dev/null 2>&1; then
    # shellcheck source=../scripts/mariadb.sh
    . "$top/scripts/mariadb.sh"
    mariadb_start "$build/mariadb-bench"
    trap mariadb_stop EXIT
    export TILLORA_TEST_MYSQL="127.0.0.1:${MARIADB_PORT}:tillora:tillora"
  else
    echo "MariaDB is not installed: SQLite only." >&2
  fi
fi

"$build/bench/tillora-bench" "$@"

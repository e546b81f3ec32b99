# A private MariaDB server for the tests (sourced by test.sh and bench/run.sh).
# mariadb_start DIR: makes a fresh data folder in DIR, starts the server on a
# free port of 127.0.0.1, creates the user tillora/tillora with all rights,
# and sets MARIADB_PORT and MARIADB_DIR. mariadb_stop stops it by its pid.

mariadb_start() {
  MARIADB_DIR="$1"
  rm -rf "$MARIADB_DIR"
  mkdir -p "$MARIADB_DIR"
  mariadb-install-db --no-defaults --user="$(id -un)" --datadir="$MARIADB_DIR/data" \
    --auth-root-authentication-method=normal --skip-test-db >"$MARIADB_DIR/install.log" 2>&1
  local port
  for port in $(shuf -i 20000-45000 -n 8); do
    if ! (exec 3<>"/dev/tcp/127.0.0.1/$port") 2>/dev/null; then
      MARIADB_PORT=$port
      break
    fi
  done
  mariadbd --no-defaults --user="$(id -un)" --datadir="$MARIADB_DIR/data" --socket="$MARIADB_DIR/s.sock" \
    --port="$MARIADB_PORT" --bind-address=127.0.0.1 --pid-file="$MARIADB_DIR/pid" \
    --innodb-buffer-pool-size=64M --skip-log-bin >"$MARIADB_DIR/server.log" 2>&1 &
  local i
  for i in $(seq 1 100); do
    mariadb-admin --no-defaults --socket="$MARIADB_DIR/s.sock" -uroot ping >/dev/null 2>&1 && break
    sleep 0.1
  done
  mariadb --no-defaults --socket="$MARIADB_DIR/s.sock" -uroot <<SQL
CREATE USER 'tillora'@'127.0.0.1' IDENTIFIED BY 'tillora';
CREATE USER 'tillora'@'localhost' IDENTIFIED BY 'tillora';
GRANT ALL PRIVILEGES ON *.* TO 'tillora'@'127.0.0.1';
GRANT ALL PRIVILEGES ON *.* TO 'tillora'@'localhost';
SQL
  export MARIADB_PORT MARIADB_DIR
}

mariadb_stop() {
  if [ -n "${MARIADB_DIR:-}" ] && [ -f "$MARIADB_DIR/pid" ]; then
    kill -TERM "$(cat "$MARIADB_DIR/pid")" 2>/dev/null || true
    for _ in $(seq 1 100); do [ -f "$MARIADB_DIR/pid" ] || break; sleep 0.1; done
  fi
}

# A private print server for the tests (sourced by test.sh): the system's own
# CUPS scheduler with its settings, spool and socket in a folder of its own,
# and two printers whose pages go to files. Nothing of the machine's printing
# is touched; only a process that sets CUPS_SERVER to the socket sees it.
# cups_start DIR: starts the scheduler and sets TILLORA_TEST_CUPS (the socket)
# and CUPS_DIR. The printers: "Office-A" (the default) and "Label_Printer";
# each job's PDF stays in DIR/spool (d<job>-001) with its attributes (c<job>).
# cups_stop stops it by its pid.

cups_start() {
  CUPS_DIR="$1"
  rm -rf "$CUPS_DIR"
  mkdir -p "$CUPS_DIR"/{spool,cache,state,log,out}
  local user=""
  if [ "$(id -u)" -eq 0 ]; then
    # The scheduler runs its filters and back ends as an unprivileged user.
    user=$'User lp\nGroup lp'
    chown -R lp "$CUPS_DIR"
  fi
  chmod -R a+rwX "$CUPS_DIR"
  cat >"$CUPS_DIR/cupsd.conf" <<CONF
Listen $CUPS_DIR/cups.sock
LogLevel warn
PreserveJobFiles Yes
MaxJobs 0
<Location />
  Order allow,deny
  Allow all
</Location>
<Location /admin>
  Order allow,deny
  Allow all
</Location>
<Policy default>
  JobPrivateAccess all
  JobPrivateValues none
  SubscriptionPrivateAccess all
  SubscriptionPrivateValues none
  <Limit All>
    Order deny,allow
  </Limit>
</Policy>
CONF
  cat >"$CUPS_DIR/cups-files.conf" <<CONF
ServerRoot $CUPS_DIR
RequestRoot $CUPS_DIR/spool
CacheDir $CUPS_DIR/cache
StateDir $CUPS_DIR/state
TempDir $CUPS_DIR/spool
ErrorLog $CUPS_DIR/log/error_log
AccessLog $CUPS_DIR/log/access_log
PageLog $CUPS_DIR/log/page_log
FileDevice Yes
Printcap
$user
CONF
  cupsd -f -c "$CUPS_DIR/cupsd.conf" -s "$CUPS_DIR/cups-files.conf" >"$CUPS_DIR/log/cupsd.out" 2>&1 &
  echo $! >"$CUPS_DIR/pid"
  local i
  for i in $(seq 1 100); do
    CUPS_SERVER="$CUPS_DIR/cups.sock" lpstat -r 2>/dev/null | grep -q 'is running' && break
    sleep 0.1
  done
  local p
  for p in Office-A Label_Printer; do
    for i in 1 2 3 4 5; do
      CUPS_SERVER="$CUPS_DIR/cups.sock" lpadmin -p "$p" -E -v "file://$CUPS_DIR/out/$p.out" -m raw >/dev/null 2>&1 && break
      sleep 0.2
    done
  done
  CUPS_SERVER="$CUPS_DIR/cups.sock" lpadmin -d Office-A >/dev/null 2>&1
  TILLORA_TEST_CUPS="$CUPS_DIR/cups.sock"
  export TILLORA_TEST_CUPS CUPS_DIR
}

cups_stop() {
  if [ -n "${CUPS_DIR:-}" ] && [ -f "$CUPS_DIR/pid" ]; then
    kill -TERM "$(cat "$CUPS_DIR/pid")" 2>/dev/null || true
    rm -f "$CUPS_DIR/pid"
  fi
}

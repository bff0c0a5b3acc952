#!/usr/bin/env bash
# Capstan starts on the test desktop with an empty settings store, reports the two
# monitors, writes its first-run settings, and quits cleanly on SIGINT and SIGTERM.
set -euo pipefail
capstan=$1
[ -n "${DISPLAY:-}" ] || { echo "no DISPLAY: run on scripts/test-desktop"; exit 77; }
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT

run_once() { # SIGNAL
  local log="$home/capstan-$1.log" pid status
  HOME="$home" XDG_CONFIG_HOME="$home/.config" XDG_CACHE_HOME="$home/.cache" \
    QT_QPA_PLATFORM=xcb "$capstan" >"$log" 2>&1 &
  pid=$!
  for _ in $(seq 100); do grep -q '^capstan.app: ready$' "$log" && break; sleep 0.1; done
  grep -q '^capstan.app: ready$' "$log" || { echo "not ready:"; cat "$log"; kill -KILL $pid; exit 1; }
  kill "-$1" $pid
  status=0
  wait $pid || status=$?
  cat "$log"
  [ $status = 0 ] || { echo "exit status $status after SIG$1"; exit 1; }
  grep -q "^capstan.app: signal .*: quitting$" "$log" || { echo "no quit line"; exit 1; }
}

run_once INT
grep -q '^capstan.app: screens: 2$' "$home/capstan-INT.log" || { echo "expected the two test monitors"; exit 1; }
grep -q '^capstan.app: sound devices: ' "$home/capstan-INT.log"
conf="$home/.config/Capstan/Capstan.ini"
[ -f "$conf" ] || { echo "no settings written at $conf"; exit 1; }
grep -q '^IsFirstRun=1$' "$conf"
grep -q '^FpsItemIndex=3$' "$conf"
! grep -q 'SplitType' "$conf"
run_once TERM
echo "start and quit: ok"

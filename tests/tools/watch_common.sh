# Shared by the tests of watch: one that runs in the background, and its events.
. "$(dirname "$0")/snapshot_common.sh"

# start ARGUMENT...: a watch in the background, from its first line on.
start() {
  : >/var/events
  "$zrcfg" watch "$@" >>/var/events 2>/var/watch_err &
  watcher=$!
  until grep -q watching /var/events || ! kill -0 "$watcher" 2>/dev/null; do sleep 0.01; done
}

# Waits until the watch has told all that was done before: when it tells a second mark, it is through
# with the round that the first belongs to.
settle() {
  settle_once && settle_once
}

settle_once() {
  local mark i
  mark=$(date +%s%N)
  "$zrcfg" set P.Last.Mark=$mark
  for ((i = 0; i < 1000; ++i)); do
    ! grep -qE "P\.Last\.Mark.*\"$mark\"" /var/events || return 0
    sleep 0.01
  done
  echo "FAILED the watch does not follow"
}

# All events but the first line and the marks; then none.
events() {
  settle
  grep -vE '^watching|P\.Last\.Mark' /var/events
  : >/var/events
}

# stop [SIGNAL]: ends the watch, which has to end well.
stop() {
  kill "-${1-TERM}" "$watcher"
  wait "$watcher"
  expect "ended by ${1-TERM}" "$?/$(cat /var/watch_err)" "0/"
}

#!/usr/bin/env bash
# Tests of scripts/store-backup, inside a private /var: what is saved comes back, archives are replaced
# whole or not at all, damaged ones are refused, locks are respected.
set -u
here=$(cd "$(dirname "$0")" && pwd)
[ $# -eq 2 ] || { echo "usage: store_backup_test.sh MKSTORE ZRCFG" >&2; exit 2; }
mkstore=$1 zrcfg=$2
examples=$here/../../examples
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
flash=$work/flash
saved=$flash/store
mkdir "$flash"
time_param=InternetGatewayDevice.Time.NTPServer1
users=InternetGatewayDevice.User
failures=0

backup() {
  "$here/../../scripts/store-backup" "$@" 2>"$work/err"
}

check() {
  if [ "$2" -ne "$3" ]; then
    printf 'FAILED %s: %s, wanted %s; %s\n' "$1" "$2" "$3" "$(cat "$work/err")"
    failures=$((failures + 1))
  else
    printf 'ok %s\n' "$1"
  fi
}

# succeeds WHAT COMMAND..., fails WHAT COMMAND...: by exit code 0 and 1.
succeeds() { local what=$1; shift; "$@"; check "$what" $? 0; }
fails() { local what=$1; shift; "$@"; check "$what" $? 1; }
holds() { [ "$2" = "$3" ]; check "$1" $? 0; }

# Every file of the store with its checksum.
tree() {
  (cd /var && find . -type f ! -name '*.log' -exec cksum {} + | sort)
}

"$mkstore" --model "$examples/home-gateway.xml" --instances "$examples/home-gateway.instances" \
  --values "$examples/home-gateway.values" --attributes "$examples/home-gateway.attributes" /var \
  >/dev/null || exit 1
tree >"$work/original"
[ "$(wc -l <"$work/original")" -gt 300 ] || { echo "the example store is too small"; exit 1; }

# ---- Save, lose everything, restore
succeeds "saves" backup save "$saved"
succeeds "checks what it has saved" backup check "$saved"
rm -rf /var/*
succeeds "restores into an empty store" backup restore "$saved"
holds "everything is back" "$(tree)" "$(cat "$work/original")"
holds "no other file is left there" "$(ls -A /var | grep -vE '^(InternetGatewayDevice|regex_file)$')" ""
holds "the archive is alone on the flash" "$(ls "$flash")" "$(printf 'store\nstore.lock')"

# ---- Restore over a changed store
"$zrcfg" set $time_param=changed.example.net
"$zrcfg" add $users >/dev/null
touch /var/unrelated.log
succeeds "restores over another state" backup restore "$saved"
holds "the old state is back" "$(tree)" "$(cat "$work/original")"
holds "other files are left alone" "$(ls /var/*.log)" /var/unrelated.log

# ---- An unchanged store costs no write; a changed one replaces the archive
inode=$(stat -c %i "$saved")
sleep 1
find /var -name property.conf -exec touch {} +
succeeds "saves an unchanged store" backup save "$saved"
holds "the archive was not written" "$(stat -c %i "$saved")" "$inode"
cp "$saved" "$work/first"
"$zrcfg" set $time_param=changed.example.net
tree >"$work/changed"
succeeds "saves a changed store" backup save "$saved"
rm -rf /var/InternetGatewayDevice
succeeds "restores the second archive" backup restore "$saved"
holds "the change is in it" "$(tree)" "$(cat "$work/changed")"
holds "the value is served" "$("$zrcfg" get $time_param)" changed.example.net

# ---- Damaged archives
size=$(stat -c %s "$saved")
refused() {
  fails "refuses $1" backup restore "$work/damaged"
  [ "$(tree)" = "$(cat "$work/changed")" ] || check "$1: the store is as it was" 1 0
}
for part in 0 1 20 $((size / 2)) $((size - 12)) $((size - 1)); do
  head -c "$part" "$saved" >"$work/damaged"
  refused "the first $part bytes"
done
for at in 0 4 10 $((size / 3)) $((size / 2)) $((size - 30)) $((size - 10)) $((size - 3)); do
  cp "$saved" "$work/damaged"
  byte=$(od -An -tu1 -j"$at" -N1 "$saved")
  printf "\\x$(printf %02x $((byte ^ 4)))" |
    dd of="$work/damaged" bs=1 seek="$at" conv=notrunc status=none
  refused "a changed byte $at"
done
{ cat "$saved"; echo; } >"$work/damaged"
refused "a line too much"
cat "$saved" "$saved" >"$work/damaged"
refused "two archives in one"
rm "$work/damaged"
refused "a missing archive"

# An archive of other things, well formed.
forge() {
  (cd "$work/forged" && tar -cPf "$work/tar" "$@")
  gzip -n -c "$work/tar" >"$work/packed"
  { cat "$work/packed"; echo; cksum <"$work/packed"; } >"$work/damaged"
}
mkdir -p "$work/forged/A"
touch "$work/forged/A/property.conf" "$work/forged/passwd"
ln -s /etc/passwd "$work/forged/A/link"
forge ./A/property.conf
succeeds "takes a forged archive that is a store" backup check "$work/damaged"
forge ./A/property.conf ./passwd
refused "a file that is no object's"
forge ./A/../A/property.conf
refused "a path that leads upwards"
mv "$work/forged/A/link" "$work/forged/A/property.conf"
forge ./A/property.conf
refused "a symbolic link"

# ---- Locks
lock=/var/InternetGatewayDevice/User/0/property.conf
flock -s "$lock" "$here/../../scripts/store-backup" --wait 0 save "$saved" 2>"$work/err"
check "saves beside a reader" $? 0
"$zrcfg" set $time_param=third.example.net
cp "$saved" "$work/second"
flock -x "$lock" "$here/../../scripts/store-backup" --wait 0 save "$saved" 2>"$work/err"
check "does not save while an object is written" $? 1
succeeds "the archive is as before" cmp "$saved" "$work/second"
flock -x "$lock" sleep 2 &
sleep 0.3
succeeds "waits for a writer" backup --wait 5 save "$saved"
fails "has the change then" cmp -s "$saved" "$work/second"
wait
tree >"$work/third"
flock -s "$lock" "$here/../../scripts/store-backup" restore "$work/first" 2>"$work/err"
check "does not restore while somebody reads" $? 1
holds "the store is as it was" "$(tree)" "$(cat "$work/third")"
flock -x "$saved.lock" "$here/../../scripts/store-backup" save "$saved" 2>"$work/err"
check "one save at a time" $? 1

# ---- No room: the archive stays
"$zrcfg" set $time_param=fourth.example.net
cp "$saved" "$work/third.archive"
(
  ulimit -f 4
  exec "$here/../../scripts/store-backup" save "$saved"
) 2>"$work/err"
check "fails without room" $? 1
succeeds "the archive is whole" cmp "$saved" "$work/third.archive"
holds "nothing is left beside it" "$(ls "$flash")" "$(printf 'store\nstore.lock')"

# ---- While instances come and go: what is saved are whole instances
(
  while [ ! -e "$work/stop" ]; do
    url=$("$zrcfg" add $users) && "$zrcfg" del "$url"
    sleep 0.4
  done
) >/dev/null 2>&1 &
writer=$!
good=0
for round in 1 2 3; do
  backup save "$flash/busy" || continue
  good=$((good + 1))
  mkdir "$work/busy"
  succeeds "round $round: restores" backup --store "$work/busy" restore "$flash/busy"
  for number in "$work"/busy/InternetGatewayDevice/User/*/; do
    diff -q <(cd "$work/busy/InternetGatewayDevice/User/0" && find . | sort) \
      <(cd "$number" && find . | sort) >/dev/null || check "round $round: $number is whole" 1 0
  done
  rm -rf "$work/busy"
done
touch "$work/stop"
wait $writer
succeeds "some saves came through" test $good -gt 0

# ---- With the shell and the tools of a gateway, as far as busybox here has them
mkdir "$work/tools" "$work/busy"
for tool in sh awk cat cksum cmp cp cut dirname find flock grep gzip head ls mkdir mktemp mv rm sleep \
  sort sync tail tar touch tr uniq wc; do
  if busybox --list | grep -qx $tool; then
    ln -s "$(command -v busybox)" "$work/tools/$tool"
  else
    ln -s "$(command -v $tool)" "$work/tools/$tool"
  fi
done
with_busybox() {
  env PATH="$work/tools" "$work/tools/sh" "$here/../../scripts/store-backup" "$@" 2>"$work/err"
}
tree >"$work/before"
succeeds "busybox saves" with_busybox save "$flash/busybox"
succeeds "busybox restores" with_busybox --store "$work/busy" restore "$flash/busybox"
holds "the same" "$(cd "$work/busy" && find . -type f -exec cksum {} + | sort)" "$(cat "$work/before")"
head -c 5000 "$flash/busybox" >"$work/damaged"
fails "busybox refuses a damaged archive" with_busybox restore "$work/damaged"
rm -rf "$work/busy"

for arguments in "" save "save a b" "move a" --store; do
  # shellcheck disable=SC2086
  backup $arguments >/dev/null
  check "usage: store-backup $arguments" $? 2
done
printf '%d failures\n' $failures
[ $failures -eq 0 ]

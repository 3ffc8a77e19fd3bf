# Run inside with-store: file system calls work in /var, and by none of them is the machine's own seen.
set -u
failures=0

check() {
  local what=$1
  shift
  if "$@"; then
    printf 'ok     %s\n' "$what"
  else
    printf 'FAILED %s: %s\n' "$what" "$*"
    failures=$((failures + 1))
  fi
}

fails() {
  ! "$@" >/dev/null 2>&1
}

echo one >/var/a
check "stat" test -f /var/a
check "faccessat" test -r /var/a
check "statx" stat -c '%n has %s bytes' /var/a
check "readdir and lstat" ls -la /var
check "rename" mv -T /var/a /var/b
check "renameat2 without replacing" mv -n /var/b /var/c
check "renamed" test "$(ls /var)" = c
check "link" ln /var/c /var/d
check "symlink" ln -s c /var/e
check "readlink" test "$(readlink /var/e)" = c
check "chmod" chmod 600 /var/c
check "mode" test "$(stat -c %a /var/d)" = 600
check "truncate" truncate -s 2 /var/d
check "unlink" rm /var/c
check "content" test "$(cat /var/d)" = on
check "same inode by name and by descriptor" test /var/d -ef /proc/self/fd/3 3</var/d
check "find" test "$(find /var -type f)" = /var/d
check "exclusive creation" bash -c 'set -C; echo x >/var/f'
check "exclusive creation of what is there" fails bash -c 'set -C; echo x >/var/f'

for path in /var/lib /var/lib/dpkg /var/lib/dpkg/status; do
  check "test -e $path" fails test -e $path
  check "test -r $path" fails test -r $path
  check "ls $path" fails ls $path
  check "stat $path" fails stat $path
  check "cat $path" fails cat $path
  check "mv to $path" fails mv -T /var/d $path/in/vain
done
check "making a folder that the machine has" mkdir -p /var/lib/dpkg
check "the new one is empty" test -z "$(ls -A /var/lib/dpkg)"

flock /var/lock sh -c 'touch /var/held; sleep 0.6' &
until [ -e /var/held ]; do sleep 0.02; done
check "a lock of another process" fails flock -n /var/lock true
check "waiting for it" flock -w 5 /var/lock true
wait
check "a shared lock twice" flock -s /var/lock flock -sn /var/lock true
exit $((failures > 0))

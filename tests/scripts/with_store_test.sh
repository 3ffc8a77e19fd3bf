# The launcher with-store: what a command finds inside it, and that nothing is left outside.
#
# usage: with_store_test.sh SCRIPTS WHO
#   root_bwrap, root_proot   as whoever runs the test (root in CI), the way forced
#   user_bwrap, user_proot   as an ordinary user, the way forced
#   plain_container          as root without CAP_SYS_ADMIN, the way left to with-store
set -u
scripts=$1
who=$2
unset ASAN_OPTIONS ZRCFG_WITH_STORE

scratch=$(mktemp -d)
trap 'chmod -R u+rwX "$scratch"; rm -rf "$scratch"' EXIT
# A copy, since an ordinary user may not be able to look into the source tree.
mkdir -p "$scratch/scripts/lib" "$scratch/tmp"
cp "$scripts/with-store" "$scratch/scripts"
cp "$scripts"/lib/*.pl "$scratch/scripts/lib"
cp "$(dirname "$0")/with_store_calls.sh" "$scratch"
. "$(dirname "$0")/with_store_common.sh"
cd "$scratch" || exit 1

as=()
way=${who#*_}
case $who in
  user_*)
    [ "$(id -u)" -ne 0 ] || as=(setpriv --reuid=65534 --regid=65534 --clear-groups)
    ;;
  plain_container)
    if [ "$(id -u)" -ne 0 ]; then
      echo "root without CAP_SYS_ADMIN can be tried by root only"
      exit 77
    fi
    as=(setpriv --bounding-set -sys_admin --inh-caps -sys_admin)
    way=any
    ;;
esac
chmod 755 "$scratch"
chmod 1777 "$scratch/tmp"
[ ${#as[@]} -eq 0 ] || [ "$way" = any ] || chown -R 65534:65534 "$scratch"

# with_store ARGUMENT...: the launcher as the user of this run, its temporary files in a place of
# their own. exec, so that a signal for it has no shell in between.
with_store() {
  exec env PATH="${path:-$PATH}" TMPDIR="$scratch/tmp" ZRCFG_WITH_STORE="$way" "${as[@]}" "$scratch/scripts/with-store" "$@"
}

namespaces_allowed() {
  if [ "$(id -u)" -eq 0 ] && [ ${#as[@]} -eq 0 ]; then
    unshare --mount true
  else
    "${as[@]}" unshare --user --mount true
  fi
} 2>/dev/null

machine_before=$(machine)

if [ "$way" = bwrap ] && ! namespaces_allowed; then
  echo "no namespaces here: the forced way has to refuse in one line"
  run with_store --temp true
  expect "exit code" "$status" 125
  expect "lines" "$(wc -l <"$scratch/err")" 1
  expect_match "reason" "$err" "with-store: no private /var: *namespace*"
  finish
fi

echo "-- the private directories"
mkdir store
[ -z "${as[*]}" ] || [ "$way" = any ] || chown 65534 store
run with_store "$scratch/store" sh -c 'ls -A /var; echo inside >/var/file; mkdir -p /var/a/b; cat /var/file'
expect "an empty store, then the file" "$out" inside
expect "file in DIR" "$(cat store/file)" inside
expect "folder in DIR" "$(find store -type d | sort | tr '\n' ' ')" "store store/a store/a/b "
run with_store store sh -c 'cat /var/file; rm -r /var/*'
expect "relative DIR, second run" "$out" inside
expect "removed again" "$(ls -A store)" ""
run with_store --temp sh -c 'for d in /var /zrrom /usr/local/zr; do
  ls -A $d; mkdir $d/x && echo $d >$d/x/y && cat $d/x/y; done'
expect "all three empty and writable" "$out" $'/var\n/zrrom\n/usr/local/zr'
expect "nothing temporary is left" "$(ls -A tmp)" ""

for dir in "two words" "co:lon" "-dash"; do
  mkdir -- "./$dir"
  [ -z "${as[*]}" ] || [ "$way" = any ] || chown 65534 "./$dir"
  run with_store "./$dir" sh -c 'echo here >/var/f'
  expect "DIR named $dir" "$status $(cat "./$dir/f")" "0 here"
done
ln -s "two words" link
run with_store link cat /var/f
expect "DIR is a symbolic link" "$out" here
below_var=$(mktemp -d /var/tmp/with-store.XXXXXX)
chmod 777 "$below_var"
run with_store "$below_var" sh -c 'echo deep >/var/f; ls -d /var/tmp'
expect "DIR below /var" "$(cat "$below_var/f") $out" "deep "
rm -r "$below_var"

echo "-- while a command runs, the machine has no such directories either"
(with_store --temp sh -c 'touch "$1/inside"; until [ -e "$1/go" ]; do sleep 0.05; done' x "$scratch/tmp") &
wait_for_file tmp/inside
expect "machine meanwhile" "$(machine)" "$machine_before"
touch tmp/go
wait $!
rm -f tmp/inside tmp/go

echo "-- the result"
for code in 0 1 42 255; do
  run with_store --temp sh -c "exit $code"
  expect "exit $code" "$status" "$code"
done
for signal in TERM KILL INT HUP SEGV; do
  run with_store --temp sh -c "kill -$signal \$\$; sleep 5"
  expect "killed by $signal" "$status" $((128 + $(kill -l "$signal")))
done
run with_store --temp sh -c '(sleep 0.3; exit 9) & exit 5'
expect "status is the command's own, not the last process's" "$status" 5
run with_store --temp "$scratch/nothing-here"
expect "not found" "$status" 127
run with_store --temp /etc/passwd
expect "not executable" "$status" 126

echo "-- as outside"
run with_store --temp printf '[%s]' 'two words' "it's" '"q"' '' '$HOME *' $'a\nb' '-x'
expect "arguments" "$out" $'[two words][it\'s]["q"][][$HOME *][a\nb][-x]'
expect "input" "$(echo typed | (with_store --temp cat))" typed
run with_store --temp sh -c 'echo to-error >&2'
expect "error output" "$err|$out" "to-error|"
run with_store --temp sh -c 'pwd; id -u; echo "$VARIABLE"'
expect "directory, user, environment" "$out" "$scratch
$("${as[@]}" id -u)
some value"
run with_store --temp sh -c 'ls /proc/self/fd | tr "\n" " "'
expect "descriptors" "$out" "$(sh -c 'ls /proc/self/fd | tr "\n" " "')"
run with_store --temp sh -c 'exec 3>"$1/tmp/made"; echo kept >&3' x "$scratch"
expect "a file outside" "$(cat tmp/made)" kept
rm -f tmp/made
cd /var/tmp || exit 1
run with_store --temp pwd
cd "$scratch" || exit 1
expect "hidden current directory" "$out" /
run with_store --temp sh -c 'grep TracerPid /proc/self/status'
traced=$([ "${out##*[[:space:]]}" = 0 ] && echo no || echo yes)
run with_store --temp sh -c 'echo "$ASAN_OPTIONS"'
expect "leak detection off when traced" "$traced $out" \
  "$([ "$way" = bwrap ] && echo 'no ' || echo 'yes detect_leaks=0')"
(with_store --temp sh -c 'trap "echo handled; exit 7" TERM; touch "$1/inside"; sleep 1 & wait' x "$scratch/tmp" >got) &
wait_for_file tmp/inside
kill -TERM $!
wait $!
expect "TERM reaches the command" "$? $(cat got)" "7 handled"
rm -f tmp/inside
expect "nothing temporary is left" "$(ls -A tmp)" ""

echo "-- file system calls"
expect "a file of the machine that must not be seen" "$(ls /var/lib/dpkg/status)" /var/lib/dpkg/status
run with_store --temp bash "$scratch/with_store_calls.sh"
printf '%s\n' "$out" "$err"
expect "calls" "$status" 0
(with_store store flock /var/lock sh -c 'touch "$1/inside"; until [ -e "$1/go" ]; do sleep 0.05; done' x "$scratch/tmp") &
wait_for_file tmp/inside
run with_store store flock -n /var/lock true
expect "locked for another launcher on the same store" "$status" 1
run flock -n store/lock true
expect "locked for a process outside" "$status" 1
touch tmp/go
wait $!
run with_store store flock -n /var/lock true
expect "free again" "$status" 0
rm -f tmp/inside tmp/go

echo "-- many at once"
for i in 1 2 3 4 5 6 7 8; do
  (with_store --temp sh -c 'echo $1 >/var/n; echo $1 >/zrrom/n; sleep 0.2; cat /var/n /zrrom/n' x $i >"many.$i" 2>&1) &
done
wait
expect "each its own" "$(cat many.* | tr '\n' ' ')" "1 1 2 2 3 3 4 4 5 5 6 6 7 7 8 8 "

echo "-- refusals"
refused "is not a directory" "$scratch/missing" true
refused "is not a directory" "$scratch/scripts/with-store" true
refused "no directory given"
refused "no command given" --temp
refused "unknown option --other" --other true
way=other refused "bwrap and proot are possible" --temp true
mkdir bin
for tool in bash env readlink setpriv dirname; do
  ln -s "$(command -v $tool)" "bin/$tool"
done
path=$scratch/bin way=any refused "proot or perl is not installed*bwrap*" --temp true
run with_store --help
expect_match "help" "$status $out" "0 usage: with-store DIR COMMAND*--temp*125*proot*"

expect "the machine" "$(machine)" "$machine_before"
expect "nothing temporary is left" "$(ls -A tmp)" ""
finish

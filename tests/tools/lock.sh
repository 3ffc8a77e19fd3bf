# zrcfg lock, zrcfg islock
. "$(dirname "$0")/common.sh"
make_object A First=one

run islock A
expect "free" "$out/$err/$status" "free//0"
run lock A -- sh -c 'echo inside; exit 7'
expect "the command's output and status" "$out/$err/$status" "inside//7"
run lock A. -- "$zrcfg" set --timeout 20 A.First=two
expect "locked while it runs" "$err/$status" "zrcfg: set: A.First: lock not obtained in time (code 9)/1"
run lock A. -- "$zrcfg" set --timeout -2 A.First=two
expect "inside without a lock" "$err/$status" "/0"
run lock A -- "$zrcfg" islock A
expect "islock sees it" "$out/$status" "locked/1"
run lock --shared A -- "$zrcfg" get --timeout 0 A.First
expect "readers share" "$out/$status" "two/0"
run lock --shared A -- "$zrcfg" set --timeout 0 A.First=three
expect "writers do not" "$status" "1"
run lock A -- "$zrcfg" islock --json A
expect "islock in JSON" "$out" '{"locked": true}'
run lock --timeout 50 A -- "$zrcfg" lock --timeout 50 A -- echo never
expect "a lock that is not obtained" "$out/$err/$status" "/zrcfg: lock: A.: lock not obtained in time (code 9)/1"
run islock A
expect "free again" "$out/$status" "free/0"

run lock A -- sh -c 'kill -9 $$'
expect "a deadly signal" "$status" "137"
run lock A -- /var/none
expect "no such command" "$err/$status" "zrcfg: lock: /var/none: No such file or directory/127"
run lock A -- /var
expect "not a command" "$status" "126"
run lock A
expect "no command given" "$err/$status" "zrcfg: lock: takes URL -- COMMAND.../2"
run lock --timeout -2 A -- true
expect "no lock makes no sense" "$err/$status" "zrcfg: lock: --timeout -2 would take no lock/2"
run lock B -- true
expect "no object" "$err/$status" "zrcfg: lock: B.: no such object (code 9)/1"
run islock B
expect "islock of no object" "$err/$status" "zrcfg: islock: B.: no such object, or its URL is too long (code 1)/2"
run lock A -- echo -n --shared x
expect "options behind -- are the command's" "$out" "--shared x"

# A signal ends the command, which decides, and the lock goes with it.
"$zrcfg" lock A -- sh -c 'trap "echo caught; exit 3" TERM; echo ready; while :; do sleep 0.05; done' >/var/out &
holder=$!
until grep -q ready /var/out 2>/dev/null; do sleep 0.01; done
kill -TERM "$holder"
wait "$holder"
expect "a signal is passed on" "$?/$(tail -1 /var/out)" "3/caught"
run islock A
expect "and the lock is free" "$out" "free"
finish

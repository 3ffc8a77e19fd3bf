# zrcfg set
. "$(dirname "$0")/common.sh"
make_object A First=one Second= Third=three
file=/var/A/property.conf

run set A.First=1.1
expect "set says nothing" "$out/$err/$status" "//0"
expect "values on disk" "$(tail -c +561 $file | od -An -c | tr -d ' \n')" '1.1\n\r\nthree\n'
run set A.Second='a=b=c' A.Third=
expect "only the first = splits" "$(tail -c +561 $file | od -An -c | tr -d ' \n')" '1.1\na=b=c\n\r\n'

before=$(stat -c '%Y %Z %i' $file; cat $file | md5sum)
sleep 1.1
run set A.First=1.1
expect "equal value leaves the file" "$status/$(stat -c '%Y %Z %i' $file; cat $file | md5sum)" "0/$before"

long=$(printf 'v%.0s' $(seq 256))
run set "A.First=$long"
expect "256 characters" "$err/$status" \
  "zrcfg: set: A.First: the value has 256 characters, at most 255 can be stored/1"
run set "A.First=${long#v}"
expect "255 characters" "$err/$status" "/0"
run get A.First
expect "255 characters read back" "$out" "${long#v}"
run set A.First="$(printf 'a\nb')"
expect "line feed" "$err/$status" "zrcfg: set: A.First: the value holds a line feed, which cannot be stored (code 7)/1"
run set A.First="$(printf '\rb')"
expect "carriage return" "$err/$status" \
  "zrcfg: set: A.First: the value begins with a carriage return and would read back empty/1"

before=$(md5sum <$file)
run set A.First=x A.Second
expect "all arguments are checked first" "$err/$status/$(md5sum <$file)" "zrcfg: set: A.Second: not PATH=VALUE/2/$before"
run set B.First=x
expect "missing object" "$err/$status" "zrcfg: set: B.First: no such object (code 9)/1"

# A holder of the lock makes a short time-out fail and a long one wait.
mkfifo /var/release
flock $file sh -c 'echo held >/var/held; read line </var/release' &
until [ -e /var/held ]; do sleep 0.01; done
run set --timeout 50 A.First=y
expect "locked" "$err/$status" "zrcfg: set: A.First: lock not obtained in time (code 9)/1"
run set --timeout -2 A.First=unlocked
expect "without a lock" "$status" "0"
"$zrcfg" --timeout 20000 set A.First=waited &
waiter=$!
sleep 0.2
run get --timeout -2 A.First
expect "still waiting" "$out" "unlocked"
echo >/var/release
wait "$waiter"
expect "got the lock" "$?" "0"
run get A.First
expect "set after the wait" "$out" "waited"
finish

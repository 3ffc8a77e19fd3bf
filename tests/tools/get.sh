# zrcfg get
. "$(dirname "$0")/common.sh"
make_object A First=one Second= Third='with = and  blanks'

run get A.First
expect "value" "$out/$err/$status" "one//0"
run get A.First A.Second A.Third
expect "several values in order" "$out" "$(printf 'one\n\nwith = and  blanks')"
run get --names A.First A.Second
expect "names" "$out" "$(printf 'A.First=one\nA.Second=')"

run get A.Missing
expect "unknown parameter" "$out/$err/$status" "/zrcfg: get: A.Missing: no such parameter (code 5)/1"
run get A.Missing A.First
expect "the others are still printed" "$out/$status" "one/1"
run get B.First
expect "missing object" "$err/$status" "zrcfg: get: B.First: no such object (code 9)/1"
mkdir /var/C
run get C.First --timeout -2
expect "no property file" "$err/$status" "zrcfg: get: C.First: the object has no property file (code 8)/1"

run get A.
expect "object in place of parameter" "$err/$status" "zrcfg: get: A.: names an object, not a parameter/2"
run get First
expect "no path" "$err/$status" "zrcfg: get: First: not a parameter path (Object.Name)/2"
run get A.First First
expect "nothing is read when an argument is wrong" "$out/$status" "/2"
long=$(printf 'x%.0s' $(seq 64))
run get "A.$long"
expect "name of 64 characters" "$err/$status" "zrcfg: get: A.$long: the parameter name is longer than 63 characters/2"
long=$(printf 'x%.0s' $(seq 255))
run get "$long.First"
expect "URL of 256 characters" "$err/$status" "zrcfg: get: $long.First: the object URL is longer than 255 characters/2"
for path in A..First .A.First; do
  run get "$path"
  expect "empty component in $path" "$err/$status" "zrcfg: get: $path: the object URL has an empty component/2"
done

printf 'x' >>/var/A/property.conf
head -c 500 /var/A/property.conf >/var/A/cut && cat /var/A/cut >/var/A/property.conf
run get A.First
expect "damaged file" "$err/$status" \
  "zrcfg: get: A.First: the property file is damaged: records and values do not match (code 10)/1"

if [ -e /dev/full ]; then
  make_object A First=one
  "$zrcfg" get A.First >/dev/full 2>/var/err
  expect "full output" "$?/$(cat /var/err)" "1/zrcfg: cannot write to standard output"
fi
finish

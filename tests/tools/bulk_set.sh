# zrcfg set: values checked first, one write for each object
. "$(dirname "$0")/common.sh"
digits=7

# filter DIR INDEX NUMBER: names a filter in the parameter's record.
filter() {
  printf "\\x00\\x00\\x00\\x0$3" |
    dd of="/var/$1/property.conf" bs=1 seek=$((188 + 124 * $2 + 116)) conv=notrunc 2>/dev/null
}

make_object A First=one Number=12 Third=three
make_object B First=1
filter A 1 $digits
printf "config filter 'filter%s'\n\toption value '^[0-9]+\$'\n" $digits >/var/regex_file
a=/var/A/property.conf

values() { tail -c +$((189 + 124 * 3)) $a | xargs; }

run set A.Number=34 B.First=2 A.First=eins
expect "two objects" "$out/$err/$status/$(values)" "//0/eins 34 three"
run get B.First
expect "the other object" "$out" "2"

before=$(md5sum <$a)
run set A.First=x A.Number=abc A.Third=y B.First=3
expect "one refused value leaves its object" "$status/$(md5sum <$a)" "1/$before"
expect "and says so" "$err" "$(printf '%s\n' \
  "zrcfg: set: A.Number: the parameter does not take the value 'abc' (code 7)" 'zrcfg: set: A.: not changed')"
run get B.First
expect "the other object is changed" "$out" "3"

long=$(printf 'v%.0s' $(seq 256))
run set A.None=1 A.Number=x A.First="$long" A.Third="$(printf '\r')" C.First=1
expect "every refusal is reported" "$err/$status/$(md5sum <$a)" "$(printf '%s\n' \
  'zrcfg: set: A.None: no such parameter (code 5)' \
  "zrcfg: set: A.Number: the parameter does not take the value 'x' (code 7)" \
  'zrcfg: set: A.First: the value has 256 characters, at most 255 can be stored' \
  'zrcfg: set: A.Third: the value begins with a carriage return and would read back empty' \
  'zrcfg: set: C.First: no such object (code 9)' \
  'zrcfg: set: A.: not changed')/1/$before"

run set --no-check A.Number=abc
expect "without the filters" "$err/$status/$(values)" "/0/eins abc three"
run set --no-check A.Number=x A.None=1
expect "unknown names are refused even so" "$status/$(values)" "1/eins abc three"
run set A.Third=drei
expect "other values are not checked" "$status/$(values)" "0/eins abc drei"

run set A.First=1 A.First=2
expect "the last of two wins" "$status/$(values)" "0/2 abc drei"
before=$(stat -c '%y %i' $a)
sleep 0.05
run set A.First=2 A.Third=drei
expect "equal values are not written" "$status/$(stat -c '%y %i' $a)" "0/$before"

rm /var/regex_file
run set A.Number=anything
expect "without a pattern file nothing is checked" "$status/$(values)" "0/2 anything drei"

mapfile -t many < <(for i in $(seq 1002); do echo "B.First=$i"; done)
run set "${many[@]}"
expect "too many for one object" "$err/$status" "$(printf '%s\n' \
  'zrcfg: set: B.: more than 1001 values for one object' 'zrcfg: set: B.: not changed')/1"
run set "${many[@]:0:1001}"
expect "1001 for one object" "$err/$status" "/0"
run get B.First
expect "the last one" "$out" "1001"
finish

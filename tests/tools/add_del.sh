# zrcfg add, zrcfg del
. "$(dirname "$0")/common.sh"

# make_table DIR LIMIT ACCESS: a table with a template; ACCESS is its flag byte.
make_table() {
  make_object "$1"
  poke_header "$1" 5 "$2"
  poke_header "$1" 8 "$3"
  printf P/TNumberOfEntries | dd of="/var/$1/property.conf" bs=1 seek=$((4 + 76)) conv=notrunc 2>/dev/null
  make_object "$1/0" Name=new
  make_object "$1/0/Sub" Inner=x
}

make_object P TNumberOfEntries=0 Other=1
make_table P/T 03 10
make_table P/F 02 00

run add P.T
expect "first number" "$out/$err/$status" "P.T.1.//0"
run add P.T. 3
expect "a number of one's own" "$out/$status" "P.T.3./0"
run add P.T
expect "the lowest free number" "$out/$status" "P.T.2./0"
run get P.TNumberOfEntries P.T.2.Name P.T.2.Sub.Inner
expect "counter and copy" "$out" "$(printf '3\nnew\nx')"
run add P.T
expect "limit" "$out/$err/$status" \
  "/zrcfg: add: P.T.: instance limit reached, or the instance exists already (code 4)/1"
run add P.T 2
expect "taken" "$err/$status" \
  "zrcfg: add: P.T.2: instance limit reached, or the instance exists already (code 4)/1"
for wrong in 0 -- -1 x 1x 99999999999; do
  [ "$wrong" = -- ] && continue
  run add P.T -- "$wrong"
  expect "number '$wrong'" "$err/$status" "zrcfg: add: $wrong: not an instance number from 1 on/2"
done
run add P.T 1 2
expect "one number only" "$err/$status" "zrcfg: add: takes one table and one number/2"

run del P.T.1 P.T.3.
expect "several instances" "$out/$err/$status" "//0"
run get P.TNumberOfEntries
expect "counter" "$out" "1"
expect "what is left" "$(ls /var/P/T | xargs)" "0 2 property.conf"
run del P.T.1. P.T.2.
expect "the others are still deleted" "$err/$status/$(ls /var/P/T | xargs)" \
  "zrcfg: del: P.T.1.: no such object, or its URL is too long (code 1)/1/0 property.conf"

run add P
expect "no table" "$err/$status" \
  "zrcfg: add: P.: not a table of that kind, or without the instance to copy (code 9)/1"
run add Nowhere
expect "no object" "$err/$status" "zrcfg: add: Nowhere.: no such object (code 9)/1"
run del P.5.
expect "no table to delete from" "$err/$status" \
  "zrcfg: del: P.5.: not a table of that kind, or without the instance to copy (code 9)/1"
for wrong in P.T. T 5 P.T.x P.T.-1 P.T.1x; do
  run del "$wrong"
  expect "'$wrong' is no instance" "$err/$status" \
    "zrcfg: del: $wrong: not an instance's URL (Table.Number.)/2"
done
for wrong in .5 .; do
  run del $wrong
  expect "'$wrong' has an empty component" "$err/$status" \
    "zrcfg: del: $wrong: the object URL has an empty component/2"
done

run del P.T.0.
expect "the template is kept" "$status/$(ls /var/P/T | xargs)" "2/0 property.conf"
run del --template P.T.0
expect "unless it is asked for" "$err/$status/$(ls /var/P/T)" "/0/property.conf"

run add --static --from 0 P.F
expect "fixed table" "$out/$err/$status" "P.F.1.//0"
run set P.F.1.Name=first
run add --static --from 1 P.F 7
expect "a number above the limit" "$out/$status" "P.F.7./0"
run add --static --from 1 P.F
expect "the lowest free one" "$out/$status" "P.F.2./0"
run get P.F.7.Name
expect "copied from the instance named" "$out" "first"
run add --static --from 9 P.F
expect "no source" "$err/$status" \
  "zrcfg: add: P.F.: not a table of that kind, or without the instance to copy (code 2)/1"
run add P.F
expect "a fixed table needs --static" "$err/$status" \
  "zrcfg: add: P.F.: not a table of that kind, or without the instance to copy (code 2)/1"
run add --static P.F
expect "--static needs --from" "$err/$status" "zrcfg: add: --static and --from go together/2"
run add --static --from x P.F
expect "--from takes a number" "$(printf %s "$err" | head -1)/$status" \
  "zrcfg: add: --from x: not an instance number/2"
run del --static P.F.7
expect "deleted" "$status/$(ls /var/P/F | xargs)" "0/0 1 2 property.conf"
run del P.F.1
expect "del without --static" "$err/$status" \
  "zrcfg: del: P.F.1: not a table of that kind, or without the instance to copy (code 2)/1"
finish

# zrcfg check --repair: what has one right answer is mended in the existing files, all else stays.
. "$(dirname "$0")/check_common.sh"
make_store

# Content, inode and size of every file, one line each.
files() {
  find /var/R /var/regex_file -type f -printf '%p %i ' -exec sha256sum {} \; | sort
}

# changed_files FILE: the files that are not as the list FILE has them.
changed_files() {
  files | diff "$1" - | sed -n 's/^[<>] \(.*\)\/property.conf [0-9].*/\1/p' | sort -u | paste -sd,
}

# repairs WHAT FINDINGS CHANGED COMMAND...: what is found and mended behind a command that damages the
# store, and whose files that changes. Nothing is left, the same once more does nothing.
repairs() {
  local what=$1 wanted=$2 changed=$3 inodes
  shift 3
  reset_store
  "$@"
  files >/var/before
  inodes=$(find /var/R -name property.conf -printf '%p %i\n' | sort)
  run check --repair
  expect "$what: repaired" "$(findings)/$err/$status" "$wanted//3"
  expect "$what: said" "$(grep -vc ' (repaired: .*)$' /var/out)" "0"
  expect "$what: changed" "$(changed_files /var/before)" "$changed"
  expect "$what: the same files" \
    "$(find /var/R -name property.conf -printf '%p %i\n' | sort | comm -23 - <(printf '%s\n' "$inodes"))" ""
  finds "$what: clean" "" 0
  files >/var/before
  run check --repair
  expect "$what: once more" "$out/$err/$status/$(changed_files /var/before)" "//0/"
}

# leaves WHAT FINDINGS COMMAND...: what is found and not mended.
leaves() {
  local what=$1 wanted=$2 before
  shift 2
  reset_store
  "$@"
  before=$(fingerprint)
  run check --repair
  expect "$what: left" "$(findings)/$err/$status" "$wanted//1"
  expect "$what: nothing changed" "$([ "$(fingerprint)" = "$before" ] && echo same)" "same"
}

values_of() {
  run get "$@"
  paste -sd, /var/out
}

run check --repair
expect "nothing to repair" "$out/$err/$status" "//0"

# Value lines.
single=/var/R/Single/property.conf
repairs "surplus bytes" "R.Single.: surplus-bytes" "/var/R/Single" \
  eval 'poke R/Single/property.conf 572 "four\nfi"'
expect "its values" "$(values_of R.Single.First R.Single.Second R.Single.Third)" "one,,three"
expect "in words" "$(reset_store; poke R/Single/property.conf 572 x; run check --repair; cat /var/out)" \
  "R.Single.: surplus-bytes: 1 byte behind the last value (repaired: cut off)"
repairs "an open line" "R.Single.: line-unended" "/var/R/Single" truncate -s 571 $single
expect "its values" "$(values_of R.Single.First R.Single.Second R.Single.Third)" "one,,three"
repairs "missing lines" "R.Single.: lines-missing" "/var/R/Single" truncate -s 564 $single
expect "its values" "$(values_of R.Single.First R.Single.Second R.Single.Third)" "one,,"
types() {
  local type records=() i
  for type in 1 2 3 4 5 6 7 8 9 10 11; do
    records+=(P$type=)
  done
  make_object R/Single "${records[@]}"
  for i in {0..10}; do
    poke_record R/Single $i 0 "\\x$(printf %02x $((i + 1)))"
  done
  truncate -s $((188 + 124 * 11)) $single
}
repairs "a value for each type" "R.Single.: lines-missing" "/var/R/Single" types
expect "the values" "$(values_of R.Single.P{1..11})" ",0,0,false,0001-01-01T00:00:00Z,,0,0,,0,"
repairs "missing lines of an instance" "R.Table.1.: lines-missing" "/var/R/Table/1" \
  truncate -s 436 /var/R/Table/1/property.conf
expect "as in the template" "$(values_of R.Table.1.Alias R.Table.1.Enable)" "new,1"
expect "in words" "$(reset_store; truncate -s 440 /var/R/Table/2/property.conf; run check --repair; cat /var/out)" \
  "R.Table.2.: lines-missing: 1 value for 2 parameters (repaired: filled from the template)"
template_values() { poke R/Table/0/Sub/property.conf 436 'DEEP'; truncate -s 436 /var/R/Table/2/Sub/property.conf; }
repairs "below an instance" "R.Table.2.Sub.: lines-missing" "/var/R/Table/2/Sub" template_values
expect "as below the template" "$(values_of R.Table.2.Sub.Detail)" "DEEP"
repairs "of the template itself" "R.Table.0.: lines-missing" "/var/R/Table/0" \
  truncate -s 440 /var/R/Table/0/property.conf
expect "the first value of its type" "$(values_of R.Table.0.Alias R.Table.0.Enable)" "new,"
cut_value() { truncate -s 438 /var/R/Table/1/property.conf; }
repairs "cut within a value" "R.Table.1.: lines-missing,R.Table.1.: line-unended" "/var/R/Table/1" cut_value
expect "what is there stays" "$(values_of R.Table.1.Alias R.Table.1.Enable)" "ne,1"

zeros() { truncate -s "$1" $single && truncate -s 5000 $single; }
repairs "zeros for the end" "R.Single.: zero-byte" "/var/R/Single" zeros 564
expect "its values" "$(values_of R.Single.First R.Single.Second R.Single.Third)" "one,,"
repairs "zeros from within the last value on" "R.Single.: zero-byte" "/var/R/Single" zeros 569
expect "its values" "$(values_of R.Single.First R.Single.Second R.Single.Third)" "one,,thr"
repairs "zeros for all of it" "R.Single.: zero-byte" "/var/R/Single" zeros 560
repairs "zeros behind it" "R.Single.: surplus-bytes" "/var/R/Single" zeros 572

# Counters.
counter_of() { poke R/property.conf 564 "$1"; }
for count in 0 1 3 9 x -; do
  repairs "counter $count" "R.TableNumberOfEntries: counter-wrong" "/var/R" counter_of $count
  expect "counter $count: the value" "$(values_of R.TableNumberOfEntries)" "2"
done
expect "in words" "$(reset_store; counter_of 3; run check --repair; cat /var/out)" \
  "R.TableNumberOfEntries: counter-wrong: is '3', but R.Table. has 2 instances (repaired: set to 2)"
many_instances() { for i in {10..110}; do make_object R/Fixed/$i Name=; done; }
repairs "a counter that grows" "R.FixedNumberOfEntries: counter-wrong" "/var/R" many_instances
expect "its value" "$(values_of R.FixedNumberOfEntries)" "102"
repairs "a counter within an instance" "R.Table.1.Sub.InnerNumberOfEntries: counter-wrong" \
  "/var/R/Table/1/Sub" make_object R/Table/1/Sub/Inner/4 Deepest=
expect "its value" "$(values_of R.Table.1.Sub.InnerNumberOfEntries)" "1"
repairs "a counter whose line is missing" "R.: lines-missing,R.TableNumberOfEntries: counter-wrong" "/var/R" eval \
  'truncate -s 564 /var/R/property.conf; poke_record R 1 0 "\x03"; poke_record R 2 0 "\x03"
   rm -r /var/R/Fixed/1'
expect "its value" "$(values_of R.TableNumberOfEntries R.FixedNumberOfEntries)" "2,0"

numbered_sibling() { make_object R/7; poke_text R/7 76 'R/TableNumberOfEntries'; counter_of 3; }
repairs "a counter that an instance names, which is no table" "R.TableNumberOfEntries: counter-wrong" "/var/R" \
  numbered_sibling

# Half-copied instances go; the number is free again.
half() { mkdir /var/R/Table/3 && cp /var/R/Table/0/property.conf /var/R/Table/3; }
repairs "a half-copied instance" "R.Table.3.: instance-incomplete" "/var/R/Table/3" half
expect "it is gone" "$([ -e /var/R/Table/3 ] || echo gone)" "gone"
run add R.Table
expect "its number is free" "$out/$status/$(values_of R.TableNumberOfEntries)" "R.Table.3./0/3"
several() { half; mkdir /var/R/Table/5; cp -r /var/R/Table/0 /var/R/Table/4; rm -r /var/R/Table/4/Sub/Inner; }
repairs "several" "R.Table.3.: instance-incomplete,R.Table.4.: instance-incomplete,R.Table.5.: instance-incomplete" \
  "/var/R/Table/3,/var/R/Table/4,/var/R/Table/4/Sub" several
zero_file() { whole && truncate -s 0 /var/R/Table/3/Sub/property.conf && truncate -s 443 /var/R/Table/3/Sub/property.conf; }
whole() { cp -r /var/R/Table/0 /var/R/Table/3; }
repairs "a whole copy is counted" "R.TableNumberOfEntries: counter-wrong" "/var/R" whole
expect "its value" "$(values_of R.TableNumberOfEntries)" "3"
gone() { rm -r /var/R/Table/2; }
repairs "an instance that is gone is not" "R.TableNumberOfEntries: counter-wrong" "/var/R" gone
repairs "with zeros in place of a file" "R.Table.3.: instance-incomplete" \
  "/var/R/Table/3,/var/R/Table/3/Sub,/var/R/Table/3/Sub/Inner,/var/R/Table/3/Sub/Inner/0" zero_file
inner_half() { mkdir /var/R/Table/1/Sub/Inner/2; }
repairs "within an instance" "R.Table.1.Sub.Inner.2.: instance-incomplete" "" inner_half

# What has no one right answer.
leaves "no file" "R.Single.: file-missing" rm $single
leaves "a file without content" "R.Single.: length-invalid" truncate -s 0 $single
leaves "a cut file" "R.Single.: file-short" truncate -s 300 $single
leaves "an empty line" "R.Single.: lines-missing,R.Single.: line-empty" poke R/Single/property.conf 564 '\n\n'
leaves "zeros with values behind" "R.Single.: zero-byte" poke R/Single/property.conf 564 '\0\0\0'
leaves "a refused value" "R.Single.First: value-refused" poke R/Single/property.conf 560 1
unknown_type() { truncate -s 564 $single; poke_record R/Single 2 0 '\xc8'; }
leaves "missing lines of an unknown type" "R.Single.: lines-missing" unknown_type
refused_value() { truncate -s 560 $single; poke_record R/Single 0 0 '\x05'; }
leaves "missing lines whose first value is refused" "R.Single.: lines-missing" refused_value
remains() { half && counter_of 3; }
leaves "an instance that is counted" "R.Table.3.Sub.: object-missing" remains
same_counter() { poke_text R/Table 76 'R/FixedNumberOfEntries'; }
leaves "the counter of two tables" "R.FixedNumberOfEntries: counter-wrong" same_counter
neither_fits() { same_counter; poke R/property.conf 566 7; }
leaves "which fits neither of them" \
  "R.FixedNumberOfEntries: counter-wrong,R.FixedNumberOfEntries: counter-wrong" neither_fits
expect "in words" "$(grep -o '(not .*' /var/out | sort -u)" "(not repaired: another table has the same counter)"
two_ways() { half && cp -r /var/R/Table/0 /var/R/Table/4; }
leaves "one half copied, one whole" "R.TableNumberOfEntries: counter-wrong,R.Table.3.Sub.: object-missing" two_ways
fixed_half() { mkdir /var/R/Fixed/0; cp /var/R/Fixed/1/property.conf /var/R/Fixed/0; rm /var/R/Fixed/1/property.conf; }
leaves "an instance of a fixed table" "R.Fixed.1.: file-missing" fixed_half
leaves "a stray file" "/var/R/stray: stray-file" touch /var/R/stray
leaves "no template" "R.Table.: template-missing" rm -r /var/R/Table/0
leaves "two names" "R.Single.First: name-duplicate" poke_record R/Single 2 8 'First\0'

# Mixed: what can be mended is, and the rest stays.
reset_store
truncate -s 564 $single
touch /var/R/Table/1/stray
counter_of 7
half
files >/var/before
run check --repair
expect "mixed" "$(findings)/$err/$status" "R.Single.: lines-missing,R.TableNumberOfEntries: counter-wrong,\
/var/R/Table/1/stray: stray-file,R.Table.3.Sub.: object-missing//1"
reset_store
truncate -s 564 $single
touch /var/R/Table/1/stray
half
files >/var/before
run check --repair --json
seen=$(python3 -c 'import json
for finding in json.load(open("/var/out")):
  print(finding["problem"], finding["repaired"], sep=" ", end=",")')
expect "as JSON" "$seen/$status" "lines-missing True,instance-incomplete True,stray-file False,/1"
expect "changed" "$(changed_files /var/before)" "/var/R/Single,/var/R/Table/3"
finds "what is left" "/var/R/Table/1/stray: stray-file" 1
reset_store
truncate -s 564 $single
poke_record R/Single 2 119 '\xff'
files >/var/before
run check --repair
expect "a filter that is not there" "$(findings)/$err/$status/$(changed_files /var/before)" \
  "R.Single.: lines-missing,R.Single.Third: filter-missing//1//var/R/Single"
finds "what is left" "R.Single.Third: filter-missing" 1
reset_store
truncate -s 564 $single
counter_of 7
run check --repair R.Table
expect "only what is below the object" "$(findings)/$status" "R.TableNumberOfEntries: counter-wrong/3"
finds "the rest" "R.Single.: lines-missing" 1

# Locks: the writers' one, and none where nothing is to be mended.
reset_store
flock -s /var/R/Single/property.conf -c "'$zrcfg' check --repair --timeout 0" >/var/out 2>/var/err
expect "readers are not in the way of a clean store" "$?/$(cat /var/out /var/err)" "0/"
truncate -s 564 $single
flock -s /var/R/Single/property.conf -c "'$zrcfg' check --repair --timeout 0" >/var/out 2>/var/err
expect "but of a repair" "$?/$(findings)/$(cat /var/err)" \
  "1/R.Single.: lines-missing/zrcfg: check: R.Single.: lock not obtained in time (code 9)"
expect "which did not happen" "$(stat -c %s $single)" "564"
counter_of 7
flock -s /var/R/property.conf -c "'$zrcfg' check --repair --timeout 0 R.Table" >/var/out 2>/var/err
expect "a counter that is locked" "$?/$(cat /var/out)" "1/R.TableNumberOfEntries: counter-wrong: is '7', but \
R.Table. has 2 instances (not repaired: lock not obtained in time)"

if [ "$(id -u)" -ne 0 ]; then
  reset_store
  truncate -s 436 /var/R/Table/1/property.conf
  chmod 000 /var/R/Table/0/property.conf
  run check --repair R.Table.1
  expect "nothing is repaired without its lock" "$(findings)/$err/$status/$(stat -c %s /var/R/Table/1/property.conf)" \
    "R.Table.1.: lines-missing/zrcfg: check: R.Table.1.: its lock, /var/R/Table/0/property.conf, cannot be taken/1/436"
fi

# A file that cannot grow stays as it is.
reset_store
truncate -s 564 $single
full() { (ulimit -f 0; "$zrcfg" check --repair R.Single 2>&1 | cat); }
before=$(fingerprint)
trap '' XFSZ
seen=$(full | sed 's/ value for.*not//')
expect "a file that cannot be written" "$seen" "R.Single.: lines-missing: 1 repaired: File too large)"
expect "is as it was" "$([ "$(fingerprint)" = "$before" ] && echo same)" "same"
finish

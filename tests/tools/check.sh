# zrcfg check: each kind of damage is found, with its path and identifier, and nothing else.
. "$(dirname "$0")/check_common.sh"
make_store

finds "a store without a flaw" "" 0
finds "an object of it" "" 0 R.Table.1
run check --json
expect "nothing found, as JSON" "$out/$status" "[]/0"

# damage WHAT FINDINGS COMMAND...: what is found behind a command that damages the store.
damage() {
  local what=$1 wanted=$2
  shift 2
  reset_store
  "$@"
  finds "$what" "$wanted" 1
}

# The file as a whole.
single=/var/R/Single/property.conf
damage "no property file" "R.Single.: file-missing" rm $single
damage "of the root" "R.: file-missing" rm /var/R/property.conf
directory_in_place() { rm $single && mkdir $single; }
damage "a directory in its place" "R.Single.: file-not-regular" directory_in_place
fifo_in_place() { rm $single && mkfifo $single; }
damage "a FIFO in its place" "R.Single.: file-not-regular" fifo_in_place
link_in_place() { mv $single /var/elsewhere && ln -s /var/elsewhere $single; }
damage "a link in its place" "R.Single.: file-not-regular" link_in_place
loop_in_place() { rm $single && ln -s property.conf $single; }
damage "a link to itself" "R.Single.: file-not-regular" loop_in_place
damage "larger than any" "R.Single.: file-too-large" truncate -s 100G $single
damage "empty" "R.Single.: length-invalid" truncate -s 0 $single
damage "three bytes" "R.Single.: length-invalid" truncate -s 3 $single
damage "a length word below 184" "R.Single.: length-invalid" poke R/Single/property.conf 0 '\0\0\0\xb7'
damage "above 16 MiB" "R.Single.: length-invalid" poke R/Single/property.conf 0 '\x01\0\0\x01'
damage "not that of whole records" "R.Single.: length-partial" poke R/Single/property.conf 2 '\x02\x2d'
damage "more than 255 records" "R.Single.: file-short" poke R/Single/property.conf 0 '\0\0\xff\xfc'
many_records() {
  { printf '\0\0\x7c\xb8'; head -c $((184 + 124 * 256)) /dev/zero; yes x | head -256; } >$single
}
damage "256 records" "R.Single.: records-too-many" many_records
damage "cut in the header" "R.Single.: file-short" truncate -s 100 $single
damage "cut in a record" "R.Single.: file-short" truncate -s 559 $single

# Value lines: the section of the single object begins at 560, with "one" LF CR LF "three" LF.
damage "no value at all" "R.Single.: lines-missing" truncate -s 560 $single
damage "one value of three" "R.Single.: lines-missing" truncate -s 564 $single
damage "cut within a value" "R.Single.: line-unended" truncate -s 569 $single
damage "cut within the second" "R.Single.: lines-missing,R.Single.: line-unended" truncate -s 565 $single
damage "a line too many" "R.Single.: surplus-bytes" poke R/Single/property.conf 572 'four\n'
damage "bytes behind the last line" "R.Single.: surplus-bytes" poke R/Single/property.conf 572 '\n\0'
damage "an empty line" "R.Single.: lines-missing,R.Single.: line-empty" poke R/Single/property.conf 564 '\n\n'
damage "an empty line and a line too many" "R.Single.: line-empty,R.Single.: surplus-bytes" \
  poke R/Single/property.conf 560 'o\n\ne\nthree\nfour\n'
damage "a zero byte" "R.Single.: zero-byte" poke R/Single/property.conf 567 '\0'
damage "zeros for the end" "R.Single.: zero-byte" poke R/Single/property.conf 564 '\0\0\0\0\0\0\0\0'
damage "a value of 256 characters" "R.Single.First: value-too-long" \
  poke R/Single/property.conf 560 "$(fill 256)\\n\\r\\nthree\\n"
damage "of 255 characters" "R.Single.Second: filter-missing" \
  eval 'poke R/Single/property.conf 560 "$(fill 255)\n$(fill 255)\nthree\n"; poke_record R/Single 1 116 "\0\0\0\x03"'

# Values and filters.
damage "a value that its filter refuses" "R.Single.First: value-refused" poke R/Single/property.conf 560 1
damage "a filter that is not there" "R.Single.Third: filter-missing" poke_record R/Single 2 116 '\xff\xff\xff\xff'
filter_without_value() { truncate -s 564 $single; poke_record R/Single 2 119 "\\x$1"; }
damage "a filter that is not there, and no value" "R.Single.: lines-missing,R.Single.Third: filter-missing" \
  filter_without_value ff
damage "a filter that is no expression" "R.Single.Third: filter-invalid" poke_record R/Single 2 119 '\x02'
damage "and no value" "R.Single.: lines-missing,R.Single.Third: filter-invalid" filter_without_value 02
damage "no filters at all" "R.Single.First: filter-missing" truncate -s 0 /var/regex_file
filter_beside_empty_line() { poke R/Single/property.conf 564 '\n\n'; poke_record R/Single 2 119 '\xff'; }
damage "beside values that nobody can tell apart" \
  "R.Single.: lines-missing,R.Single.: line-empty,R.Single.Third: filter-missing" filter_beside_empty_line
another_filter() {
  printf "config filter 'filter129'\n\toption value '^[0-9]*\$'\n" >>/var/regex_file
  poke_record R/Single 2 119 '\x81'
}
damage "each value has its own filter" "R.Single.Third: value-refused" another_filter
fifo_of_filters() { rm /var/regex_file && mkfifo /var/regex_file; }
reset_store && fifo_of_filters
run check
expect "a FIFO of filters" "$(findings)/$status" "R.Single.First: filter-missing/1"
reset_store
mv /var/regex_file /var/filters
run check
expect "without the file of filters everything goes" "$out/$err/$status" "//0"
mv /var/filters /var/regex_file

# Names and texts.
damage "two records of one name" "R.Single.First: name-duplicate" poke_record R/Single 2 8 'First\0'
damage "no name" "R.Single.: name-empty" poke_record R/Single 2 8 '\0'
damage "a name without terminator" "R.Single.$(fill 64): name-unterminated" poke_record R/Single 1 8 "$(fill 64)"
damage "a dot in a name" "R.Single.a.b: name-unaddressable" poke_record R/Single 1 8 'a.b\0'
damage "a text of a parameter" "R.Single.Second: text-unterminated" poke_record R/Single 1 72 "$(fill 16)"
damage "another one" "R.Single.Second: text-unterminated" poke_record R/Single 1 88 "$(fill 28)"
damage "a text of an object" "R.Single.: text-unterminated" poke R/Single/property.conf 16 "$(fill 64)"
damage "another one" "R.Single.: text-unterminated" poke R/Single/property.conf 152 "$(fill 28)"
damage "pnoe without terminator" "R.Fixed.: text-unterminated,R.Fixed.: counter-unknown" \
  poke R/Fixed/property.conf 80 "$(fill 64)"

# Tables.
damage "no template" "R.Table.: template-missing" rm -r /var/R/Table/0
no_instances() { rm -r /var/R/Table/[012]; poke R/property.conf 564 0; }
damage "no template, no instance" "R.Table.: template-missing" no_instances
damage "a template with another parameter" "R.Table.1.: structure-differs,R.Table.2.: structure-differs" \
  poke_record R/Table/0 1 8 'Other\0'
fewer_records() { rm -r /var/R/Table/1/Sub/Inner/0; make_object R/Table/1/Sub/Inner/0; }
damage "an instance with fewer parameters" "R.Table.1.Sub.Inner.0.: structure-differs" fewer_records
damage "an instance without an object" "R.Table.1.Sub.: object-missing" rm -r /var/R/Table/1/Sub
damage "a table of an instance without template" "R.Table.1.Sub.Inner.: template-missing" \
  rm -r /var/R/Table/1/Sub/Inner/0
fixed_inner() { for i in 0 1 2; do poke_header R/Table/$i/Sub/Inner 8 00; done; rm -r /var/R/Table/1/Sub/Inner/0; }
damage "a fixed one without the template that its copies have" "R.Table.1.Sub.Inner.0.: object-missing" fixed_inner
damage "without the file of an object" "R.Table.1.Sub.: file-missing" rm /var/R/Table/1/Sub/property.conf
damage "an object that the template lacks" "R.Table.2.New.: object-unknown" make_object R/Table/2/New
counter_of() { poke R/property.conf 564 "$1"; }
damage "a counter too high" "R.TableNumberOfEntries: counter-wrong" counter_of 3
damage "too low" "R.TableNumberOfEntries: counter-wrong" counter_of 1
damage "no number" "R.TableNumberOfEntries: counter-wrong" counter_of x
damage "of a fixed table" "R.FixedNumberOfEntries: counter-wrong" make_object R/Fixed/2 Name=
damage "no instance that is counted" "R.FixedNumberOfEntries: counter-wrong" rm -r /var/R/Fixed/1
damage "within an instance" "R.Table.1.Sub.InnerNumberOfEntries: counter-wrong" \
  make_object R/Table/1/Sub/Inner/4 Deepest=
damage "pnoe that names nothing" "R.Table.: counter-unknown" poke_text R/Table 76 'R/Nothing'
damage "pnoe without a parent" "R.Table.: counter-unknown" poke_text R/Table 76 'TableNumberOfEntries'
above_limit() { cp -r /var/R/Table/1 /var/R/Table/6; counter_of 3; }
damage "an instance above the limit" "R.Table.6.: instance-above-limit" above_limit
high_fixed() { mv /var/R/Fixed/1 /var/R/Fixed/700; }
reset_store && high_fixed
finds "which a fixed table does not have" "" 0

# Half-copied instances: not counted, and nothing in them that the template does not have.
half_copied() { mkdir -p /var/R/Table/3; }
damage "only a directory" "R.Table.3.: instance-incomplete" half_copied
first_file() { mkdir /var/R/Table/3 && cp /var/R/Table/0/property.conf /var/R/Table/3; }
damage "without its sub-objects" "R.Table.3.: instance-incomplete" first_file
cut_file() { cp -r /var/R/Table/0 /var/R/Table/3 && truncate -s 300 /var/R/Table/3/property.conf; }
damage "with a cut file" "R.Table.3.: instance-incomplete" cut_file
two_of_them() { mkdir /var/R/Table/4 && cut_file; }
damage "two of them" "R.Table.3.: instance-incomplete,R.Table.4.: instance-incomplete" two_of_them
whole() { cp -r /var/R/Table/0 /var/R/Table/3; }
damage "a whole copy that is not counted" "R.TableNumberOfEntries: counter-wrong" whole
counted() { half_copied && counter_of 3; }
damage "one that is counted" "R.Table.3.: file-missing,R.Table.3.Sub.: object-missing" counted
used() { first_file && poke_text R/Table/3 76 'Other'; }
damage "one that was changed" \
  "R.TableNumberOfEntries: counter-wrong,R.Table.3.Sub.: object-missing" used
mixed_up() {
  cp -r /var/R/Table/0 /var/R/Table/3 && truncate -s 436 /var/R/Table/3/property.conf
  cp -r /var/R/Table/0 /var/R/Table/4
}
damage "a whole one and half a one, uncounted" \
  "R.TableNumberOfEntries: counter-wrong,R.Table.3.: lines-missing" mixed_up

# The tree.
damage "a stray file" "/var/R/Single/core: stray-file" touch /var/R/Single/core
damage "a link" "/var/R/Single/loop: stray-file" ln -s .. /var/R/Single/loop
damage "a FIFO" "/var/R/Table/1/fifo: stray-file,/var/R/Table/1/more: stray-file" \
  mkfifo /var/R/Table/1/fifo /var/R/Table/1/more
damage "a name that breaks lines" '/var/R/a\x0ab: stray-file' touch $'/var/R/a\nb'
damage "a dot in a directory's name" "/var/R/a.b: stray-directory" mkdir /var/R/a.b
damage "a number with a zero" "/var/R/Table/01: stray-directory" cp -r /var/R/Table/1 /var/R/Table/01
damage "an empty directory" "R.Empty.: file-missing" mkdir /var/R/Empty
long=$(fill 120)
long_path() { make_object "R/$long" && make_object "R/$long/$long" && mkdir "/var/R/$long/$long/$(fill 12)"; }
damage "a path too long for a URL" "/var/R/$long/$long/$(fill 12): path-too-long" long_path
long_name() { make_object "R/$long" && make_object "R/$long/$long" Name1=a Name_of_length_12=b; }
damage "and for a parameter" "R.$long.$long.Name_of_length_12: path-too-long" long_name
if [ "$(id -u)" -ne 0 ]; then
  damage "a directory that nobody may read" "R.Single.: directory-unreadable" chmod 300 /var/R/Single
  chmod 700 /var/R/Single
  damage "a file that nobody may read" "R.Single.: file-unreadable" chmod 000 $single
fi

reset_store
(cd /var/R/Single && printf 'file%s\n' {1..9000} | xargs touch)
run check
expect "more files than are sorted at a time" \
  "$(sed 's/: stray-file: .*//' /var/out | md5sum)/$(wc -l </var/out)/$err" \
  "$(printf '/var/R/Single/file%s\n' {1..9000} | LC_ALL=C sort | md5sum)/9000/"
reset_store
(cd /var/R/Fixed && seq 2 9000 | xargs mkdir)
run check R.Fixed
expect "and as many instances" "$(grep -c ': file-missing: ' /var/out)/$(grep -o 'has 9000 instances' /var/out)/$err" \
  "8999/has 9000 instances/"

# Several at once, in order, and only below the object that is given.
several() {
  truncate -s 564 $single
  touch /var/R/Table/2/Sub/stray
  rm /var/R/Table/1/Sub/Inner/0/property.conf
  poke_record R/Table/0 0 8 'Name\0'
  counter_of 9
}
damage "several" "R.Single.: lines-missing,R.TableNumberOfEntries: counter-wrong,R.Table.1.: \
structure-differs,R.Table.1.Sub.Inner.0.: file-missing,R.Table.2.: structure-differs,\
/var/R/Table/2/Sub/stray: stray-file" several
finds "those of an instance" "R.Table.2.: structure-differs,/var/R/Table/2/Sub/stray: stray-file" 1 R.Table.2
finds "those of a table" "R.TableNumberOfEntries: counter-wrong,R.Table.1.: structure-differs,\
R.Table.1.Sub.Inner.0.: file-missing,R.Table.2.: structure-differs,/var/R/Table/2/Sub/stray: stray-file" 1 R.Table.
run check --json R.Table
seen=$(python3 -c 'import json
for finding in json.load(open("/var/out")):
  assert sorted(finding) == ["path", "problem", "repaired", "text"], finding
  print(finding["path"], finding["problem"], finding["repaired"], sep=" ", end=",")')
expect "as JSON" "$seen/$status" "R.TableNumberOfEntries counter-wrong False,R.Table.1. structure-differs False,\
R.Table.1.Sub.Inner.0. file-missing False,R.Table.2. structure-differs False,/var/R/Table/2/Sub/stray stray-file False,/1"
run check R.Single
expect "in words" "$out" "R.Single.: lines-missing: 1 value for 3 parameters"

# Other directories of the root are not the store's.
mkdir -p /var/log/deep
rm -r /var/R
run check
expect "a store that is gone" "$out/$err/$status" "/zrcfg: check: /var/: no object in it/1"
run check --json
expect "as JSON" "$out/$status" "[]/1"
reset_store
mkdir -p /var/log/deep /var/lib/x/y && touch /var/lib/x/y/property.conf
finds "what else lies in the root" "" 0
rm -r /var/lib /var/log

# Locks: waited for as by every caller, and once only for what shares one.
flock /var/R/Table/0/property.conf -c "'$zrcfg' check --timeout 50" >/var/out 2>/var/err
expect "a locked table" "$?/$(cat /var/out)/$(grep -c 'lock not obtained in time' /var/err)" "1//12"
expect "in words" "$(head -1 /var/err)" "zrcfg: check: R.Table.0.: lock not obtained in time (code 9)"
begin=$SECONDS
flock /var/R/Table/0/property.conf -c "'$zrcfg' check --timeout 2000" >/var/out 2>/var/err
expect "waited for once" "$?/$((SECONDS - begin < 12))" "1/1"
flock /var/R/Single/property.conf -c "'$zrcfg' check --timeout 0" >/var/out 2>/var/err
expect "a locked object" "$?/$(cat /var/out)/$(cat /var/err)" \
  "1//zrcfg: check: R.Single.: lock not obtained in time (code 9)"
flock -s /var/R/Single/property.conf -c "'$zrcfg' check --timeout 0" >/var/out 2>/var/err
expect "readers do not exclude each other" "$?/$(cat /var/out /var/err)" "0/"
flock /var/R/Single/property.conf -c "'$zrcfg' check --timeout -2" >/var/out 2>/var/err
expect "without locks" "$?/$(cat /var/out /var/err)" "0/"

# No two locks at once: a check that waits for one holds none.
held_while_waiting() {
  local process waiting= held
  "$zrcfg" check --timeout -1 "$@" >/var/out 2>/var/err &
  process=$!
  while [ -z "$waiting" ] && kill -0 $process; do
    sleep 0.02
    waiting=$(grep -E -- "-> FLOCK .* $process " /proc/locks)
  done
  held=$(grep -E " FLOCK .* $process " /proc/locks | grep -vc -- '->')
  echo "$held held"
  kill $process
  wait $process
} 2>/dev/null
reset_store
counter_of 7
truncate -s 560 $single
for object in R R/Single R/Table R/Table/0 R/Fixed R/Fixed/1; do
  exec 9</var/$object/property.conf
  flock 9
  expect "held while $object is waited for" "$(held_while_waiting 9<&-)" "0 held"
  expect "and by a repair" "$(held_while_waiting --repair 9<&-)" "0 held"
  exec 9<&-
done

for arguments in "R. R.Table." "--hex" "X." "--json --null"; do
  # shellcheck disable=SC2086
  run check $arguments
  expect "usage: $arguments" "$out/$status/$(wc -l </var/err)" "/2/1"
done

# Every identifier is in the manual page, and has a case above.
here=$(dirname "$0")
page=$(sed -n '/^\.SH PROBLEMS/,/^\.SH EXIT/p' "$here/../../man/zrcfg-check.1" | sed -n 's/\\-/-/g; s/^\.B \([a-z]*-[a-z-]*\)$/\1/p' | sort)
source=$(grep -oE '\{"[a-z-]+", (true|false)\}' "$here/../../tools/zrcfg/check/findings.cpp" | cut -d'"' -f2 | sort)
expect "identifiers in the page" "$page" "$source"
for identifier in $source; do
  expect "a case for $identifier" "$(grep -q ": $identifier" "$0" && echo yes)" "yes"
done

run check "$(printf 'x.%.0s' {1..200})"
expect "usage: too long" "$status" "2"
finish

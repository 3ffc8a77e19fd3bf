# zrcfg export, zrcfg apply
. "$(dirname "$0")/common.sh"

# make_table DIR LIMIT ACCESS COUNTER
make_table() {
  make_object "$1"
  poke_header "$1" 5 "$2"
  poke_header "$1" 8 "$3"
  printf 'x/%s' "$4" | dd of="/var/$1/property.conf" bs=1 seek=$((4 + 76)) conv=notrunc 2>/dev/null
}

# set_key DIR INDEX KEY: the key class of a parameter.
set_key() {
  printf "\\x$(printf %02x $((0x40 | ($3 << 2))))" |
    dd of="/var/$1/property.conf" bs=1 seek=$((188 + 124 * $2 + 4)) conv=notrunc 2>/dev/null
}

make_object R TCount=0 Plain=p
make_table R/T 04 1f TCount
make_object R/T/0 Name=new SCount=0
make_table R/T/0/S 03 1f SCount
make_object R/T/0/S/0 Deep=d
make_table R/F 02 0f none
make_object R/F/0 Fixed=f
text=/var/text

tree_sum() { (cd /var && find R regex_file -type f 2>/dev/null | sort | xargs md5sum); }

printf '%s\n' '# a comment' '' '+R.T.2.' '+R.T.2.S.1.' '+R.F.7' 'R.Plain= two  blanks=and\tmore\\ ' \
  'R.T.2.Name=' 'R.T.2.S.1.Deep=\xc3\xa4\x01' 'R.TCount=1' 'R.T.2.SCount=1' >$text
before=$(tree_sum)
run apply --dry-run $text
expect "dry run" "$out/$err/$status" "8 lines: 8 would be written, 0 held back, 0 already there, 0 refused//0"
expect "changes nothing" "$(tree_sum)" "$before"
run apply $text
expect "applied" "$out/$err/$status" "8 lines: 8 written, 0 held back, 0 already there, 0 refused//0"
run get R.Plain R.T.2.Name R.T.2.S.1.Deep R.TCount R.T.2.SCount R.F.7.Fixed
expect "values" "$out" "$(printf ' two  blanks=and\tmore\\ \n\n\xc3\xa4\x01\n1\n1\nf')"

run export R
exported=$out
expect "export" "$out/$err/$status" "$(printf '%s\n' '+R.F.7.' '+R.T.2.' '+R.T.2.S.1.' 'R.TCount=1' \
  'R.Plain= two  blanks=and\tmore\\ ' 'R.F.7.Fixed=f' 'R.T.2.Name=' 'R.T.2.SCount=1' \
  "R.T.2.S.1.Deep=$(printf '\xc3\xa4')\\x01")//0"
run export R /var/out.txt
expect "export to a file" "$out/$status/$(cat /var/out.txt)" "/0/$exported"
chmod 600 /var/out.txt
run export R /var/out.txt
expect "which keeps its permissions" "$status/$(stat -c %a /var/out.txt)" "0/600"
run export R -
expect "export to standard output" "$out/$err/$status" "$exported//0"
run export R.T.2. /var/out.txt
expect "an instance names itself" "$(head -1 /var/out.txt)" "+R.T.2."
run export R.None. /var/out.txt
expect "a failing export leaves the file" "$err/$status/$(head -1 /var/out.txt)" \
  "zrcfg: export: R.None.: no such object (code 9)/1/+R.T.2."
run export R /var/none/file
expect "a file that cannot be written" "$err/$status" \
  "zrcfg: export: /var/none/file: cannot be written: No such file or directory/1"

run apply --verbose $text
expect "again" "$(printf '%s\n' "$out" | tail -1)/$status" \
  "8 lines: 5 written, 0 held back, 3 already there, 0 refused/0"
expect "each line with its number" "$(printf '%s\n' "$out" | head -4)" "$(printf '%s\n' \
  '3: +R.T.2.: already there' '4: +R.T.2.S.1.: already there' '5: +R.F.7.: already there' '6: R.Plain: written')"

# Everything is checked, against the store as the lines before would leave it.
printf '%s\n' '-R.T.2.' '+R.T.3.' 'R.T.2.Name=gone' 'R.T.3.S.1.Deep=no' '+R.T.5.' '+R.None.1.' \
  '-R.T.9.' 'R.Plain=ok' 'R.Missing=x' >$text
before=$(tree_sum)
run apply $text
expect "every refusal is reported with its line" "$err/$status" "$(printf '%s\n' \
  'zrcfg: line 7: apply: R.T.9.: no such instance (code 1)' \
  'zrcfg: line 5: apply: R.T.5.: above the table'"'"'s limit of instances (code 4)' \
  'zrcfg: line 6: apply: R.None.1.: no such table (code 1)' \
  'zrcfg: line 3: apply: R.T.2.Name: no such object (code 1)' \
  'zrcfg: line 4: apply: R.T.3.S.1.Deep: no such object (code 1)' \
  'zrcfg: line 9: apply: R.Missing: no such parameter (code 5)' \
  "zrcfg: apply: $text: nothing was changed")/1"
expect "counted" "$out" "9 lines: 0 written, 0 held back, 0 already there, 6 refused, 3 not tried"
expect "and nothing is changed" "$(tree_sum)" "$before"

printf '%s\n' 'R.Plain=1' 'Plain=2' '*R.T.1.' '+R.T.x.' '-R.T.0.' 'R.Plain=a\qb' 'R.Plain=\x0a' \
  "R.Plain=$(printf 'a\tb')" 'R.Plain=\rx' "R.Plain=$(printf 'v%.0s' $(seq 256))" >$text
run apply $text
expect "bad lines" "$out/$err/$status" "/$(printf '%s\n' \
  'zrcfg: line 2: apply: Plain: not a parameter path (Object.Name)' \
  'zrcfg: line 3: apply: not -INSTANCE-URL, +INSTANCE-URL or PATH=VALUE' \
  "zrcfg: line 4: apply: R.T.x.: not an instance's URL (Table.Number., from 1 on)" \
  "zrcfg: line 5: apply: R.T.0.: not an instance's URL (Table.Number., from 1 on)" \
  'zrcfg: line 6: apply: \ is followed by neither \, t, r nor xHH (01 to ff, not 0a)' \
  'zrcfg: line 7: apply: \ is followed by neither \, t, r nor xHH (01 to ff, not 0a)' \
  'zrcfg: line 8: apply: a control character that is not escaped' \
  'zrcfg: line 9: apply: R.Plain: the value begins with a carriage return and would read back empty' \
  'zrcfg: line 10: apply: R.Plain: the value is longer than 255 characters' \
  "zrcfg: apply: $text: nothing was changed")/1"
expect "nothing is changed by them" "$(tree_sum)" "$before"
run apply /var/none
expect "missing file" "$out/$err/$status" "/zrcfg: apply: /var/none: cannot be read: No such file or directory/1"
printf 'R.Plain=a\0b\n' >$text
run apply $text
expect "zero byte" "$(head -1 /var/err)/$status" "zrcfg: apply: the text holds a zero byte/1"
run apply /var/R
expect "a directory" "$(tree_sum)/$err/$status" "$before/zrcfg: apply: /var/R: cannot be read: Is a directory/1"

# Deletions first, then creations, values, counters.
printf '%s\n' 'R.TCount=9' 'R.T.1.Name=first' '+R.T.1.' '+R.T.2.' '-R.T.2.' '-R.F.7.' >$text
run apply $text
expect "deleted and created again" "$out/$err/$status" \
  "6 lines: 6 written, 0 held back, 0 already there, 0 refused//0"
run get R.TCount R.T.1.Name R.T.2.Name
expect "the counter is what the text says" "$out" "$(printf '9\nfirst\nnew')"
run exists R.F.7
expect "fixed instance deleted" "$status" "1"
printf 'R.Plain=from standard input' | "$zrcfg" apply - >/var/out
expect "standard input" "$?/$(cat /var/out)" "0/1 lines: 1 written, 0 held back, 0 already there, 0 refused"

# --exact deletes what the text does not name, and nothing outside.
printf '%s\n' '+R.T.2.' >$text
run apply --exact R.F --dry-run $text
expect "nothing to delete there" "$out/$status" "1 lines: 0 would be written, 0 held back, 1 already there, 0 refused/0"
run add R.T.2.S
run apply --exact R.T. --verbose $text
expect "instances that are not named" "$out/$err/$status" "$(printf '%s\n' '1: +R.T.2.: already there' \
  'exact: -R.T.1.: written' 'exact: -R.T.2.S.1.: written' \
  '3 lines: 2 written, 0 held back, 1 already there, 0 refused')//0"
run apply --exact R.None $text
expect "no such object" "$out/$err/$status" "$(printf '%s\n' \
  '1 lines: 0 written, 0 held back, 1 already there, 0 refused/zrcfg: apply: R.None.: no such object (code 9)' \
  "zrcfg: apply: $text: nothing was changed")/1"
run add R.T 1

# Modes select by key class.
set_key R 1 2
poke_header R/T 8 12
printf '%s\n' 'R.Plain=one' 'R.TCount=5' '+R.T.4.' 'R.T.4.Name=x' '-R.T.1.' >$text
run apply --mode 1 --verbose $text
expect "mode 1 holds back what has not its bit" "$out/$err/$status" "$(printf '%s\n' \
  '1: R.Plain: held back by its key class' '2: R.TCount: held back by its key class' \
  '3: +R.T.4.: held back by its key class' '4: R.T.4.Name: held back by its key class' \
  '5: -R.T.1.: held back by its key class' \
  '5 lines: 0 written, 5 held back, 0 already there, 0 refused')//0"
run apply --mode 2 $text
expect "mode 2" "$out/$status" "5 lines: 3 written, 2 held back, 0 already there, 0 refused/0"
run get R.Plain R.TCount R.T.4.Name
expect "written by their keys" "$out" "$(printf 'one\n9\nnew')"
run apply --mode 4 $text
expect "no such mode" "$err/$status" "zrcfg: apply: --mode 4: not 1, 2, 3 or all/2"

# Filters.
printf '\0\0\0\1' | dd of=/var/R/property.conf bs=1 seek=$((188 + 124 + 116)) conv=notrunc 2>/dev/null
printf "config f 'filter1'\n\toption value '^[0-9]*\$'\n" >/var/regex_file
printf '%s\n' 'R.Plain=abc' 'R.TCount=3' >$text
run apply $text
expect "a value that its filter refuses" "$err/$status" "$(printf '%s\n' \
  'zrcfg: line 1: apply: R.Plain: the parameter does not take this value (code 7)' \
  "zrcfg: apply: $text: nothing was changed")/1"
run apply --no-check $text
expect "unless asked for" "$out/$status" "2 lines: 2 written, 0 held back, 0 already there, 0 refused/0"

# One name for one object: an empty component would be a second one.
printf '%s\n' 'R.Plain=8' '-R.T..2.' >$text
run apply $text
expect "an empty component" "$err/$status" "$(printf '%s\n' \
  'zrcfg: line 2: apply: R.T..2.: the object URL has an empty component' \
  "zrcfg: apply: $text: nothing was changed")/1"
run get R.Plain
expect "and nothing was" "$out" "abc"

# What fails while applying is told line by line, and the rest is done.
printf '%s\n' 'R.Plain=7' 'R.T.2.Name=y' >$text
mkfifo /var/release
flock /var/R/property.conf sh -c 'echo held >/var/held; read line </var/release' &
until [ -e /var/held ]; do sleep 0.01; done
run apply --timeout 0 $text
expect "locked while checking" "$(head -1 /var/err)/$status" \
  "zrcfg: line 1: apply: R.Plain: lock not obtained in time (code 9)/1"
echo >/var/release
wait
finish

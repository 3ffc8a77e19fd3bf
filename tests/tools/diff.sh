# zrcfg diff: stores, snapshots and configuration texts
. "$(dirname "$0")/snapshot_common.sh"
make_store
mkdir /var/old
cp -a /var/P /var/Q /var/old/
"$zrcfg" snapshot /var/snap >/dev/null
"$zrcfg" export P /var/text
note="zrcfg: diff: /var/text: is a configuration text: only instances and values are compared"

for a in /var/old /var/snap - /var/; do
  for b in /var/old/ /var/snap -; do
    run diff $a $b
    expect "$a and $b are the same" "$out/$err/$status" "//0"
  done
  run diff $a /var/text
  expect "$a and the text are the same" "$out/$err/$status" "/$note/0"
done
run diff /var/snap
expect "the device's store without B" "$out/$err/$status" "//0"
run diff /var/text /var/text
expect "two texts" "$out/$err/$status" "/$note
$note/0"

"$zrcfg" set P.One=2 P.Two=$'\t"' Q.Some=else P.T.1.Sub.Inner= && "$zrcfg" attr set P.One noti=1 area=here
"$zrcfg" object set P.Last hide=1 && "$zrcfg" del P.T.2 && "$zrcfg" add P.T 10 >/dev/null
"$zrcfg" set P.T.0.Note=template
make_object P/New Fresh=1
wanted='changed P.One "1" "2"
attribute P.One noti "0" "1"
attribute P.One area "" "here"
changed P.Two "" "\x09\""
attribute P.Last. hide "0" "1"
added P.New.
added P.New.Fresh "1"
changed P.T.0.Note "" "template"
changed P.T.1.Sub.Inner "x" ""
removed P.T.2.
removed P.T.2.Name "new"
removed P.T.2.Note ""
removed P.T.2.Sub.
removed P.T.2.Sub.Inner "x"
added P.T.10.
added P.T.10.Name "new"
added P.T.10.Note ""
added P.T.10.Sub.
added P.T.10.Sub.Inner "x"
changed Q.Some "thing" "else"'
for a in /var/old /var/snap; do
  run diff $a
  expect "$a against the device" "$out/$err/$status" "$wanted//1"
done
run diff - /var/old
expect "the other way" "$(sort <<<"$out" | grep -E 'One|New|T.2')/$status" 'added P.T.2.
added P.T.2.Name "new"
added P.T.2.Note ""
added P.T.2.Sub.
added P.T.2.Sub.Inner "x"
attribute P.One area "here" ""
attribute P.One noti "1" "0"
changed P.One "2" "1"
removed P.New.
removed P.New.Fresh "1"/1'
run diff /var/text
expect "values and instances of a text" "$out/$err/$status" \
  "$(grep -vE '^attribute|P.T.0|Q.Some' <<<"$wanted")/$note/1"
run diff --json /var/snap
expect "JSON" "$(sed -n '1,3p;10,11p' /var/out)/$status" \
  '{"event": "changed", "path": "P.One", "old": "1", "new": "2"}
{"event": "attribute", "path": "P.One", "attribute": "noti", "old": "0", "new": "1"}
{"event": "attribute", "path": "P.One", "attribute": "area", "old": "", "new": "here"}
{"event": "removed", "path": "P.T.2."}
{"event": "removed", "path": "P.T.2.Name", "value": "new"}/1'
python3 -c 'import json; [json.loads(line) for line in open("/var/out")]'
expect "every line is an object" "$?" "0"

# Every attribute that can be set.
"$zrcfg" snapshot /var/attributes P.Last >/dev/null
"$zrcfg" attr set P.Last.Mark flash_rw=1 hide=1 rw=2 noti=7 namechange=1 noti_rw=1 inform_dbus=200 key=9 \
  encryt=3 device_type=129 type=77 flash_encryt=1 inform_tr069=1 accesslist=everybody123456 \
  area=abcdefghijklmnopqrstuvwxyz1 param_check=70000
"$zrcfg" object set P.Last flag0=1 hide=0 rw=3 level3=255 key=15 max_instance=254 level7=15 flag8=1 flag9=1 flag11=1
run diff /var/attributes
expect "attributes" "$(sed 's/^attribute //' /var/out)/$err" 'P.Last. flag0 "0" "1"
P.Last. hide "1" "0"
P.Last. rw "0" "3"
P.Last. level3 "0" "255"
P.Last. key "0" "15"
P.Last. max_instance "0" "254"
P.Last. level7 "0" "15"
P.Last. flag8 "0" "1"
P.Last. flag9 "0" "1"
P.Last. flag11 "0" "1"
P.Last.Mark flash_rw "0" "1"
P.Last.Mark hide "0" "1"
P.Last.Mark rw "1" "2"
P.Last.Mark noti "0" "7"
P.Last.Mark namechange "0" "1"
P.Last.Mark noti_rw "0" "1"
P.Last.Mark inform_dbus "0" "200"
P.Last.Mark key "0" "9"
P.Last.Mark encryt "0" "3"
P.Last.Mark device_type "0" "129"
P.Last.Mark type "0" "77"
P.Last.Mark flash_encryt "0" "1"
P.Last.Mark inform_tr069 "0" "1"
P.Last.Mark accesslist "" "everybody123456"
P.Last.Mark area "" "abcdefghijklmnopqrstuvwxyz1"
P.Last.Mark param_check "0" "70000"/'

# Structure.
make_object Q More=1 Some=else
run diff /var/snap - Q
expect "parameters" "$out/$status" 'added Q.More "1"
changed Q.Some "thing" "else"/1'
make_object Q Some=else More=1 && cp -r /var/Q /var/old/ && make_object Q More=1 Some=else
run diff /var/old - Q.
expect "their order" "$out/$status" 'order Q./1'
for field in "12 devfunc" "76 pnoe" "148 extra_text"; do
  poke_header Q "${field% *}" 41
  run diff /var/old - Q
  expect "${field#* } in the header" "$(grep attribute /var/out)" "attribute Q. ${field#* } \"\" \"A\""
  poke_header Q "${field% *}" 00
done

# One part only.
run diff /var/snap - P.T.1
expect "one object" "$out/$status" 'changed P.T.1.Sub.Inner "x" ""/1'
run diff /var/snap - P.F
expect "an equal one" "$out/$status" '/0'
"$zrcfg" snapshot /var/part P.T >/dev/null && "$zrcfg" set P.One=3 P.T.1.Name=other
run diff /var/part
expect "a snapshot of a part" "$out/$status" 'changed P.T.1.Name "new" "other"/1'
"$zrcfg" export P.T.1 /var/text && "$zrcfg" set P.T.1.Note=x
run diff /var/text
expect "the text of an instance stands for its table" "$(head -1 /var/out)/$status" 'changed P.T.1.Note "" "x"/1'
expect "with its other instances" "$(grep -c P.T.10 /var/out)" '5'
printf '# mine\n+P.T.1.\n\nP.T.1.Note=y\nP.T.1.Name=wrong\nP.T.1.Note=x\nP.T.1.Name=other\nP.T.1.Sub.Inner=\n' >/var/text
run diff /var/text - P.T.1.
expect "later lines count" "$out/$err/$status" "/$note/0"
printf 'P.T.1.Name=other\nP.T.1.None=1\n' >/var/text
run diff /var/text
expect "a text in another order, and of a part" "$(grep -v P.T.10 /var/out)" 'removed P.T.1.None "1"
added P.T.1.Note "x"
added P.T.1.Sub.
added P.T.1.Sub.Inner ""'

# A text without a line says that there is nothing below the URL that it is compared under.
make_table P/E One 10
"$zrcfg" export P.E /var/text
expect "the text of an empty table" "$(wc -c </var/text)" "0"
run diff /var/text - P.E
expect "is equal to it" "$out/$err/$status" "/$note/0"
"$zrcfg" add P.E >/dev/null
run diff /var/text - P.E
expect "and lacks an instance" "$(head -1 /var/out)/$err/$status" "added P.E.1./$note/1"
run diff - /var/text P.E
expect "either way" "$(head -1 /var/out)/$err/$status" "removed P.E.1./$note/1"
for other in - /var/text; do
  run diff /var/text $other
  expect "without a URL" "$out/$err/$status" "/zrcfg: diff: /var/text: holds nothing: it takes a URL to compare it/2"
done
run diff /var/text - P.None
expect "nor any such object" "$(tail -1 /var/err)/$status" "zrcfg: diff: P.None.: neither has such an object/2"

# No store, or another one.
mkdir /var/log/empty
run diff /var/log/empty
expect "a directory without a store" "$out/$err/$status" "/zrcfg: diff: /var/log/empty: no store is there/2"
run diff - /var/log/empty P.T
expect "also with a URL" "$out/$err/$status" "/zrcfg: diff: /var/log/empty: no store is there/2"
run diff /var/snap /var/log/empty
expect "also beside a snapshot" "$out/$err/$status" "/zrcfg: diff: /var/log/empty: no store is there/2"
make_object log/other/Z One=1
for a in - /var/snap; do
  run diff $a /var/log/other
  expect "$a and a store of another root" "$out/$err/$status" \
    "/zrcfg: diff: ${a/#-//var/} and /var/log/other have nothing in common/2"
done
run diff /var/part /var/log/other
expect "and a part" "$out/$err/$status" "/zrcfg: diff: /var/part and /var/log/other have nothing in common/2"
cp -r /var/Q /var/log/other/
run diff - /var/log/other
expect "one root in common is enough" "$(grep -E '^[a-z]+ (P|Q|Z)\.( |$)' /var/out)/$status" 'removed P.
added Z./1'
run diff /var/part /var/log/other
expect "but not another one" "$status" "2"
run diff - /var/log/other Z
expect "what was asked for is there" "$out/$err/$status" 'added Z.
added Z.One "1"//1'

# Trouble.
run diff
expect "nothing to compare" "$status" "2"
run diff /var/old - P Q
expect "too much" "$err/$status" "zrcfg: diff: takes two things to compare and one URL/2"
run diff /var/none
expect "no such file" "$err/$status" "zrcfg: diff: /var/none: cannot be read: No such file or directory/2"
run diff /var/part - Q
expect "nothing in common" "$err/$status" "zrcfg: diff: /var/part and /var/ have nothing in common/2"
run diff /var/old - P.None
expect "no such object" "$err/$status" "zrcfg: diff: P.None.: neither has such an object/2"
printf 'nonsense\n' >/var/text
run diff /var/text
for i in 1 2 3; do echo more >>/var/text; done
run diff /var/text
expect "not a text" "$err/$status" \
  "zrcfg: line 1: diff: not -INSTANCE-URL, +INSTANCE-URL or PATH=VALUE
zrcfg: diff: /var/text: neither a snapshot nor a configuration text/2"
printf '+P.T.1.\n-P.T.2.\n' >/var/text
run diff /var/text
expect "a deletion" "$(head -1 /var/err)/$status" "zrcfg: line 2: diff: a deletion, which is no state of a store/2"
head -c 500 /var/snap >/var/cut
run diff /var/cut
expect "a damaged snapshot" "$err/$status" "zrcfg: diff: /var/cut: damaged snapshot: it ends early/2"
truncate -s -2 /var/old/Q/property.conf
run diff /var/old
expect "a damaged object" "$err/$status" "zrcfg: diff: Q.: damaged: fewer values than records/2"
run lock P -- "$zrcfg" diff --timeout 50 /var/snap
expect "a locked one" "$err/$status" "zrcfg: diff: P.: lock not obtained in time (code 9)/2"
"$zrcfg" diff /var/snap >/dev/full 2>/var/err
expect "no output" "$?/$(cat /var/err)" "2/zrcfg: diff: cannot write to standard output"
finish

# zrcfg watch: what it prints, and what it does not
. "$(dirname "$0")/watch_common.sh"
make_store

start
expect "the first line" "$(cat /var/events)" "watching 15 objects"
"$zrcfg" set P.One=first
expect "a value" "$(events)" 'changed P.One "1" "first"'
"$zrcfg" set P.Two=$'a "b" \\ \t' && settle && "$zrcfg" set P.One=second
expect "special characters" "$(events)" 'changed P.Two "" "a \"b\" \\ \x09"
changed P.One "first" "second"'
"$zrcfg" set P.Two= P.One=1 Q.Some=more
expect "several at once, in the order of the tree" "$(events)" 'changed P.One "second" "1"
changed P.Two "a \"b\" \\ \x09" ""
changed Q.Some "thing" "more"'
"$zrcfg" attr set P.One noti=2 accesslist=owner
expect "attributes of a parameter" "$(events)" 'attribute P.One noti "0" "2"
attribute P.One accesslist "" "owner"'
"$zrcfg" object set P.T level3=7
expect "of an object" "$(events)" 'attribute P.T. level3 "0" "7"'
"$zrcfg" attr set P.Two hide=1 && settle && "$zrcfg" set P.Two=hidden && settle
"$zrcfg" attr set P.Two hide=0 && settle && "$zrcfg" set P.Two=
expect "of hidden parameters" "$(events)" 'attribute P.Two hide "0" "1"
changed P.Two "" "hidden"
attribute P.Two hide "1" "0"
changed P.Two "hidden" ""'

# What is no change is no event.
"$zrcfg" set P.One=1
cat /var/P/property.conf >/var/copy && cat /var/copy >/var/P/property.conf
touch /var/P/property.conf /var/P/T/1/other
"$zrcfg" get P.One >/dev/null && "$zrcfg" lock P -- true
expect "rewritten, touched, read, locked" "$(events)" ""
# The watch does not wake itself: its own reading and locking are no events.
before=$(sed 's/.*) //' "/proc/$watcher/stat" | cut -d' ' -f12,13)
sleep 0.3
expect "asleep" "$(sed 's/.*) //' "/proc/$watcher/stat" | cut -d' ' -f12,13)" "$before"

"$zrcfg" add P.T >/dev/null
expect "an instance" "$(events | sort)" 'added P.T.3.
added P.T.3.Name "new"
added P.T.3.Note ""
added P.T.3.Sub.
added P.T.3.Sub.Inner "x"
changed P.TNumberOfEntries "2" "3"'
"$zrcfg" set P.T.3.Sub.Inner=deep P.T.0.Note=template
expect "in the new directory, and in the template" "$(events | LC_ALL=C sort)" 'changed P.T.0.Note "" "template"
changed P.T.3.Sub.Inner "x" "deep"'
"$zrcfg" set P.T.0.Note= && "$zrcfg" del P.T.3
expect "an instance less" "$(events | sort)" 'changed P.T.0.Note "template" ""
changed P.TNumberOfEntries "3" "2"
removed P.T.3.
removed P.T.3.Name "new"
removed P.T.3.Note ""
removed P.T.3.Sub.
removed P.T.3.Sub.Inner "deep"'
make_object P/New Only=1 Empty= && make_object P/New/Below
expect "an object with its parameters" "$(events)" 'added P.New.
added P.New.Only "1"
added P.New.Empty ""
added P.New.Below.'
make_object P/New Only=1 Added=a
expect "another structure" "$(events)" 'removed P.New.Empty ""
added P.New.Added "a"'
make_object P/New Added=a Only=1
expect "another order" "$(events)" 'order P.New.'
rm -r /var/P/New
expect "gone" "$(events | grep -c removed)" "4"

# Directories that are renamed, as a restored backup has it.
cp -r /var/Q /var/Q.new && mv /var/Q /var/Q.old && mv /var/Q.new /var/Q && rm -r /var/Q.old
settle
"$zrcfg" set Q.Some=replaced
expect "the directory that took its place" "$(events | tail -1)" 'changed Q.Some "more" "replaced"'
mv /var/P/T/2 /var/P/T/5
expect "a renamed instance" "$(events | sort | grep -c 'P\.T\.[25]\.')" "10"
"$zrcfg" set P.T.5.Name=five
expect "followed" "$(events)" 'changed P.T.5.Name "new" "five"'
mv /var/P/T/5 /var/P/T/2 && "$zrcfg" set P.T.2.Name=new
events >/dev/null
mkdir /var/R /var/log/P && cp /var/Q/property.conf /var/log/P/ && cp /var/Q/property.conf /var/R/
expect "a new root" "$(events)" 'added R.
added R.Some "replaced"'
mkdir -p /var/R/A.B /var/R/C && cp /var/R/property.conf /var/R/A.B/ && ln -s ../../P /var/R/C/link
expect "names with a dot, and links" "$(events)" ''
rm -r /var/R /var/log/P
events >/dev/null

# A root that is a link: made, led elsewhere in one step, removed.
mkdir /var/log/a /var/log/b && make_object log/a/R Some=a Same=1 && make_object log/b/R Some=b Same=1
ln -s log/a/R /var/R
expect "a link to a root" "$(events)" 'added R.
added R.Some "a"
added R.Same "1"'
ln -s log/b/R /var/log/next && mv -T /var/log/next /var/R
expect "the link leads elsewhere" "$(events)" 'changed R.Some "a" "b"'
"$zrcfg" set R.Some=c && printf 'lost' >/var/log/a/R/property.conf
expect "followed to the new place only" "$(events)" 'changed R.Some "b" "c"'
rm /var/R
expect "the link goes" "$(events)" 'removed R.
removed R.Some "c"
removed R.Same "1"'
rm -r /var/log/a /var/log/b
stop INT

# Part of the store.
start P.T.1 P.Last P.T.1.Sub.
expect "objects below the URLs, once" "$(cat /var/events)" "watching 3 objects"
"$zrcfg" set P.One=2 P.T.1.Name=mine P.T.2.Name=other P.T.1.Sub.Inner=mine Q.Some=x
expect "nothing else" "$(events)" 'changed P.T.1.Name "new" "mine"
changed P.T.1.Sub.Inner "x" "mine"'
"$zrcfg" del P.T.1
expect "it goes" "$(events | LC_ALL=C sort | head -1)" 'removed P.T.1.'
"$zrcfg" add P.T 1 >/dev/null
expect "and comes back" "$(events | head -1)" 'added P.T.1.'
mv /var/P /var/P.away && mv /var/P.away /var/P && settle
"$zrcfg" set P.T.1.Name=again
expect "also with what it lies in" "$(events | tail -1)" 'changed P.T.1.Name "new" "again"'
"$zrcfg" set P.T.1.Name=new P.T.2.Name=new P.One=1
mv /var/P /var/log/ && ln -s log/P /var/P && settle
"$zrcfg" set P.T.1.Name=linked
expect "and with a link to that" "$(events | tail -1)" 'changed P.T.1.Name "new" "linked"'
rm /var/P && mv /var/log/P /var/ && settle
"$zrcfg" set P.T.1.Name=new
events >/dev/null
stop

# JSON: an object a line.
start --json
"$zrcfg" set P.Two=$'q"\t' && settle && "$zrcfg" attr set P.One noti=0 && "$zrcfg" object set P.T level3=0 &&
  "$zrcfg" add P.T 7 >/dev/null && settle && "$zrcfg" del P.T.7
settle
python3 - /var/events >/var/out <<'END'
import json, sys
for line in open(sys.argv[1]):
    event = json.loads(line)
    if event.get("path") not in ("P.Last.Mark", "P.TNumberOfEntries") and "P.T.7.S" not in str(event):
        print(*(f"{name}={value}" for name, value in event.items()), sep="|")
END
expect "JSON" "$(cat /var/out)" 'event=watching|objects=15
event=changed|path=P.Two|old=|new=q"	
event=attribute|path=P.One|attribute=noti|old=2|new=0
event=attribute|path=P.T.|attribute=level3|old=7|new=0
event=added|path=P.T.7.
event=added|path=P.T.7.Name|value=new
event=added|path=P.T.7.Note|value=
event=removed|path=P.T.7.
event=removed|path=P.T.7.Name|value=new
event=removed|path=P.T.7.Note|value='
stop

# What cannot be watched.
run watch P.None
expect "no such object" "$out/$err/$status" "/zrcfg: watch: P.None.: no such object, or its URL is too long (code 1)/1"
run watch ''
expect "no URL" "$status" "2"
run watch --null P
expect "no other form" "$err/$status" "zrcfg: watch: --null: not an option of this command/2"
run lock P.Last -- "$zrcfg" watch --timeout 50 P
expect "locked at the start" "$out/$err/$status" "/zrcfg: watch: P.Last.: lock not obtained in time (code 9)/1"
exec 7</var/P/Last/property.conf && flock 7
"$zrcfg" watch --timeout -1 P.Last >/var/out 2>/var/err 7<&- & watcher=$!
sleep 0.3
kill "$watcher" && wait "$watcher"
expect "ended while it waits for a lock" "$?/$(cat /var/out /var/err)" "0/"
"$zrcfg" watch --timeout -1 P.Last >/var/out 2>/var/err 7<&- & watcher=$!
sleep 0.3
exec 7<&-
until [ -s /var/out ]; do sleep 0.01; done
kill "$watcher" && wait "$watcher"
expect "started when the lock is free" "$?/$(cat /var/out /var/err)" "0/watching 1 objects"
timeout -s INT 1 "$zrcfg" lock P.Last -- "$zrcfg" watch --timeout -2 P.Last >/var/out 2>/var/err
expect "without locks" "$(cat /var/out /var/err)" "watching 1 objects"
(cd / && "$zrcfg" watch P >/dev/full 2>/var/err)
expect "no output" "$?/$(cat /var/err)" "1/zrcfg: cannot write to standard output"
"$zrcfg" watch P >&- 2>/var/err
expect "standard output is closed" "$?/$(cat /var/err)" "1/zrcfg: cannot write to standard output"
(timeout 20 "$zrcfg" watch P 2>/var/err; echo $? >/var/code) | head -1 >/var/out
expect "ends when nobody reads any more" "$(cat /var/out /var/code /var/err)" "$(printf 'watching 14 objects\n1')"
finish

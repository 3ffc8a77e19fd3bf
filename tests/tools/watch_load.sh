# zrcfg watch under load: writers without locks, dropped events, slow readers, limits
. "$(dirname "$0")/watch_common.sh"
make_store

# Somebody writes a file in pieces, without a lock.
cat >/var/rewrite.py <<'END'
import sys, time
path, old, new = sys.argv[1], sys.argv[2].encode(), sys.argv[3].encode()
data = open(path, "rb").read().replace(old, new)
with open(path, "wb", buffering=0) as file:
    for start in range(0, len(data), 97):
        file.write(data[start:start + 97])
        time.sleep(0.01)
END
start
python3 /var/rewrite.py /var/Q/property.conf thing thing
expect "written in pieces without a change" "$(events)" ""
python3 /var/rewrite.py /var/Q/property.conf thing other
expect "with one" "$(events)" 'changed Q.Some "thing" "other"'
# A writer under the lock: what it does in between is not seen.
"$zrcfg" lock P.T.1 -- sh -c "'$zrcfg' --timeout -2 set P.T.1.Name=passing P.T.1.Note=passing; sleep 0.3
  '$zrcfg' --timeout -2 set P.T.1.Name=new P.T.1.Note=final"
expect "under a lock" "$(events)" 'changed P.T.1.Note "" "final"'
echo surplus >>/var/Q/property.conf
until grep -q damaged /var/events; do sleep 0.05; done
expect "damaged" "$(events)" 'damaged Q. "bytes behind the last value"'
echo surplus >>/var/Q/property.conf
sleep 1.5
expect "told once" "$(events)" ''
truncate -s -16 /var/Q/property.conf
"$zrcfg" set Q.Some=mended
expect "compared with what it was" "$(events | tail -1)" 'changed Q.Some "other" "mended"'
: >/var/Q/property.conf && rm /var/Q/property.conf
expect "without its file" "$(events)" 'removed Q.
removed Q.Some "mended"'
make_object Q Some=thing
events >/dev/null

# watches: how many directories the kernel watches for it.
watches() {
  cat /proc/"$watcher"/fdinfo/* | grep -c '^inotify'
}
before=$(watches)
{ for ((i = 0; i < 100; ++i)); do echo add P.T 8; echo del P.T.8; done; } >/var/batch
"$zrcfg" batch /var/batch >/dev/null
for ((i = 0; i < 50; ++i)); do
  cp -r /var/P/T/1 /var/P/T/9 && mv /var/P/T/9 /var/P/T/10 && rm -r /var/P/T/10
done
cp -r /var/P/T/1 /var/P/T/9 && settle && mv /var/P/T/9 /var/log/away
events >/dev/null
expect "watches do not pile up" "$(watches)" "$before"

# What two writers do, followed by a reader that starts from an export and keeps only the events.
stop
start --json P
"$zrcfg" export P /var/first
python3 - >/var/batch1 <<'END'
import random
random.seed(1)
for i in range(400):
    print("set P.T.%d.%s=%d" % (random.randint(1, 2), random.choice(["Name", "Note", "Sub.Inner"]), i))
END
python3 - >/var/batch2 <<'END'
for i in range(60):
    print("add P.T 5\nset P.T.5.Name=%d\nset P.T.5.Sub.Inner=%d\nset P.One=%d\n%s" % (
        i, i, i, "del P.T.5" if i < 59 else ""))
END
"$zrcfg" batch /var/batch1 & one=$!
"$zrcfg" batch /var/batch2 >/dev/null & two=$!
wait "$one" "$two"
settle
"$zrcfg" export P /var/last
python3 - >/var/replayed <<'END'
import json
state = {}
for line in open("/var/first"):
    if "=" in line:
        name, value = line.rstrip("\n").split("=", 1)
        state[name] = value
for line in open("/var/events"):
    event = json.loads(line)
    path = event.get("path", "")
    if event["event"] == "changed":
        assert state[path] == event["old"], line
        state[path] = event["new"]
    elif event["event"] == "added" and "value" in event:
        assert path not in state, line
        state[path] = event["value"]
    elif event["event"] == "removed" and "value" in event:
        assert state.pop(path) == event["value"], line
state = {path: value for path, value in state.items() if ".0." not in path}
last = dict(line.rstrip("\n").split("=", 1) for line in open("/var/last") if "=" in line)
print("equal" if state == last else "events give %s" % sorted(set(state.items()) ^ set(last.items())))
END
expect "the events lead to the state" "$(cat /var/replayed)" "equal"
stop
"$zrcfg" del P.T.5 >/dev/null

# More events than the kernel keeps, for a watch that is held up by its full output.
mkfifo /var/full
exec 7<>/var/full
"$zrcfg" watch >/var/full 2>/var/watch_err &
watcher=$!
read -r line <&7
python3 - <<'END'
import os
pipe = os.open("/var/full", os.O_WRONLY | os.O_NONBLOCK)
for filling in b"-" * 63 + b"\n", b"\n":
    try:
        while True:
            os.write(pipe, filling)
    except BlockingIOError:
        pass
END
: >/var/events
"$zrcfg" set P.Last.Mark=stopped
sleep 0.5
"$zrcfg" set P.One=meanwhile && "$zrcfg" add P.T 6 >/dev/null
python3 - <<'END'
import os
limit = int(open("/proc/sys/fs/inotify/max_queued_events").read())
for i in range(limit // 2 + 100):
    os.mkdir("/var/P/Passing")
    os.rmdir("/var/P/Passing")
END
"$zrcfg" set P.T.6.Name=behind Q.Some=dropped && "$zrcfg" attr set P.Two noti=3
grep --line-buffered -vE '^-*$' </var/full 7<&- >>/var/events &
exec 7<&-
expect "dropped events" "$(events)" 'overflow
changed P.TNumberOfEntries "2" "3"
changed P.One "59" "meanwhile"
attribute P.Two noti "0" "3"
added P.T.6.
added P.T.6.Name "behind"
added P.T.6.Note ""
added P.T.6.Sub.
added P.T.6.Sub.Inner "x"
changed Q.Some "thing" "dropped"'
"$zrcfg" set P.T.6.Name=later
expect "and it goes on" "$(events)" 'changed P.T.6.Name "behind" "later"'
stop

# A reader that does not read: the watch waits for it, and ends all the same.
mkfifo /var/pipe
exec 7<>/var/pipe
"$zrcfg" watch >/var/pipe 2>/var/watch_err &
watcher=$!
read -r line <&7
expect "the first line at once" "$line" "watching 17 objects"
values=()
for ((i = 0; i < 200; ++i)); do
  values+=("Value$i=$(printf '%0200d' $i)")
done
for name in One Two; do
  make_object P/$name "${values[@]}"
done
sleep 0.3
stop
exec 7<&-
rm -r /var/P/One /var/P/Two

# limited NAME NUMBER: a watch where the user has so few watches or queues, if a user may have his
# own limits here.
limited() {
  unshare -U -r sh -c "echo $2 >/proc/sys/user/$1; exec '$zrcfg' watch P" >/var/out 2>/var/err
  echo "$?/$(cat /var/out /var/err)"
}
if unshare -U -r true 2>/dev/null; then
  expect "too few watches" "$(limited max_inotify_watches 5)" "1/zrcfg: watch: P.F.0.: cannot be watched: 5 \
directories are, and the system's limit is reached (/proc/sys/fs/inotify/max_user_watches)"
  expect "too few queues" "$(limited max_inotify_instances 0)" "1/zrcfg: watch: the kernel gives no event \
queue: Too many open files (/proc/sys/fs/inotify/max_user_instances)"
else
  echo "not possible here, since users have no limits of their own: too few watches, too few queues"
fi
finish

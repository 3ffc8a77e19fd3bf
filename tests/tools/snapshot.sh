# zrcfg snapshot, zrcfg restore: what is saved comes back
. "$(dirname "$0")/snapshot_common.sh"
make_store
python=$(dirname "$(readlink -f "$0")")/snapshot_bytes.py

# change: something of everything.
change() {
  "$zrcfg" batch >/dev/null <<END
set P.One=changed P.Two=long$(printf '%0200d' 7) P.T.1.Sub.Inner= Q.Some=x P.T.0.Note=template
attr set P.One noti=3 accesslist=nobody type=4 param_check=7
object set P.T level3=9
object set P hide=1
del P.T.2
add P.T 5
set P.T.5.Name=five
add --static --from 1 P.F 3
END
}

run snapshot /var/all
expect "a whole store" "$out/$err/$status" "15 objects//0"
expect "its bytes" "$(python3 "$python" encode '' /var/expected; cmp /var/all /var/expected)" ""
before=$(fingerprint)
bytes=$(content)
run restore /var/all
expect "nothing to do" "$out/$err/$status" "0 objects written, 15 unchanged, 0 instances created, 0 removed//0"
expect "nothing done" "$(fingerprint)" "$before"
change
inodes=$(cd /var && find P/property.conf P/T/1 P/T/0 P/F P/Last Q -not -path 'P/F/3*' -printf '%p %i\n')
changed=$(fingerprint)
run restore --dry-run /var/all
expect "what it would do" "$(grep -c . /var/out)/$err/$status" "26//0"
expect "lines of a comparison" "$(grep -E 'P.One|P.T.2.Name|P.T.5.Name|P.T. ' /var/out)" \
  'changed P.One "changed" "1"
attribute P.One noti "3" "0"
attribute P.One type "4" "0"
attribute P.One accesslist "nobody" ""
attribute P.One param_check "7" "0"
attribute P.T. level3 "9" "0"
added P.T.2.Name "new"
removed P.T.5.Name "five"'
expect "which changes nothing" "$(fingerprint)" "$changed"
run restore /var/all
expect "restored" "$out/$err/$status" "5 objects written, 8 unchanged, 1 instances created, 2 removed//0"
expect "the same bytes" "$(content)" "$bytes"
expect "in the same files" "$(cd /var && find P/property.conf P/T/1 P/T/0 P/F P/Last Q -printf '%p %i\n')" "$inodes"
run diff /var/all
expect "no difference" "$out/$err/$status" "//0"

# Parts of the store.
run snapshot /var/part P.T
expect "a table" "$out/$(python3 "$python" encode P.T. /var/expected; cmp /var/part /var/expected)" "7 objects/"
run snapshot /var/one P.T.1.
change
run restore /var/part
expect "restored" "$out/$err/$status" "3 objects written, 2 unchanged, 1 instances created, 1 removed//0"
expect "with the counter above it" "$("$zrcfg" get P.TNumberOfEntries P.One)" "$(printf '2\nchanged')"
"$zrcfg" del P.T.1
run restore /var/one
expect "an instance" "$out/$("$zrcfg" get P.TNumberOfEntries)" \
  "0 objects written, 0 unchanged, 1 instances created, 0 removed/2"
run restore /var/all
expect "the rest" "$err/$(content)" "/$bytes"
run snapshot /var/none P.None
expect "no such object" "$err/$status/$(ls /var/none 2>&1 | wc -l)" \
  "zrcfg: snapshot: P.None.: no such object/1/1"

# The file is replaced as a whole or not at all.
mkdir /var/dir
run snapshot /var/dir
expect "not a file" "$err/$status/$(ls /var/dir* -d)" "zrcfg: snapshot: /var/dir: cannot be written: Is a directory/1//var/dir"
mkfifo /var/pipe
cat /var/pipe >/var/piped & reader=$!
run snapshot /var/pipe
wait $reader
expect "a pipe is written to" "$err/$status/$([ -p /var/pipe ] && cmp /var/all /var/piped && echo same)" "/0/same"
run snapshot /dev/full
expect "a device that takes nothing" "$err/$status/$(stat -c %F /dev/full)" \
  "zrcfg: snapshot: /dev/full: cannot be written: No space left on device/1/character special file"
echo old >/var/target && ln -s target /var/link
run snapshot /var/link
expect "a link stays" "$status/$(readlink /var/link)/$(cmp /var/all /var/target)" "0/target/"
chmod 640 /var/target && chown 12:34 /var/target 2>/dev/null
owner=$(stat -c '%a %u %g' /var/target)
run snapshot /var/link
expect "permissions and owner stay" "$status/$(stat -c '%a %u %g' /var/target)" "0/$owner"
(umask 027 && "$zrcfg" snapshot /var/fresh >/dev/null)
expect "a new file has those of the umask" "$(stat -c %a /var/fresh)" "640"

# Standard output: nothing but the snapshot goes there.
for name in - /dev/stdout /proc/self/fd/1; do
  "$zrcfg" snapshot $name >/var/out 2>/var/err
  expect "to standard output, $name" "$?/$(cat /var/err)/$(cmp /var/all /var/out)" "0/15 objects/"
done
"$zrcfg" snapshot /dev/stdout P.T 2>/var/err | "$zrcfg" restore --dry-run - >/var/out
expect "through a pipe" "${PIPESTATUS[*]}/$(cat /var/err /var/out)" "0 0/7 objects"
echo before >/var/added
"$zrcfg" snapshot /dev/stdout >>/var/added 2>/dev/null
expect "behind what is there" "$(tail -n +2 /var/added | cmp - /var/all)" ""
"$zrcfg" snapshot - >/dev/full 2>/var/err
expect "that takes nothing" "$?/$(cat /var/err)" "1/zrcfg: snapshot: standard output: cannot be written: No space left on device"
"$zrcfg" snapshot - >&- 2>/var/err
expect "that is closed" "$?/$(cat /var/err)" "1/zrcfg: snapshot: standard output: cannot be written: Bad file descriptor"
run snapshot /var/nowhere/file
expect "no directory" "$err/$status" "zrcfg: snapshot: /var/nowhere/file: cannot be written: No such file or directory/1"
cp /var/all /var/kept
echo surplus >>/var/Q/property.conf
run snapshot /var/kept
expect "a damaged object" "$err/$status" "zrcfg: snapshot: Q.: damaged: bytes behind the last value/1"
truncate -s -8 /var/Q/property.conf
mv /var/P/Last/property.conf /var/lost
run snapshot /var/kept
expect "a lost file" "$err/$status" "zrcfg: snapshot: P.Last.: damaged: no property file/1"
mv /var/lost /var/P/Last/property.conf
run lock P -- "$zrcfg" snapshot --timeout 50 /var/kept
expect "a locked one" "$err/$status" "zrcfg: snapshot: P.: lock not obtained in time (code 9)/1"
expect "the old one is kept" "$(cmp /var/all /var/kept; ls /var/kept*)" "/var/kept"
run lock P -- "$zrcfg" snapshot --timeout -2 /var/kept
expect "without locks" "$out/$status/$(cmp /var/all /var/kept)" "15 objects/0/"
run snapshot
expect "no file" "$err/$status" "zrcfg: snapshot: takes FILE [URL]/2"
run snapshot /var/kept P Q
expect "two objects" "$err/$status" "zrcfg: snapshot: takes one file and one URL/2"
run restore
expect "nothing to restore" "$err/$status" "zrcfg: restore: takes FILE/2"
run restore /var/none
expect "no such file" "$(head -1 /var/err)/$status" "zrcfg: restore: /var/none: cannot be read: No such file or directory/1"

run restore /var/dir
expect "a directory" "$err/$status" "zrcfg: restore: /var/dir: cannot be read: Is a directory
zrcfg: restore: /var/dir: nothing was changed/1"
mv /var/P /var/Q /var/log/
for root in nothing Z; do
  [ $root = nothing ] || make_object $root One=1
  run restore /var/all
  expect "a store without any of its objects: $root" "$out/$err/$status" \
    "/zrcfg: restore: /var/ has no object of the snapshot: it is restored into a store of its model
zrcfg: restore: /var/all: nothing was changed/1"
done
rm -r /var/Z && mv /var/log/P /var/log/Q /var/

# Never two locks at a time: while it waits for one, every other is free.
exec 7</var/P/T/0/property.conf && flock 7
"$zrcfg" snapshot /var/kept >/var/out 7<&- & waiting=$!
sleep 0.3
for url in P P.F P.F.1 P.Last Q; do
  expect "$url is free while it waits" "$("$zrcfg" islock $url)" "free"
done
exec 7<&-
wait "$waiting"
expect "it goes on" "$(cat /var/out)" "15 objects"

# What changes between two passes is read again. Whoever holds Q stops each pass at its end.
exec 7</var/Q/property.conf && flock 7
"$zrcfg" snapshot /var/kept >/var/out 2>/var/err 7<&- & waiting=$!
sleep 0.3
"$zrcfg" set P.One=later
exec 7<&-
wait "$waiting"
run diff /var/kept
expect "read again" "$status/$("$zrcfg" get P.One)" "0/later"

# passes COMMAND: a snapshot, with a command between the beginning of each pass and its end: P or Q is
# held at any time, and both while the command runs.
passes() {
  local i=0
  exec 7</var/Q/property.conf && flock 7
  "$zrcfg" snapshot --timeout 9000 /var/kept >/var/out 2>/var/err 7<&- & waiting=$!
  while kill -0 "$waiting" 2>/dev/null; do
    i=$((i + 1))
    exec 8</var/P/property.conf && flock 8
    eval "$1"
    exec 7<&-
    sleep 0.03
    exec 7</var/Q/property.conf && flock 7
    exec 8<&-
    sleep 0.03
  done
  exec 7<&-
  wait "$waiting"
  status=$?
}
passes 'python3 "$python" set /var/P/property.conf $i'
expect "values that keep changing" "$status/$(cat /var/out /var/err)" "0/15 objects
zrcfg: snapshot: the store kept changing: the objects were not all saved at one moment"
cp /var/kept /var/kept2
passes 'cp -r /var/Q /var/A.new && mv /var/A.new /var/A$i'
expect "objects that keep coming" "$status/$(cat /var/out /var/err)/$(cmp /var/kept /var/kept2)" \
  "1/zrcfg: snapshot: the objects of the store keep changing/"
rm -r /var/A*[0-9]
"$zrcfg" restore /var/all >/dev/null

# What stays locked is left, and the next call completes it.
change
run lock P.T -- "$zrcfg" restore --timeout 50 /var/all
expect "locked at the check" "$(tail -1 /var/err)/$status" "zrcfg: restore: /var/all: nothing was changed/1"
run lock --shared P.T -- "$zrcfg" restore --timeout 50 /var/all
expect "locked later" "$out/$err/$status" "4 objects written, 8 unchanged, 1 instances created, 2 removed, 1 failed/\
zrcfg: restore: P.T.: lock not obtained in time (code 9)/1"
run restore /var/all
change
run lock --shared P.T.0 -- "$zrcfg" restore --timeout 50 /var/all
expect "a locked template keeps its instances" "$out/$(grep -o 'P\.T\.[0-9]*\.: lock' /var/err | paste -sd" ")/$status" \
  "3 objects written, 6 unchanged, 0 instances created, 1 removed, 6 failed/P.T.0.: lock P.T.1.: lock P.T.5.: lock/1"
run restore /var/all
expect "completed" "$err/$(content)" "/$bytes"
# So does the next call when one was killed at any moment.
for delay in 0.02 0.03 0.04 0.06 0.09; do
  change
  (timeout -s KILL $delay "$zrcfg" restore /var/all; true) >/dev/null 2>&1
  run restore /var/all
  expect "killed after $delay seconds" "$err/$(content)" "/$bytes"
done
# What one that was killed may leave: a half of a new instance, the rest of an old one.
rm /var/P/T/2/property.conf
mkdir -p /var/P/T/2.restored/Sub /var/P/T/9.replaced /var/P/T/8/Sub && cp /var/P/T/1/Sub/property.conf /var/P/T/8/Sub/
run restore /var/all
expect "leftovers" "$out/$err/$(content)" "0 objects written, 13 unchanged, 1 instances created, 1 removed//$bytes"
finish

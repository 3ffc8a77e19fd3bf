# zrcfg attr, zrcfg object
. "$(dirname "$0")/common.sh"
make_object A First=one Second=two
file=/var/A/property.conf
record=$((188 + 124))

all="flash_rw=0 hide=0 rw=1 noti=0 namechange=0 noti_rw=0 inform_dbus=0 key=0 encryt=0 device_type=0"
all="$all type=0 flash_encryt=0 inform_tr069=0 accesslist= area= param_check=0"
run attr get A.Second
expect "all attributes" "$(echo $out)/$err/$status" "$all//0"
run attr get A.Second rw 3
expect "by name and number" "$out" "$(printf 'rw=1\nnoti=0')"

values=(flash_rw=1 hide=1 rw=3 noti=15 namechange=1 noti_rw=1 inform_dbus=255 key=15 encryt=3
  device_type=254 type=9 flash_encryt=1 inform_tr069=1 accesslist=Subscriber area=here param_check=7)
run attr set A.Second "${values[@]}"
expect "every attribute set" "$out/$err/$status" "//0"
run attr get A.Second
expect "and read back" "$(echo $out)" "${values[*]}"
expect "record on disk" "$(tail -c +$((record + 1)) $file | head -c 8 | od -An -tx1 | tr -d ' \n')" 09fffe00ffffa000
run attr get A.First
expect "the other parameter is untouched" "$(echo $out)" "$all"
run attr set A.Second 3=4 10=x
run attr get A.Second noti accesslist
expect "set by number" "$out" "$(printf 'noti=4\naccesslist=x')"

before=$(md5sum <$file)
for wrong in noti=16 noti=-1 noti= noti=x rw=4 hide=2 accesslist=0123456789abcdef \
  area=0123456789012345678901234567 color=1 14=1 17=0 param_check=4294967296 noti; do
  run attr set A.Second rw=0 "$wrong"
  expect "$wrong is refused, and nothing set" "$(wc -l </var/err)/$status/$(md5sum <$file)" "1/2/$before"
done
run attr set A.Second noti=16
expect "the range is named" "$err" "zrcfg: attr: noti=16: not a number from 0 to 15"
run attr set A.Missing noti=1
expect "unknown parameter" "$err/$status" "zrcfg: attr: A.Missing: no such parameter (code 12)/1"
run attr get A.Missing
expect "unknown parameter read" "$err/$status" "zrcfg: attr: A.Missing: no such parameter (code 5)/1"
run attr get A.Second color
expect "unknown attribute" "$err/$status" "zrcfg: attr: color: no such attribute/2"
run attr put A.Second
expect "neither get nor set" "$err/$status" "zrcfg: attr: put: not get or set/2"
run attr set A.Second
expect "nothing to set" "$err/$status" "zrcfg: attr: set takes PATH NAME=VALUE.../2"

all="flag0=0 hide=0 rw=0 level3=0 key=0 max_instance=0 device_type=0 level7=0 flag8=0 flag9=0 flag11=0"
run object get A
expect "all attributes of an object" "$(echo $out)/$err/$status" "$all pnoe= devfunc= extra_text=//0"
run object set A. flag0=1 hide=1 rw=3 level3=9 key=15 max_instance=200 level7=15 flag8=1 flag9=1 flag11=1
expect "set" "$out/$err/$status" "//0"
run object get A
expect "and read back" "$(echo $out)" \
  "flag0=1 hide=1 rw=3 level3=9 key=15 max_instance=200 device_type=0 level7=15 flag8=1 flag9=1 flag11=1 pnoe= devfunc= extra_text="
run object set A 5=300
expect "out of range" "$err/$status" "zrcfg: object: max_instance=300: not a number from 0 to 255/2"
run object set A pnoe=x
expect "not settable" "$err/$status" "zrcfg: object: pnoe: cannot be set/2"
run object get B
expect "missing object" "$err/$status" "zrcfg: object: B.: no such object (code 9)/1"
finish

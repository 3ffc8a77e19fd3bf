# zrcfg restore of damaged snapshots: refused as a whole, the store untouched
. "$(dirname "$0")/snapshot_common.sh"
make_store
python=$(dirname "$(readlink -f "$0")")/snapshot_bytes.py

"$zrcfg" snapshot /var/good >/dev/null
size=$(stat -c %s /var/good)
# A store that a restore would change in every way.
"$zrcfg" set P.One=changed && "$zrcfg" del P.T.1 && "$zrcfg" add P.T 7 >/dev/null
before=$(fingerprint)

# refused WHAT [REASON]: whether /var/bad is, and nothing was touched.
refused() {
  run restore /var/bad
  [ $# -gt 1 ] && expect "$1" "$(head -1 /var/err)" "zrcfg: restore: /var/bad: $2"
  [ "$out/$status/$(tail -1 /var/err)" = "/1/zrcfg: restore: /var/bad: nothing was changed" ] &&
    [ "$(fingerprint)" = "$before" ] && return
  expect "$1 is refused, the store untouched" "$out/$err/$status" "refused"
}

# Cut at every field of the head and at others, and with single bits turned over.
mkdir /var/damaged
python3 - "$size" <<'END'
import sys
size = int(sys.argv[1])
good = open("/var/good", "rb").read()
for length in [0, 7, 8, 12, 19, 24, 27] + list(range(60, size, size // 12)) + [size - 4, size - 1]:
    open("/var/damaged/cut to %d of %d" % (length, size), "wb").write(good[:length])
for offset in [0, 11, 15, 19, 23, 27, 31] + list(range(100, size, size // 12)) + [size - 4, size - 1]:
    data = bytearray(good)
    data[offset] ^= 1 << offset % 8
    open("/var/damaged/bit %d of byte %d" % (offset % 8, offset), "wb").write(data)
END
tried=0
for file in /var/damaged/*; do
  cp "$file" /var/bad
  refused "${file##*/}"
  tried=$((tried + 1))
done
expect "damaged files that were tried" "$((tried >= 40))" "1"
(cat /var/good; printf x) >/var/bad
refused "a byte more" "damaged snapshot: something follows its end"
head -c $((size - 9)) /var/good >/var/bad
refused "bytes less" "damaged snapshot: it ends early"
cp "/var/damaged/bit 7 of byte 31" /var/bad
refused "a bit" "damaged snapshot: the checksum is wrong"
printf 'P.One=2\n' >/var/bad
refused "an export" "no snapshot"
: >/var/bad
refused "nothing" "no snapshot"

# Right checksums around something that must not be restored.
mkdir /var/crafted
python3 "$python" craft /var/good /var/crafted
while read -r kind reason; do
  mv "/var/crafted/$kind" /var/bad
  refused "$kind" "$reason"
done <<'END'
up damaged snapshot: a path that leads out of the store
slash damaged snapshot: a path that leads out of the store
empty damaged snapshot: a path that leads out of the store
dotless damaged snapshot: a path that leads out of the store
none damaged snapshot: a path that leads out of the store
zero damaged snapshot: an object is cut off
long damaged snapshot: an object is cut off
twice damaged snapshot: objects that are not in their order
before damaged snapshot: objects that are not in their order
surplus damaged snapshot: bytes behind the last value
short damaged snapshot: fewer values than records
line damaged snapshot: an empty line among the values
length damaged snapshot: the length word is out of range
nothing damaged snapshot: the length word is missing
lines damaged snapshot: a value longer than 255 characters
version snapshot of version 2, not 1
fewer damaged snapshot: an object is cut off
more damaged snapshot: something follows its objects
many damaged snapshot: an object is cut off
no-objects damaged snapshot: it holds no object
elsewhere damaged snapshot: an object that lies elsewhere
scope damaged snapshot: its head is none
headless damaged snapshot: objects that are not in their order
END
expect "all kinds were tried" "$(ls /var/crafted)" ""
run restore /var/good
expect "the good one" "$err/$status" "/0"
finish

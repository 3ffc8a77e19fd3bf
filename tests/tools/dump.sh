# zrcfg dump
. "$(dirname "$0")/common.sh"
make_object A First=one Second=
poke_header A 8 1f
poke_header A 5 09
file=/var/A/property.conf

field() {
  printf '%s\n' "$out" | grep -E "  $1 +" | sed 's/  */ /g'
}

run dump A
expect "length" "$(field length)/$err/$status" "000000 4 000001B0 length 432, 2 records//0"
expect "a number" "$(field header.max_instance)" "000009 1 09 header.max_instance 9"
expect "flags" "$(field header.access_flags)" "00000c 1 1F header.access_flags hide=0 flag0=0 rw=1 key=15"
expect "a text" "$(field 'record 1.name')" "000140 64 5365636F6E640000+ record 1.name Second"
expect "record flags" "$(field 'record 0.access_flags')" "0000c0 1 40 record 0.access_flags rw=1 key=0 encryt=0"
expect "values" "$(field 'value .')" "$(printf '%s\n' '0001b4 4 6F6E650A value 0 one' '0001b8 2 0D0A value 1 ')"
expect "fields" "$(printf '%s\n' "$out" | wc -l)" "$((1 + 14 + 2 * 13 + 2))"
run dump --json A
python3 - <<'END'
import json
fields = json.load(open("/var/out"))
data = open("/var/A/property.conf", "rb").read()
at = 0
for field in fields:
    assert field["offset"] == at and bytes.fromhex(field["bytes"]) == data[at:at + field["size"]], field
    at += field["size"]
assert at == len(data)
END
expect "JSON has every byte once" "$?" "0"

whole=$(cat "$file" | base64 -w 0)
for size in 0 1 3 4 5 12 100 187 188 189 250 311 312 435 436 437 440; do
  base64 -d <<<"$whole" | head -c $size >"$file"
  run dump --json A
  seen=$(python3 -c 'import json; print(sum(f["size"] for f in json.load(open("/var/out"))))')
  expect "cut to $size bytes: all shown, and refused" "$seen/$status/$(grep -c damaged /var/err)" "$size/1/1"
done
expect "why" "$err" "zrcfg: dump: A.: damaged: fewer values than records"
base64 -d <<<"$whole" >"$file"
printf '\xff' | dd of=$file bs=1 conv=notrunc 2>/dev/null
run dump A
expect "a wild length word" "$err/$status" "zrcfg: dump: A.: damaged: the length word is out of range/1"
head -c 3000 /dev/urandom >"$file"
run dump A
expect "random bytes do no harm" "$([ $status -le 1 ] && echo fine)" "fine"
run dump B
expect "no file" "$err/$status" "zrcfg: dump: /var/B/property.conf: No such file or directory/1"
run dump A B
expect "one only" "$err/$status" "zrcfg: dump: takes one URL/2"
finish

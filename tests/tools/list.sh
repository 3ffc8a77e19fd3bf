# zrcfg list
. "$(dirname "$0")/common.sh"
make_object A First=one Second= Third='a = b'
make_object B
make_object C X=1 Y=2

run list A.
expect "all values in file order" "$out/$err/$status" \
  "$(printf 'A.First=one\nA.Second=\nA.Third=a = b')//0"
run list A
expect "without the final dot" "$out" "$(printf 'A.First=one\nA.Second=\nA.Third=a = b')"
run list C. A.
expect "several objects" "$(printf %s "$out" | head -1)/$(printf '%s\n' "$out" | wc -l)/$status" "C.X=1/5/0"
run list B.
expect "no parameters" "$out/$err/$status" "/zrcfg: list: B.: the object has no parameters (code 6)/1"
run list Missing. C.
expect "the others are still listed" "$out/$err/$status" \
  "$(printf 'C.X=1\nC.Y=2')/zrcfg: list: Missing.: no such object (code 9)/1"
run list
expect "no argument" "$status" "2"
run list C. ''
expect "nothing is listed when an argument is wrong" "$out/$err/$status" "/zrcfg: list: the object URL is empty/2"

printf '\x04' | dd of=/var/C/property.conf bs=1 seek=$((188 + 5)) conv=notrunc 2>/dev/null
run list C.
expect "a hidden parameter is left out" "$out/$status" "C.Y=2/0"
run get C.X
expect "it can be read" "$out" "1"
poke_header C 8 80
run list C.
expect "a hidden object" "$out/$err/$status" \
  "/zrcfg: list: C.: no such object, or its URL is too long (code 1)/1"
finish

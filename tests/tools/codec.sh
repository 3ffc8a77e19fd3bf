# zrcfg encode, zrcfg decode
. "$(dirname "$0")/common.sh"

run encode M Ma Man ''
expect "base64" "$out/$err/$status" "$(printf 'TQ==\nTWE=\nTWFu\n\n')//0"
run encode --hex 'Az'
expect "hexadecimal" "$out/$status" "417A/0"
run decode TWE=
expect "decoded base64" "$out/$status" "Ma/0"
run decode -x 417a
expect "decoded hexadecimal" "$out/$status" "Az/0"

for wrong in T TWE TW=u ==== TQ=== TWE* 'TW E=' TWFu=; do
  run decode "$wrong"
  expect "'$wrong' is not base64" "$out/$err/$status" "/zrcfg: decode: not base64 text/1"
done
for wrong in 4 4G 417; do
  run decode --hex $wrong
  expect "'$wrong' is not hexadecimal" "$out/$err/$status" "/zrcfg: decode: not hexadecimal text/1"
done
run decode TQ== TQ==
expect "one text only" "$err/$status" "zrcfg: decode: takes one text/2"

head -c 100000 /dev/urandom >/var/bytes
"$zrcfg" encode </var/bytes >/var/text
expect "as base64(1)" "$(cat /var/text)" "$(base64 -w 0 /var/bytes)"
base64 /var/bytes | "$zrcfg" decode | cmp - /var/bytes
expect "wrapped text from standard input" "$?" "0"
"$zrcfg" encode --hex </var/bytes >/var/text
expect "as od(1)" "$(tr -d '\n' </var/text | md5sum)" \
  "$(od -An -v -tx1 /var/bytes | tr -d ' \n' | tr a-f A-F | md5sum)"
"$zrcfg" decode --hex </var/text | cmp - /var/bytes
expect "hexadecimal from standard input" "$?" "0"
run encode
expect "empty input" "$out/$status" "/0"
"$zrcfg" encode <&- 2>/var/err
expect "no standard input" "$?/$(cat /var/err)" "1/zrcfg: encode: standard input: cannot be read: Bad file descriptor"
finish

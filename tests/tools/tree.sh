# zrcfg tree
. "$(dirname "$0")/common.sh"

run tree
expect "empty store" "$err/$status" \
  "zrcfg: tree: neither InternetGatewayDevice. nor Device. is in the store/1"
make_object Device Name=x
make_object Device/A Second=1
make_object Device/T
make_object Device/T/0 P=0
make_object Device/T/2 P=2
make_object Device/T/10 P=10
make_object Device/T/2/Sub Q=3
poke_header Device/T 8 10
poke_header Device/A 8 80

run tree Device.T
expect "order, instances, access rights" "$out/$err/$status" "$(printf '%s\n' \
  'rw Device.T.  instances: 2 10' '  r- 2.' '    rw P' '    r- Sub.' '      rw Q' '  r- 10.' '    rw P')//0"
run tree
expect "from the root, without what is hidden" "$out" "$(printf '%s\n' \
  'r- Device.' '  rw Name' '  rw T.  instances: 2 10' '    r- 2.' '      rw P' '      r- Sub.' \
  '        rw Q' '    r- 10.' '      rw P')"
run tree --depth 1 Device
expect "one level" "$out" "$(printf '%s\n' 'r- Device.' '  rw Name' '  rw T.  instances: 2 10')"
run tree --depth 0 Device. Device.T.2
expect "the objects only" "$out" "$(printf '%s\n' 'r- Device.' 'r- Device.T.2.')"
run tree --depth x
expect "--depth takes a number" "$(printf %s "$err" | head -1)/$status" \
  "zrcfg: tree: --depth x: not a number of levels/2"
run tree Nope Device.T.10
expect "the others are still printed" "$out/$err/$status" \
  "$(printf 'r- Device.T.10.\n  rw P')/zrcfg: tree: Nope.: no such object (code 9)/1"
run tree Device.A
expect "a hidden object" "$out/$err/$status" \
  "/zrcfg: tree: Device.A.: no such object, or its URL is too long (code 1)/1"
finish

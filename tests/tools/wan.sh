# zrcfg wan
. "$(dirname "$0")/common.sh"
devices=InternetGatewayDevice/WANDevice/1/WANConnectionDevice
url=InternetGatewayDevice.WANDevice.1.WANConnectionDevice

run wan 1
expect "store without WAN" "$err/$status" \
  "zrcfg: wan: 1: no user index, or the store has no limit of WAN connections/1"
make_object InternetGatewayDevice/WANDevice/1
make_object $devices
make_object $devices/1/WANIPConnection
poke_header $devices 5 03
poke_header $devices/1/WANIPConnection 5 02
for row in "1 1 1 WANIPConnection" "2 1 2 WANIPConnection" "3 1 1 WANPPPConnection" \
  "4 1 2 WANPPPConnection" "5 2 1 WANIPConnection" "12 3 2 WANPPPConnection"; do
  set -- $row
  want=$(printf 'index=%s\ndevice=%s\nconnection=%s\ntype=%s' "$@")
  run wan $1
  expect "user index $1" "$out/$status" "$want/0"
  run wan $url.$2.$4.$3
  expect "URL of $1" "$out/$status" "$want/0"
done
run wan $url.4.WANIPConnection.1.
expect "device beyond the limit" "$err/$status" \
  "zrcfg: wan: $url.4.WANIPConnection.1.: beyond the store's limits of WAN connections/1"
run wan $url.1.WANIPConnection.3.
expect "connection beyond the limit" "$status" "1"
run wan $url.1.
expect "no connection" "$err/$status" "zrcfg: wan: $url.1.: not the URL of a WAN IP or PPP connection/1"
run wan 1 2
expect "one only" "$err/$status" "zrcfg: wan: takes one URL or one user index/2"
finish

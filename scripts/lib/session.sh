# The quick start's session, run inside a private /var that holds the example store.
set -euo pipefail
zrcfg=$1
device=InternetGatewayDevice.DeviceInfo
wlan=InternetGatewayDevice.LANDevice.1.WLANConfiguration.1
wan=InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1
file=/var/$(tr . / <<<"$wlan")/property.conf
lock=/var/InternetGatewayDevice/LANDevice/0/property.conf

show() {
  echo "\$ zrcfg$(printf ' %q' "$@")"
  "$zrcfg" "$@"
}

echo
echo "== reading values"
show get --names $device.Manufacturer $device.ModelName $device.SoftwareVersion
show get InternetGatewayDevice.WANDevice.1.WANConnectionNumberOfEntries

echo
echo "== all values of an object"
show list InternetGatewayDevice.Time.

echo
echo "== setting one and reading it back"
show get $wlan.SSID
show set $wlan.SSID="Quick start"
show get $wlan.SSID

echo
echo "== setting it again: an equal value is not written"
sleep 0.05
before=$(stat -c 'inode %i, modified %y' "$file")
show set $wlan.SSID="Quick start"
after=$(stat -c 'inode %i, modified %y' "$file")
echo "before: $before"
echo "after:  $after"
[ "$before" = "$after" ]

echo
echo "== several values at once: one is refused, so the object stays as it is"
before=$(cksum "$file")
echo "\$ zrcfg set $wlan.Channel=11 $wlan.Enable=perhaps"
if "$zrcfg" set $wlan.Channel=11 $wlan.Enable=perhaps 2>&1; then
  echo "the value was not refused" >&2
  exit 1
fi
show get --names $wlan.Channel $wlan.Enable
[ "$before" = "$(cksum "$file")" ]

echo
echo "== adding a WAN connection, and deleting it"
show get $wan.WANIPConnectionNumberOfEntries
connection=$("$zrcfg" add $wan.WANIPConnection)
echo "\$ zrcfg add $wan.WANIPConnection"
echo "$connection"
show get --names $wan.WANIPConnectionNumberOfEntries "${connection}Name" "${connection}Enable"
show del "$connection"
show get $wan.WANIPConnectionNumberOfEntries

echo
echo "== the tree below an object, with access rights"
show tree --depth 2 InternetGatewayDevice.LANDevice.1.Hosts

echo
echo "== an attribute: notification of a changed value"
show attr get $wlan.SSID noti rw
show attr set $wlan.SSID noti=1
show attr get $wlan.SSID noti

echo
echo "== a WAN connection and its user index"
show wan InternetGatewayDevice.WANDevice.1.WANConnectionDevice.2.WANPPPConnection.1.

echo
echo "== another process holds the lock for a second"
flock "$lock" -c 'touch /var/held; sleep 1' &
until [ -e /var/held ]; do sleep 0.01; done
rm /var/held
echo "\$ zrcfg --timeout 100 set $wlan.Channel=6"
if "$zrcfg" --timeout 100 set $wlan.Channel=6 2>&1; then
  echo "the lock was not respected" >&2
  exit 1
fi
start=$(date +%s%N)
show --timeout 5000 set $wlan.Channel=6
echo "done after $((($(date +%s%N) - start) / 1000000)) ms, when the lock was free"
wait
show get $wlan.Channel

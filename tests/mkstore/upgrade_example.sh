# A store of the example's firmware 1.7 that has been in use is upgraded to 1.8: what is reported,
# and what the command line then finds.
#
# usage: upgrade_example.sh ZRCFG MKSTORE
. "$(dirname "$0")/../tools/common.sh"
mkstore=$2
models=$(readlink -f "$(dirname "$0")/../../examples/upgrade")/home-gateway
top=InternetGatewayDevice
wlan=$top.LANDevice.WLANConfiguration

# install STORE: makes it the store of the command line.
install_store() {
  rm -rf "/var/$top" /var/regex_file
  cp -a "$1"/* /var/
}

# sums STORE: every file with its content and times.
sums() {
  (cd "$1" && find . | sort | while read -r entry; do
    stat -c '%n %i %Y %Z %s' "$entry"
    [ -f "$entry" ] && md5sum <"$entry"
  done) | md5sum
}

# change COMMAND...: a change that has to succeed.
change() {
  run "$@"
  expect "$1 $2" "$err/$status" "/0"
}

# report FILE...: what an upgrade printed but for sizes and time.
report() {
  grep -v 'seconds$' "$1"
}

upgrade() {
  "$mkstore" --model "$models-1.8.xml" --instances "$models-1.8.instances" \
    --values "$models-1.8.values" --upgrade /var/old "$@"
}

"$mkstore" --model "$models-1.7.xml" --instances "$models-1.7.instances" \
  --values "$models-1.7.values" /var/new >/dev/null
expect "1.7 is built" "$?" "0"
install_store /var/new

# A household and an operator use the gateway.
for number in 2 3 6; do
  change add $wlan $number
done
change add $wlan.3.AssociatedDevice 5
change add $wlan.6.AssociatedDevice
change del $wlan.2
change add $top.LANDevice.Host 9
change add $top.LANDevice.DMZ
change set $wlan.1.SSID='Caf\é "1"' $wlan.1.Channel=14 $wlan.1.BeaconType=WEP $wlan.1.MaxBitRate=54 \
  $wlan.1.Enable=true $wlan.3.SSID=Guests $wlan.3.Channel=13 $wlan.3.MaxBitRate='54 Mbit/s' \
  $wlan.3.AssociatedDevice.5.MACAddress=00:00:5E:00:53:01
change set $top.DeviceInfo.ProvisioningCode=TLCO.RES $top.DeviceInfo.VendorLogLevel=verbose \
  $top.ManagementServer.URL= $top.ManagementServer.PeriodicInformInterval=30 \
  $top.ManagementServer.Password=c2VjcmV0 $top.ManagementServer.UpgradesManaged=true \
  $top.Time.NTPServer1=ntp.example.net $top.LANDevice.Host.9.Name=printer \
  $top.LANDevice.DMZ.1.Host=192.0.2.9 $top.LANDevice.Port.2.Enable=false \
  $top.DynamicDNS.Hostname=home.example.net
change attr set $top.ManagementServer.Password encryt=1 accesslist=Subscriber
change attr set $top.ManagementServer.ConnectionRequestURL noti=1
change attr set $top.DeviceInfo.SoftwareVersion noti=1
change attr set $wlan.3.SSID noti=2 accesslist=Subscriber
change attr set $wlan.1.Channel accesslist=Subscriber
change object set $wlan.3. hide=1
mkdir /var/old
cp -a /var/$top /var/regex_file /var/old/
before=$(sums /var/old)

upgrade /var/new >/var/report 2>/var/err
expect "upgraded" "$(cat /var/err)/$?" "/0"
expect "the old store is untouched" "$(sums /var/old)" "$before"
expect "the report" "$(report /var/report)" "$(
  cat <<'END'
dropped instance InternetGatewayDevice.LANDevice.DMZ.1.: not a table in the model
added instance InternetGatewayDevice.LANDevice.Port.3.: the model has at least 4
added instance InternetGatewayDevice.LANDevice.Port.4.: the model has at least 4
dropped instance InternetGatewayDevice.LANDevice.WLANConfiguration.6.: above max_instance, which is 4, with 3 objects below
dropped object InternetGatewayDevice.Time.: not in the model, with 1 objects below
dropped parameter InternetGatewayDevice.DeviceInfo.ModemFirmwareVersion: "V2.11.7": not in the model
refused attribute InternetGatewayDevice.DeviceInfo.SoftwareVersion: noti=1: the model forces 2
refused value InternetGatewayDevice.DeviceInfo.VendorLogLevel: "verbose": it does not match the filter ^[0-7]$
refused value InternetGatewayDevice.ManagementServer.PeriodicInformInterval: "30": it does not match the filter ^([6-9][0-9]|[1-9][0-9]{2}[0-9]{0,6}|[1-3][0-9]{9}|4([01][0-9]{8}|2([0-8][0-9]{7}|9([0-3][0-9]{6}|4([0-8][0-9]{5}|9([0-5][0-9]{4}|6([0-6][0-9]{3}|7([01][0-9]{2}|2([0-8][0-9]|9[0-5])))))))))$
dropped parameter InternetGatewayDevice.LANDevice.DMZNumberOfEntries: "1": not in the model
refused value InternetGatewayDevice.LANDevice.WLANConfiguration.1.Channel: "14": it does not match the filter ^(1[0-3]|[1-9]|0)$
refused value InternetGatewayDevice.LANDevice.WLANConfiguration.1.BeaconType: "WEP": it does not match the filter ^(11i|WPA)$
refused value InternetGatewayDevice.LANDevice.WLANConfiguration.3.MaxBitRate: "54 Mbit/s": it does not match the filter ^(Auto|[0-9]{1,4})$
dropped object InternetGatewayDevice.DynamicDNS.: a table in the model, with 2 parameters in the old store
10 filters for 21 parameters; unchecked: nothing
carried over: 15 objects, 6 instances, 22 values; 6 dropped, 6 refused, 0 damaged, 2 added
END
)"
upgrade /var/again >/var/report.2
expect "twice" "$(diff -r /var/new /var/again; report /var/report.2 | diff - <(report /var/report))" ""
upgrade --strict /var/strict >/var/report.3 2>/var/err
expect "strict" "$?/$(cat /var/err)/$([ -e /var/strict ] && echo written)" \
  "1/zrcfg-mkstore: /var/strict: not written, because 12 things of /var/old are lost/"
expect "strict reports the same" "$(report /var/report.3)" "$(report /var/report)"

install_store /var/new
run export $top
expect "instances and values" "$out" "$(
  cat <<'END'
+InternetGatewayDevice.Firewall.Rule.1.
+InternetGatewayDevice.LANDevice.Host.9.
+InternetGatewayDevice.LANDevice.Port.1.
+InternetGatewayDevice.LANDevice.Port.2.
+InternetGatewayDevice.LANDevice.Port.3.
+InternetGatewayDevice.LANDevice.Port.4.
+InternetGatewayDevice.LANDevice.WLANConfiguration.1.
+InternetGatewayDevice.LANDevice.WLANConfiguration.3.
+InternetGatewayDevice.LANDevice.WLANConfiguration.3.AssociatedDevice.5.
InternetGatewayDevice.DeviceSummary=
InternetGatewayDevice.DeviceInfo.ProvisioningCode=TLCO.RES
InternetGatewayDevice.DeviceInfo.SerialNumber=HG2A1700420815
InternetGatewayDevice.DeviceInfo.SoftwareVersion=1.8.0
InternetGatewayDevice.DeviceInfo.FirstUseDate=0001-01-01T00:00:00Z
InternetGatewayDevice.DeviceInfo.VendorLogLevel=0
InternetGatewayDevice.Firewall.RuleNumberOfEntries=1
InternetGatewayDevice.Firewall.Rule.1.Target=Accept
InternetGatewayDevice.LANDevice.HostNumberOfEntries=1
InternetGatewayDevice.LANDevice.WLANConfigurationNumberOfEntries=2
InternetGatewayDevice.LANDevice.DMZ.Host=
InternetGatewayDevice.LANDevice.Host.9.Name=printer
InternetGatewayDevice.LANDevice.Host.9.LeaseTime=0
InternetGatewayDevice.LANDevice.Port.1.Enable=true
InternetGatewayDevice.LANDevice.Port.2.Enable=false
InternetGatewayDevice.LANDevice.Port.3.Enable=true
InternetGatewayDevice.LANDevice.Port.4.Enable=true
InternetGatewayDevice.LANDevice.WLANConfiguration.1.Enable=true
InternetGatewayDevice.LANDevice.WLANConfiguration.1.SSID=Caf\\é "1"
InternetGatewayDevice.LANDevice.WLANConfiguration.1.Channel=0
InternetGatewayDevice.LANDevice.WLANConfiguration.1.BeaconType=11i
InternetGatewayDevice.LANDevice.WLANConfiguration.1.MaxBitRate=54
InternetGatewayDevice.LANDevice.WLANConfiguration.1.GuestIsolation=true
InternetGatewayDevice.LANDevice.WLANConfiguration.1.TransmitPower=100
InternetGatewayDevice.LANDevice.WLANConfiguration.1.AssociatedDeviceNumberOfEntries=0
InternetGatewayDevice.LANDevice.WLANConfiguration.3.Enable=false
InternetGatewayDevice.LANDevice.WLANConfiguration.3.SSID=Guests
InternetGatewayDevice.LANDevice.WLANConfiguration.3.Channel=13
InternetGatewayDevice.LANDevice.WLANConfiguration.3.BeaconType=WPA
InternetGatewayDevice.LANDevice.WLANConfiguration.3.MaxBitRate=Auto
InternetGatewayDevice.LANDevice.WLANConfiguration.3.GuestIsolation=true
InternetGatewayDevice.LANDevice.WLANConfiguration.3.TransmitPower=100
InternetGatewayDevice.LANDevice.WLANConfiguration.3.AssociatedDeviceNumberOfEntries=1
InternetGatewayDevice.LANDevice.WLANConfiguration.3.AssociatedDevice.5.MACAddress=00:00:5E:00:53:01
InternetGatewayDevice.ManagementServer.URL=
InternetGatewayDevice.ManagementServer.PeriodicInformEnable=true
InternetGatewayDevice.ManagementServer.PeriodicInformInterval=43200
InternetGatewayDevice.ManagementServer.ConnectionRequestURL=
InternetGatewayDevice.ManagementServer.Password=c2VjcmV0
InternetGatewayDevice.ManagementServer.UpgradesManaged=true
END
)"

# attributes PATH NAME...: the values of these attributes in one line.
attributes() {
  run attr get "$@"
  echo $out
}
expect "rights that were taken away" "$(attributes $top.ManagementServer.UpgradesManaged rw key)" "rw=0 key=0"
expect "client's attributes" "$(attributes $top.ManagementServer.Password encryt accesslist rw)" \
  "encryt=1 accesslist=Subscriber rw=1"
expect "notification" "$(attributes $wlan.3.SSID noti accesslist)" "noti=2 accesslist=Subscriber"
expect "notification chosen against a default" \
  "$(attributes $top.ManagementServer.ConnectionRequestURL noti noti_rw)" "noti=1 noti_rw=1"
expect "forced notification" "$(attributes $top.DeviceInfo.SoftwareVersion noti noti_rw inform_tr069)" \
  "noti=2 noti_rw=0 inform_tr069=1"
expect "attributes of a refused value" "$(attributes $wlan.1.Channel accesslist)" "accesslist=Subscriber"
expect "new type and filter" "$(attributes $top.DeviceInfo.VendorLogLevel type param_check)" \
  "type=3 param_check=3"
expect "templates" "$("$zrcfg" get $wlan.0.BeaconType $wlan.0.AssociatedDeviceNumberOfEntries | paste -sd' ')" "11i 0"
run object get $wlan.3. hide max_instance
expect "attributes of an instance" "$(echo $out)" "hide=1 max_instance=0"
run object get $wlan. max_instance pnoe rw
expect "limit and counter of a table" "$(echo $out)" \
  "max_instance=4 pnoe=LANDevice/WLANConfigurationNumberOfEntries rw=1"
run tree --depth 1 $top.LANDevice.
expect "the tree" "$(grep -v ' [A-Z][A-Za-z]*$' <<<"$out")" "$(
  cat <<'END'
r- InternetGatewayDevice.LANDevice.
  r- DMZ.
  rw Host.  instances: 9
  r- Port.  instances: 1 2 3 4
  rw WLANConfiguration.  instances: 1
END
)"

# The upgraded store is as good as any: instances come and go, values are checked.
change add $wlan
run get $top.LANDevice.WLANConfigurationNumberOfEntries $wlan.2.BeaconType
expect "a new instance" "$(echo $out)/$status" "3 11i/0"
run set $wlan.3.Channel=14
expect "a value is checked" "$status" "1"
finish

# A store with random changes is upgraded to the model that it was built from, without the lists: its
# instances, values and attributes are the same afterwards, and byte for byte so are its files but for
# templates, about which only lists can say more than the model.
#
# usage: upgrade_same_model.sh ZRCFG MKSTORE MODEL CHANGES BUILD-OPTION...
. "$(dirname "$0")/upgrade_common.sh"
make_changed_store "7 checked" "$@"
expect "changes of every kind" "$(grep -cE 'set [1-9][0-9]* add [1-9][0-9]* del [1-9]' <<<"$made")" "1"

# Attributes of every third parameter whose notification is not forced.
run tree --json "$root"
python3 -c 'import json, sys
print("\n".join(n["path"] for n in json.load(sys.stdin) if n["kind"] == "parameter"))' </var/out >/var/paths
sed 's/.*/attr get & noti_rw/' /var/paths >/var/commands
run batch /var/commands
paste -d' ' /var/out /var/paths | awk '$1 == "noti_rw=1" && ++line % 3 == 0 {
  n = ++count
  printf "attr set %s noti=%d accesslist=Client%d hide=%d inform_dbus=%d area=area%d", $2, n % 3, n, n % 2, n % 256, n
  print " namechange=1 flash_rw=1 encryt=1 device_type=1"
}' >/var/commands
run batch /var/commands
expect "attributes set" "$err/$status/$([ "$(wc -l </var/commands)" -gt 100 ] && echo many)" "/0/many"

mkdir /var/old
cp -a /var/$root /var/old
[ ! -e /var/regex_file ] || cp /var/regex_file /var/old
run export "$root" /var/export.old
"$mkstore" --model "$model" --upgrade /var/old /var/new >/var/report 2>/var/warnings
expect "upgraded" "$?" "0"
expect "nothing is lost or added" "$(grep -E '^(dropped|refused|damaged|added) ' /var/report)" ""
tail -1 /var/report
expect "every file" "$(diff -rq /var/old /var/new | grep -v '/0/')" ""
install_store /var/new
run export "$root" /var/export.new
expect "exports" "$(cmp /var/export.old /var/export.new)/$(wc -l </var/export.new | sed 's/^[0-9]\{3,4\}$/many/')" "/many"
finish

# A store with random values that nobody has checked is upgraded: exactly the values that the library
# would refuse are refused.
#
# usage: upgrade_refused.sh ZRCFG MKSTORE MODEL CHANGES BUILD-OPTION...
. "$(dirname "$0")/upgrade_common.sh"
here=$(cd "$(dirname "$0")" && pwd)
make_changed_store 3 "$@"
mkdir /var/old
cp -a /var/$root /var/regex_file /var/old
"$mkstore" --model "$model" --upgrade /var/old /var/new >/var/report 2>/var/warnings
expect "upgraded" "$?" "0"
tail -1 /var/report

install_store /var/new
run export "$root" /var/export
run apply /var/export
expect "the library takes what was carried over" "$err/$status/${out##*, }" "/0/0 refused"
expect "the library refuses what was refused" "$(python3 "$here/refused_values.py" "$zrcfg" /var/report)" ""
expect "values refused" "$([ "$(grep -c '^refused value' /var/report)" -ge 20 ] && echo many)" "many"
expect "values carried over" \
  "$([ "$(sed -n 's/^carried over.* \([0-9]*\) values;.*/\1/p' /var/report)" -ge 500 ] && echo many)" "many"
finish

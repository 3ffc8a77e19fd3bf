# A store with random values that nobody has checked is upgraded: exactly the values that the library
# would refuse are refused.
#
# usage: upgrade_refused.sh ZRCFG MKSTORE MODEL CHANGES BUILD-OPTION...
. "$(dirname "$0")/../tools/common.sh"
mkstore=$2 model=$3 changes=$4
here=$(cd "$(dirname "$0")" && pwd)
shift 4
root=InternetGatewayDevice

install_store() {
  rm -rf "/var/$root" /var/regex_file
  cp -a "$1"/* /var/
}

"$mkstore" --model "$model" "$@" /var/fresh >/var/built 2>&1 || cat /var/built
install_store /var/fresh
made=$(python3 "$here/../tools/random_changes.py" "$zrcfg" "$root" "$changes" 3) || failures=1
echo "changes: $made"
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

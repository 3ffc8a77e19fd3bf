# A store with random changes is exported, and applied to one that is compiled from the model alone:
# the export of that is identical.
#
# usage: restore.sh ZRCFG MKSTORE MODEL ROOT CHANGES BUILD-OPTION...
. "$(dirname "$0")/common.sh"
mkstore=$2 model=$3 root=$4 changes=$5
here=$(cd "$(dirname "$0")" && pwd)
shift 5

fresh_store() {
  find /var -mindepth 1 -maxdepth 1 ! -name 'export*' -exec rm -r {} +
  "$mkstore" --model "$model" "$@" /var/new >/var/built 2>&1 || cat /var/built
  mv /var/new/* /var && rmdir /var/new
}

fresh_store "$@"
made=$(python3 "$here/random_changes.py" "$zrcfg" "$root" "$changes" 1) || failures=1
echo "changes: $made"
expect "changes of every kind" "$(grep -cE 'set [1-9][0-9]* add [1-9][0-9]* del [1-9]' <<<"$made")" "1"
run export "$root" /var/export.1
expect "exported" "$err/$status" "/0"
fresh_store
run apply --no-check --exact "$root" /var/export.1
expect "applied to a fresh store" "$err/$status/${out##*, }" "/0/0 refused"
echo "$out"
run export "$root" /var/export.2
expect "exported again" "$err/$status" "/0"
cmp /var/export.1 /var/export.2
expect "byte for byte the same" "$?" "0"
expect "lines" "$([ "$(wc -l </var/export.1)" -ge 500 ] && echo many)" "many"
finish

# zrcfg restore into a store of another model: refused, the store untouched
. "$(dirname "$0")/snapshot_common.sh"
make_store
mkdir /var/kept
cp -a /var/P /var/Q /var/kept/

"$zrcfg" snapshot /var/saved >/dev/null
# refused WHAT COMMAND REASON...: whether a restore is, after the command, with these reasons.
refused() {
  local what=$1 before
  rm -rf /var/P /var/Q
  cp -a /var/kept/* /var/
  "$zrcfg" set P.One=changed
  eval "$2"
  shift 2
  before=$(fingerprint)
  run restore /var/saved
  expect "$what" "$(sed 's/^zrcfg: restore: //' /var/err)" "$(printf '%s\n' "$@" "/var/saved: nothing was changed")"
  expect "$what: untouched" "$out/$status/$(fingerprint)" "/1/$before"
}

parameters="its parameters, or fixed fields of its header, are not those of the snapshot"
refused "an object more" 'make_object P/More' "P.More.: is in the store only: they are of different models"
refused "an object less" 'rm -r /var/P/Last' "P.Last.: is in the snapshot only: they are of different models"
refused "a root less" 'rm -r /var/Q' "Q.: is in the snapshot only: they are of different models"
refused "no template" 'rm -r /var/P/T/0' "P.T.0.: is in the snapshot only: they are of different models" \
  "P.T.0.Sub.: is in the snapshot only: they are of different models"
refused "one more" 'cp -r /var/P/F/0 /var/Q/0' "Q.0.: is in the store only: they are of different models" \
  "Q.0.Sub.: is in the store only: they are of different models"
refused "another parameter" 'make_object Q Other=1' "Q.: $parameters"
refused "a parameter more" 'make_object Q Some=1 More=1' "Q.: $parameters"
refused "another order" 'make_object P Two= One=1 TNumberOfEntries=2' "P.: $parameters"
for offset in 6 12 76 148; do
  refused "byte $offset of the header" "poke_header P/Last $offset 41" "P.Last.: $parameters"
done
refused "a file that is too short" 'truncate -s 100 /var/Q/property.conf' "Q.: $parameters"
# New instances have to be what a copy would be.
refused "a new instance" 'rm -r /var/P/T/2; make_object P/T/0 Name=new' "P.T.0.: $parameters" \
  "P.T.2.: $parameters"
refused "without an instance to copy" 'rm -r /var/P/F/0 /var/P/F/1' \
  "P.F.0.: is in the snapshot only: they are of different models" \
  "P.F.0.Sub.: is in the snapshot only: they are of different models" \
  "P.F.1.: the store has no instance that it could be a copy of" \
  "P.F.1.Sub.: the store has no instance that it could be a copy of"
refused "several reasons" 'make_object P/More; rm -r /var/Q' \
  "P.More.: is in the store only: they are of different models" \
  "Q.: is in the snapshot only: they are of different models"

# What may differ: everything that calls of the library set, and values in any state.
rm -rf /var/P /var/Q
cp -a /var/kept/* /var/
wanted=$(content)
for number in 0 1 2 3 4 5 7 8 9 10 11; do
  poke_header P/T $((number < 6 ? 5 : 8)) 25
done
poke_header P/Last 8 ff
poke_header P/Last 9 ff
"$zrcfg" attr set P.One type=9 rw=3 area=there device_type=4 key=15
printf 'torn' >>/var/P/Last/property.conf
truncate -s -6 /var/Q/property.conf
rm -r /var/P/T/1/Sub
run restore /var/saved
expect "an instance lost an object" "$(grep -v nothing /var/err)/$status" \
  "zrcfg: restore: P.T.1.Sub.: is in the snapshot only: they are of different models/1"
cp -r /var/P/T/2/Sub /var/P/T/1/
run restore --dry-run /var/saved
expect "damaged values are told" "$(grep damaged /var/err)/$status" "zrcfg: restore: P.Last.: damaged: bytes behind the last value
zrcfg: restore: Q.: damaged: fewer values than records/0"
run restore /var/saved
expect "restored" "$err/$status/$(content)" "/0/$wanted"
finish

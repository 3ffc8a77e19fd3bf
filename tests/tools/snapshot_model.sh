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

lost="is in the snapshot only: the store is of another model, or has lost the directory"
parameters="its parameters, or fixed fields of its header, are not those of the snapshot"
refused "an object more" 'make_object P/More' "P.More.: is in the store only: they are of different models"
refused "an object less" 'rm -r /var/P/Last' "P.Last.: $lost"
refused "a root less" 'rm -r /var/Q' "Q.: $lost"
refused "no template" 'rm -r /var/P/T/0' "P.T.0.: $lost" \
  "P.T.0.Sub.: $lost"
refused "one more" 'cp -r /var/P/F/0 /var/Q/0' "Q.0.: is in the store only: they are of different models" \
  "Q.0.Sub.: is in the store only: they are of different models"
refused "another parameter" 'make_object Q Other=1' "Q.: $parameters"
refused "a parameter more" 'make_object Q Some=1 More=1' "Q.: $parameters"
refused "another order" 'make_object P Two= One=1 TNumberOfEntries=2' "P.: $parameters"
for offset in 6 12 76 148; do
  refused "byte $offset of the header" "poke_header P/Last $offset 41" "P.Last.: $parameters"
done
refused "a link in place of a file" 'ln -sf /var/P/property.conf /var/Q/' "Q.: cannot be read: Too many levels of symbolic links"
# New instances have to be what a copy would be.
refused "a new instance" 'rm -r /var/P/T/2; make_object P/T/0 Name=new' "P.T.0.: $parameters" \
  "P.T.2.: $parameters"
refused "without an instance to copy" 'rm -r /var/P/F/0 /var/P/F/1' \
  "P.F.0.: $lost" \
  "P.F.0.Sub.: $lost" \
  "P.F.1.: the store has no instance that it could be a copy of" \
  "P.F.1.Sub.: the store has no instance that it could be a copy of"
refused "several reasons" 'make_object P/More; rm -r /var/Q' \
  "P.More.: is in the store only: they are of different models" \
  "Q.: $lost"

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
  "zrcfg: restore: P.T.1.Sub.: $lost/1"
cp -r /var/P/T/2/Sub /var/P/T/1/
run restore --dry-run /var/saved
expect "damaged values are told" "$(grep damaged /var/err)/$status" "zrcfg: restore: P.Last.: damaged: bytes behind the last value
zrcfg: restore: Q.: damaged: fewer values than records/0"
run restore /var/saved
expect "restored" "$err/$status/$(content)" "/0/$wanted"

# repairs WHAT OUTPUT COMMAND: what a restore does behind a command that damages the store. Files that
# are there stay the same files.
repairs() {
  local inodes
  rm -rf /var/P /var/Q
  cp -a /var/kept/* /var/
  eval "$3"
  inodes=$(cd /var && find P Q -name property.conf -printf '%p %i\n' | sort)
  run restore /var/saved
  expect "$1" "$out/$err/$status" "$2, 0 instances created, 0 removed//0"
  expect "$1: the store" "$(content)" "$wanted"
  expect "$1: the same files" "$(cd /var && find P Q -name property.conf -printf '%p %i\n' | sort |
    comm -13 - <(printf '%s\n' "$inodes"))" ""
}
repairs "a file cut in the records" "1 objects written, 14 unchanged" 'truncate -s 250 /var/Q/property.conf'
repairs "in the header" "1 objects written, 14 unchanged" 'truncate -s 100 /var/P/T/0/property.conf'
repairs "empty" "1 objects written, 14 unchanged" ': >/var/P/T/1/Sub/property.conf'
repairs "a length word out of range" "1 objects written, 14 unchanged" \
  'printf "\xff" | dd of=/var/P/Last/property.conf conv=notrunc 2>/dev/null'
repairs "that is not of whole records" "1 objects written, 14 unchanged" \
  'printf "\xb9" | dd of=/var/P/T/property.conf bs=1 seek=3 conv=notrunc 2>/dev/null'
repairs "a lost file" "1 objects written, 14 unchanged" 'rm /var/P/Last/property.conf'
repairs "of a root" "2 objects written, 13 unchanged" 'rm /var/P/property.conf /var/Q/property.conf'
repairs "of a template and below it" "2 objects written, 13 unchanged" 'rm /var/P/T/0{,/Sub}/property.conf'
repairs "below an instance" "1 objects written, 14 unchanged" 'rm /var/P/T/2/Sub/property.conf'
rm /var/P/T/1/property.conf /var/P/T/0/property.conf
run restore --dry-run /var/saved
expect "a lost instance and its template: told" "$(grep -c '^added P.T.[01].$' /var/out)/$err/$status" "2//0"
run restore /var/saved
expect "restored" "$out/$err/$(content)" "1 objects written, 12 unchanged, 1 instances created, 0 removed//$wanted"
rm /var/P/T/1/Sub/property.conf
run lock P.T.1 -- "$zrcfg" restore --timeout 50 /var/saved
expect "not while it is locked" "$status/$(ls /var/P/T/1/Sub)" "1/"
rm /var/P/property.conf
run set P.One=1
expect "no lock without a file" "$err/$status" "zrcfg: set: P.One: the object has no property file (code 9)/1"
finish

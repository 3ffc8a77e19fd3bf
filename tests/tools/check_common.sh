# Shared by the tests of zrcfg check: a small store without a flaw, and ways to damage it.
. "$(dirname "$0")/common.sh"

# poke FILE OFFSET TEXT: overwrites bytes of a file below /var; TEXT as printf takes it.
poke() {
  # shellcheck disable=SC2059
  printf "$3" | dd of="/var/$1" bs=1 seek="$2" conv=notrunc 2>/dev/null
}

# poke_text DIR OFFSET TEXT: puts a text into the object's header.
poke_text() {
  poke "$1/property.conf" $((4 + $2)) "$3\\0"
}

# poke_record DIR POSITION OFFSET BYTES: overwrites a part of a parameter's record.
poke_record() {
  poke "$1/property.conf" $((188 + 124 * $2 + $3)) "$4"
}

# fill COUNT: that many x.
fill() {
  head -c "$1" /dev/zero | tr '\0' x
}

# A root with a single object, a table that may grow, and a fixed one. Types are those of texts.
make_store() {
  local dir
  cat >/var/regex_file <<'END_FILTERS'
config filter 'filter1'
	option value '^[a-z]*$'
config filter 'filter2'
	option value '(['
END_FILTERS
  make_object R Name=box TableNumberOfEntries=2 FixedNumberOfEntries=1
  make_object R/Single First=one Second= Third=three
  make_object R/Table
  poke_header R/Table 8 10
  poke_header R/Table 5 05
  poke_text R/Table 76 'R/TableNumberOfEntries'
  for dir in R/Table/0 R/Table/1 R/Table/2; do
    make_object $dir Alias=new Enable=1
    make_object $dir/Sub Detail=deep InnerNumberOfEntries=0
    make_object $dir/Sub/Inner
    poke_header $dir/Sub/Inner 8 10
    poke_header $dir/Sub/Inner 5 09
    poke_text $dir/Sub/Inner 76 'Sub/InnerNumberOfEntries'
    make_object $dir/Sub/Inner/0 Deepest=
  done
  make_object R/Fixed
  poke_text R/Fixed 76 'R/FixedNumberOfEntries'
  make_object R/Fixed/1 Name=port
  find /var/R -name property.conf | while read -r file; do
    count=$(($(od -An -tu1 -j 2 -N 2 "$file" | awk '{print $1 * 256 + $2 - 184}') / 124))
    for ((i = 0; i < count; ++i)); do
      poke "${file#/var/}" $((188 + 124 * i)) '\x01'
    done
  done
  poke_record R/Single 0 116 '\0\0\0\x01'
  tar -C /var -cf /var/store.tar R regex_file
}

reset_store() {
  rm -rf /var/R /var/regex_file
  tar -C /var -xf /var/store.tar
}

# Content, inode, size, mode, time of change of all that the store has.
fingerprint() {
  find /var/R /var/regex_file -printf '%p %i %s %m %y %T@ %C@\n' | sort
  find /var/R /var/regex_file -type f -size -32768k -print0 | sort -z | xargs -0 sha256sum
}

# findings: what the last run found, PATH: IDENTIFIER each, separated by commas.
findings() {
  sed 's/^\(.*\): \([a-z-]*\): .*/\1: \2/' /var/out | paste -sd,
}

# finds WHAT FINDINGS EXIT-CODE [ARGUMENT...]: what a check of the store as it stands finds, and that
# it changes nothing.
finds() {
  local what=$1 wanted=$2 code=$3 before
  shift 3
  before=$(fingerprint)
  run check "$@"
  expect "$what" "$(findings)/$err/$status" "$wanted//$code"
  expect "$what: nothing changed" "$([ "$(fingerprint)" = "$before" ] && echo same)" "same"
}

# zrcfg apply --exact: what a new instance brings along from its source.
. "$(dirname "$0")/common.sh"

# make_table DIR COUNTER [ACCESS]: room for nine instances.
make_table() {
  make_object "$1"
  poke_header "$1" 5 09
  poke_header "$1" 8 "${3:-1f}"
  printf 'x/%s' "$2" | dd of="/var/$1/property.conf" bs=1 seek=$((4 + 76)) conv=notrunc 2>/dev/null
}

# The template of T holds an instance of S, and that one of U; in the fixed table F each holds one of G.
make_object R TCount=0
make_table R/T TCount
make_object R/T/0 SCount=1
make_table R/T/0/S SCount
for number in 0 1; do
  make_object R/T/0/S/$number UCount=1
  make_table R/T/0/S/$number/U UCount
  make_object R/T/0/S/$number/U/0 Deep=d
  make_object R/T/0/S/$number/U/1 Deep=e
done
make_table R/F none 0f
for number in 3 4; do
  make_object R/F/$number GCount=1
  make_table R/F/$number/G GCount
  make_object R/F/$number/G/0 Name=new
  make_object R/F/$number/G/1 Name=g
done
text=/var/text

tree_sum() { (cd /var && find R | sort && find R -type f | sort | xargs md5sum); }
instances() { (cd /var && find R -type d -name '[1-9]*' ! -path '*/0/*' | sort | tr '\n' ' '); }

# expect_exact WHAT URL LINES INSTANCES: a dry run tells what is done, which is all there is to do.
expect_exact() {
  local before told
  before=$(tree_sum)
  run apply --exact "$2" --dry-run --verbose $text
  told=${out//would be written/written}
  expect "$1: dry run" "$(tree_sum)/$err/$status" "$before//0"
  run apply --exact "$2" --verbose $text
  expect "$1" "$(grep exact <<<"$out")/$err/$status" "$3//0"
  expect "$1: as the dry run told" "$out" "$told"
  expect "$1: instances" "$(instances)" "$4 "
  run export "$2"
  before=$(tree_sum)/$out
  run apply --exact "$2" --verbose $text
  expect "$1: nothing more to delete" "$(grep -c exact <<<"$out")/$err/$status" "0//0"
  run export "$2"
  expect "$1: nothing changes any more" "$(tree_sum)/$out" "$before"
}

fixed='R/F/3 R/F/3/G/1 R/F/4 R/F/4/G/1'
printf '%s\n' '+R.T.2.' >$text
expect_exact "an instance of the template" R.T 'exact: -R.T.2.S.1.: written' "$fixed R/T/2"
run get R.TCount R.T.2.SCount
expect "the counters follow" "$out" "$(printf '1\n0')"

printf '%s\n' '+R.T.2.' '+R.T.3.' '+R.T.3.S.1.' '+R.T.3.S.5.' '+R.T.3.S.5.U.2.' 'R.T.3.S.5.U.2.Deep=mine' \
  'R.T.3.SCount=7' >$text
expect_exact "nested instances" R.T "$(printf '%s\n' 'exact: -R.T.3.S.1.U.1.: written' \
  'exact: -R.T.3.S.5.U.1.: written')" "$fixed R/T/2 R/T/3 R/T/3/S/1 R/T/3/S/5 R/T/3/S/5/U/2"
run get R.TCount R.T.3.SCount R.T.3.S.1.UCount R.T.3.S.5.UCount R.T.3.S.5.U.2.Deep
expect "counters of the text stand" "$out" "$(printf '2\n7\n0\n1\nmine')"

# An export puts back what it was taken from.
run export R.T /var/taken
run del R.T.3
cp /var/taken $text
expect_exact "an export" R.T "$(printf '%s\n' 'exact: -R.T.3.S.1.U.1.: written' \
  'exact: -R.T.3.S.5.U.1.: written')" "$fixed R/T/2 R/T/3 R/T/3/S/1 R/T/3/S/5 R/T/3/S/5/U/2"
run export R.T
expect "and exports the same" "$out" "$(cat /var/taken)"

# Only below the object that is to be exact; without a template the lowest instance that stays is copied.
printf '%s\n' '+R.T.4.' '+R.F.2.' '+R.F.4.' '+R.F.4.G.1.' '+R.F.7.' '+R.F.7.G.1.' >$text
expect_exact "outside" R.F "$(printf '%s\n' 'exact: -R.F.3.: written' 'exact: -R.F.2.G.1.: written')" \
  'R/F/2 R/F/4 R/F/4/G/1 R/F/7 R/F/7/G/1 R/T/2 R/T/3 R/T/3/S/1 R/T/3/S/5 R/T/3/S/5/U/2 R/T/4 R/T/4/S/1 R/T/4/S/1/U/1'
printf '%s\n' '+R.F.9.' >$text
before=$(tree_sum)
run apply --exact R.F $text
expect "none stays that could be copied" "$err/$status" "$(printf '%s\n' \
  'zrcfg: line 1: apply: R.F.9.: no instance to copy (code 2)' "zrcfg: apply: $text: nothing was changed")/1"
expect "so that none is deleted" "$(tree_sum)" "$before"

# A text may delete an instance and create it again; what is below goes with the first.
printf '%s\n' '-R.T.3.S.1.' '-R.T.3.' '+R.T.3.' >$text
run apply --exact R.T.3. --verbose $text
expect "deleted and created again" "$out/$err/$status" "$(printf '%s\n' '1: -R.T.3.S.1.: written' \
  '2: -R.T.3.: written' '3: +R.T.3.: written' 'exact: -R.T.3.S.1.: written' \
  '4 lines: 4 written, 0 held back, 0 already there, 0 refused')//0"
expect "only it is there" "$(instances)" "R/F/2 R/F/4 R/F/4/G/1 R/F/7 R/F/7/G/1 R/T/2 R/T/3 R/T/4 R/T/4/S/1 R/T/4/S/1/U/1 "

# Values in what will be deleted are refused before anything is changed.
printf '%s\n' '+R.T.2.' '+R.T.6.' 'R.T.6.S.1.UCount=1' >$text
before=$(tree_sum)
run apply --exact R.T $text
expect "a value of what goes" "$err/$status" "$(printf '%s\n' \
  'zrcfg: line 3: apply: R.T.6.S.1.UCount: no such object (code 1)' \
  "zrcfg: apply: $text: nothing was changed")/1"
expect "nothing was" "$(tree_sum)" "$before"

# An instance that the mode holds back brings nothing along; what stays for the class of its own table is
# told.
poke_header R/T 8 12
printf '%s\n' '+R.T.2.' '+R.T.3.' '+R.T.4.' '+R.T.4.S.1.' '+R.T.4.S.1.U.1.' '+R.T.5.' >$text
run apply --exact R.T --mode 1 $text
expect "held back" "$out/$err/$status" "6 lines: 0 written, 1 held back, 5 already there, 0 refused//0"
poke_header R/T 8 1f
poke_header R/T/0/S 8 12
run apply --exact R.T --mode 1 --verbose $text
expect "kept by its class" "$(grep exact <<<"$out")/$status" "exact: -R.T.5.S.1.: held back by its key class/0"
expect "and there" "$(instances)" \
  "R/F/2 R/F/4 R/F/4/G/1 R/F/7 R/F/7/G/1 R/T/2 R/T/3 R/T/4 R/T/4/S/1 R/T/4/S/1/U/1 R/T/5 R/T/5/S/1 R/T/5/S/1/U/1 "

# A new instance in a place that the template had until now is looked through once.
printf '%s\n' '-R.T.0.S.1.' '+R.T.8.' '+R.T.8.S.1.' >$text
run apply --exact R.T --verbose $text
expect "changed template" "$out/$err/$status" "$(printf '%s\n' '1: -R.T.0.S.1.: written' '2: +R.T.8.: written' \
  '3: +R.T.8.S.1.: written' 'exact: -R.T.2.: written' 'exact: -R.T.3.: written' 'exact: -R.T.4.: written' \
  'exact: -R.T.5.: written' 'exact: -R.T.8.S.1.U.1.: written' \
  '8 lines: 8 written, 0 held back, 0 already there, 0 refused')//0"
finish

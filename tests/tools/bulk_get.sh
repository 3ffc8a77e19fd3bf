# zrcfg get with several parameters: one read of each object
. "$(dirname "$0")/common.sh"
make_object A First=one Second= Third=three
make_object B First=1 Second=2

# opens FILE: how often the last command opened it for reading
trace() {
  ZRLOG_LEVEL=7 "$zrcfg" "$@" >/var/out 2>/var/log
  status=$?
  out=$(cat /var/out)
}

run get A.Third B.Second A.First B.First A.Second
expect "order of the arguments" "$out/$err/$status" "$(printf 'three\n2\none\n1\n')//0"
trace get A.Third B.Second A.First B.First A.Second
expect "one read an object" "$(grep -c 'property_file = ' /var/log)" "2"
run get A.First A.First
expect "twice the same" "$out" "$(printf 'one\none')"
run get A.First A.None A.Third B.None C.First
expect "the others are printed" "$out/$status" "$(printf 'one\nthree')/1"
expect "each refusal is reported" "$err" "$(printf '%s\n' \
  'zrcfg: get: A.None: no such parameter (code 5)' \
  'zrcfg: get: B.None: no such parameter (code 5)' \
  'zrcfg: get: C.First: no such object (code 9)')"
run get A.None A.None2
expect "only unknown names" "$out/$status/$(wc -l </var/err)" "/1/2"

mapfile -t many < <(for i in $(seq 1100); do echo A.First; echo A.Third; done)
trace get "${many[@]}"
expect "2200 names" "$status/$(wc -l </var/out)/$(sort /var/out | uniq -c | xargs)" \
  "0/2200/1100 one 1100 three"
expect "1001 names a read" "$(grep -c 'property_file = ' /var/log)" "3"
finish

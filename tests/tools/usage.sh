# zrcfg: options and usage
. "$(dirname "$0")/common.sh"
make_object A First=one
hint="Try 'zrcfg --help'."

run
expect "no command" "$err/$status" "$(printf 'zrcfg: no command given\n%s/2' "$hint")"
run fly
expect "unknown command" "$err/$status" "$(printf "zrcfg: no command 'fly'\n%s/2" "$hint")"
run get
expect "no argument" "$err/$status" "$(printf 'zrcfg: get takes PATH...\n%s/2' "$hint")"
run --wings
expect "unknown option" "$status" "2"
for number in 1 5 9; do
  run --timeout $number get A.First
  expect "time-out $number" "$out/$err/$status" \
    "$(printf '/zrcfg: --timeout %s: 1 to 9 would not try at all; use 0 for one try\n%s/2' $number "$hint")"
done
for text in -3 x 10x '' 99999999999; do
  run --timeout "$text" get A.First
  expect "time-out '$text'" "$err/$status" \
    "$(printf 'zrcfg: --timeout %s: not -2, -1, 0 or a number of milliseconds\n%s/2' "$text" "$hint")"
done
for number in -2 -1 0 10 3000; do
  run --timeout $number get A.First
  expect "time-out $number before the command" "$out/$status" "one/0"
  run get A.First -t $number
  expect "time-out $number behind it" "$out/$status" "one/0"
done
run --help
expect "help" "$status/$(printf %s "$out" | head -1)" "0/Reads and changes the configuration store below /var/."
for command in get set list tree attr object wan add del exists encode decode; do
  expect "help names $command" "$(printf %s "$out" | grep -c "zrcfg \[OPTION...\] $command ")" "1"
done
run set --help
expect "help of a command" "$(printf %s "$out" | grep -c 'zrcfg \[OPTION')/$status" "1/0"
run --version
expect "version" "$(printf %s "$out" | grep -cE '^zrcfg [0-9]+\.[0-9]+\.[0-9]+$')/$status" "1/0"
finish

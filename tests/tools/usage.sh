# zrcfg: options and usage
. "$(dirname "$0")/common.sh"
make_object A First=one

run
expect "no command" "$err/$status" "zrcfg: no command given; 'zrcfg help' lists them/2"
run fly
expect "unknown command" "$err/$status" "zrcfg: no command 'fly'; 'zrcfg help' lists them/2"
run get
expect "no argument" "$err/$status" "zrcfg: get: takes PATH.../2"
run --wings
expect "unknown option" "$err/$status" "zrcfg: --wings: no such option/2"
run get --wings A.First
expect "unknown option of a command" "$err/$status" "zrcfg: get: --wings: no such option/2"
run get A.First --timeout
expect "option without its value" "$err/$status" "zrcfg: get: --timeout: needs a value/2"
run get --static A.First
expect "option of another command" "$out/$err/$status" "/zrcfg: get: --static: not an option of this command/2"
run --static get A.First
expect "before the command likewise" "$out/$status" "/2"
for number in 1 5 9; do
  run --timeout $number get A.First
  expect "time-out $number" "$out/$err/$status" \
    "/zrcfg: --timeout $number: 1 to 9 would not try at all; use 0 for one try/2"
done
for text in -3 x 10x '' 99999999999; do
  run --timeout "$text" get A.First
  expect "time-out '$text'" "$err/$status" \
    "zrcfg: --timeout $text: not -2, -1, 0 or a number of milliseconds/2"
done
for number in -2 -1 0 10 3000; do
  run --timeout $number get A.First
  expect "time-out $number before the command" "$out/$status" "one/0"
  run get A.First -t $number
  expect "time-out $number behind it" "$out/$status" "one/0"
done
run --help
expect "help" "$status/$(printf %s "$out" | head -1)" "0/Reads and changes the configuration store below /var/."
help=$out
run help
expect "the same by its command" "$out" "$help"
for command in get set list tree attr object wan add del exists export apply dump lock islock encode decode \
  batch shell help; do
  expect "help names $command" "$(printf %s "$help" | grep -c "zrcfg $command \[OPTION...\]")" "1"
  run help $command
  one=$out
  expect "help of $command" "$(printf %s "$one" | grep -c 'zrcfg .* \[OPTION')/$status" "1/0"
  run $command --help
  expect "the same by its option" "$out/$status" "$one/0"
done
run help fly
expect "help of no command" "$err/$status" "zrcfg: help: no command 'fly'/2"
run --version
expect "version" "$(printf %s "$out" | grep -cE '^zrcfg [0-9]+\.[0-9]+\.[0-9]+$')/$status" "1/0"
finish

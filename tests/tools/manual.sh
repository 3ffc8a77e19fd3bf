# The manual pages name every command and option; with a store builder the examples are run too.
# Arguments: the program, and for the examples the store builder.
. "$(dirname "$0")/common.sh"
here=$(readlink -f "$(dirname "$0")")
page=$here/../../man/zrcfg.1
page_of_builder=$here/../../man/zrcfg-mkstore.1
example=$here/../../examples/home-gateway
plain=$(sed 's/\\-/-/g; s/\\f[BIR]//g' "$page")

# section NAME: that section of the page.
section() {
  sed -n "/^\.SH $1\$/,/^\.SH/p" <<<"$plain"
}

commands=$("$zrcfg" help | sed -n 's/^  zrcfg \([a-z]*\) .*/\1/p')
expect "commands" "$(wc -w <<<"$commands" | tr -d ' ')" "$(section SYNOPSIS | grep -oE '^zrcfg [a-z]+' | sort -u | grep -vc 'zrcfg complete')"
for command in $commands complete; do
  expect "synopsis of $command" "$(section SYNOPSIS | grep -cE "^zrcfg $command( |\$)" | sed 's/[1-9]/yes/')" "yes"
  expect "description of $command" "$(section COMMANDS | grep -cx "\.B $command")" "1"
done
# Every option, with its letter, where its own command's help has it.
options=$(for command in $commands; do "$zrcfg" help "$command"; done |
  sed -n '/^Options:/,/--version/s/^  \(-., \|    \)\(--[a-z-]*\) .*/\1\2/p' | sed 's/^ *//' | sort -u)
expect "options" "$(wc -l <<<"$options" | tr -d ' ')" "$(section OPTIONS | grep -cE '^(-., )?--[a-z-]+')"
while read -r option; do
  expect "description of $option" "$(section OPTIONS | grep -cE -- "^$option( [A-Z]+)?\$")" "1"
done <<<"$options"
for code in 0 1 2 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 -1; do
  expect "code $code" "$(section ERRORS | grep -cE "^(.*, )?$code(,.*)?	T" )" "$([ "$code" = 0 ] && echo 0 || echo 1)"
done

if [ $# -gt 1 ]; then
  "$2" --model "$example.xml" --instances "$example.instances" --values "$example.values" \
    --attributes "$example.attributes" /var/store >/dev/null
  expect "store built" "$?" "0"
  mv /var/store/* /var/
  mkdir /var/bin
  ln -s "$(readlink -f "$zrcfg")" /var/bin/zrcfg
  cd /var
  seen=$(PATH=/var/bin:$PATH python3 "$here/manual_examples.py" "$page")
  number=$(grep -c '^\$ ' "$page")
  seen_options=$("$2" --help | grep -oE -- '--[a-z-]+' | sort -u)
  expect "the builder's options" "$seen_options" \
    "$(sed 's/\\-/-/g; s/\\f[BIR]//g' "$page_of_builder" | sed -n '/^\.SH OPTIONS$/,$p' |
      grep -oE -- '^(-h, )?--[a-z-]+' | grep -oE -- '--.*' | sort -u)"
  expect "the examples" "$seen" "$number of $number examples as in the page"
  for page in "$here"/../../man/zrcfg-{check,watch,snapshot,diff}.1; do
    seen=$(PATH=/var/bin:$PATH python3 "$here/manual_examples.py" "$page")
    number=$(grep -c '^\$ ' "$page")
    expect "the examples of $(basename "$page")" "$seen" "$number of $number examples as in the page"
  done
fi
finish

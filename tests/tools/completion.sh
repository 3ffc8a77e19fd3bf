# zrcfg complete, and the completion of bash
. "$(dirname "$0")/common.sh"
export LC_ALL=C
file=$(dirname "$0")/../../completion/zrcfg.bash
make_object R Plain=x Place= Other=
make_object R/T
make_object R/T/0 Name=new
make_object R/T/1 Name=one Number=
make_object R/T/12 Name=twelve
make_object R/Tail Secret=
make_object R/Third
make_object S Param=
mkdir /var/run /var/log
set_hidden() {
  printf '\x04' | dd of="/var/$1/property.conf" bs=1 seek=$((188 + 5)) conv=notrunc 2>/dev/null
}
set_hidden R/Tail

# completes WHAT WANTED WORD...: the candidates for the last word, on one line.
completes() {
  local what=$1 wanted=$2
  shift 2
  run complete -- "$@"
  expect "$what" "$(sort /var/out | paste -sd" ")/$err/$status" "$wanted//0"
}

completes "the beginning of a command" "encode exists export" e
completes "no such command" "" nothing
completes "commands behind an option" "decode del diff dump" --json d
completes "and behind one with a value" "get" --timeout 20 g
completes "its value in the same word" "get" -t20 g
run complete -- ''
expect "all commands" "$(sort /var/out)" "$("$zrcfg" help | sed -n 's/^  zrcfg \([a-z]*\) .*/\1/p' | sort)"
completes "common options" "--help" --h
completes "options of a command" "--dry-run" apply --d
completes "only its own" "" get --d
completes "options behind arguments" "--names --null" get R.Plain --n
completes "none behind --" "" get -- --n
completes "values of an option" "1 2 3 all" apply --mode ''
completes "of its letter" "all" apply -m a
completes "time-outs" "-1 -2" list -t -
completes "objects for --exact" "R.T. R.Tail. R.Third." apply --exact R.T

completes "roots of the store" "R. S." get ''
completes "objects and parameters" "R.Place R.Plain" get R.P
completes "behind a dot" "R.Other R.Place R.Plain R.T. R.Tail. R.Third." get R.
completes "instances" "R.T.1. R.T.12." get R.T.
completes "their parameters" "R.T.1.Name R.T.1.Number" get R.T.1.N
completes "the template, when asked for" "R.T.0.Name" get R.T.0.
completes "hidden ones too" "R.Tail.Secret" get R.Tail.
completes "a second argument" "S.Param" get R.Plain S.
completes "nothing there" "" get X.
completes "too long" "" get "$(printf 'x.%.0s' {1..300})"
completes "parameters to set" "R.Place= R.Plain=" set R.P
completes "objects on the way" "R.Other= R.Place= R.Plain= R.T. R.Tail. R.Third." set R.
completes "no values" "" set R.Plain=
for command in list tree watch del add exists export wan lock islock dump; do
  completes "objects for $command" "R.T. R.Tail. R.Third." $command R.
done
completes "no object in place of a file" "" snapshot R.
completes "the object behind a file" "R.T. R.Tail. R.Third." snapshot FILE R.
completes "the object behind two" "R.T. R.Tail. R.Third." diff FILE - R.
completes "several objects" "R.T.1. R.T.12." list S R. R.T.1
completes "one only" "" dump R R.
completes "attr" "get" attr g
completes "a parameter" "R.Place R.Plain" attr get R.P
completes "its attributes" "noti noti_rw" attr get R.Plain not
completes "to set" "noti= noti_rw=" attr set R.Plain not
completes "an object" "R.T. R.Tail. R.Third." object get R.
completes "its attributes" "key" object get R. ke
completes "to set" "key=" object set R. ke
completes "commands to be helped with" "get" help g
completes "not a command's command" "" lock R -- l
completes "files are not its business" "" apply x
flock /var/R/property.conf "$zrcfg" complete -- get R.P >/var/out
expect "a locked object is left out" "$?/$(cat /var/out)" "0/"
run complete
expect "no word" "$err/$status" "zrcfg: complete: takes -- WORD.../2"

# Bash: words as it splits them, and the candidates as it takes them.
. "$file"
expect "bash knows the function" "$(complete -p zrcfg)" "complete -F _zrcfg zrcfg"
# in_bash LINE WORD...: completes a line that bash has split into these words.
in_bash() {
  COMP_LINE=$1 COMP_POINT=${#1}
  shift
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=(old)
  _zrcfg "$zrcfg" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
  out="${COMPREPLY[*]}"
}
in_bash "zrcfg exi" zrcfg exi
expect "bash: a command" "$out" "exists"
in_bash "zrcfg get R.P" zrcfg get R.P
expect "bash: paths" "$out" "R.Plain R.Place"
in_bash "zrcfg  get   " zrcfg get ""
expect "bash: an empty word" "$(xargs -n1 <<<"$out" | sort | xargs)" "R. S."
in_bash "zrcfg set R.Pla" zrcfg set R.Pla
expect "bash: assignments" "$out" "R.Plain= R.Place="
in_bash "zrcfg set R.Plain=" zrcfg set R.Plain "="
expect "bash: no value" "$out" ""
in_bash "zrcfg set R.Plain=a=b R.T.1.Na" zrcfg set R.Plain = a = b R.T.1.Na
expect "bash: behind an assignment" "$out" "R.T.1.Name="
in_bash "zrcfg set R.Plain= R.T.1.Na" zrcfg set R.Plain = R.T.1.Na
expect "bash: behind an empty one" "$out" "R.T.1.Name="
in_bash "zrcfg apply --exact=R.T.1" zrcfg apply --exact = R.T.1
expect "bash: an option's value in the same word" "$out" "R.T.1. R.T.12."
COMP_WORDS=(zrcfg get R.P R.T) COMP_CWORD=2 COMP_LINE="zrcfg get R.P R.T" COMP_POINT=13
_zrcfg "$zrcfg" R.P get
expect "bash: the word that the cursor is in" "${COMPREPLY[*]}" "R.Plain R.Place"
touch /var/first.config /var/second.config
in_bash "zrcfg apply /var/f" zrcfg apply /var/f
expect "bash: files" "$out" "/var/first.config"
in_bash "zrcfg get /var/f" zrcfg get /var/f
expect "bash: not for others" "$out" ""
finish

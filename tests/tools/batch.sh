# zrcfg batch
. "$(dirname "$0")/common.sh"
make_object A First=one Second= Third=x
make_object B X=1 Y=2
text=/var/commands

# batch [OPTION...]: runs what standard input has as a file of commands.
batch() {
  cat >$text
  run batch "$@" $text
}

batch <<'END'
# a comment, an empty line, blanks, and no line feed at the end

  get A.First	B.X   # and a comment behind a command
set A.First=two
END
expect "commands of a file" "$out/$err/$status" "$(printf 'one\n1')//0"
printf 'get A.First\nget B.X' >$text
run batch $text
expect "last line without a line feed" "$out/$err/$status" "$(printf 'two\n1')//0"
"$zrcfg" batch <$text >/var/out
expect "standard input" "$?/$(cat /var/out)" "0/$(printf 'two\n1')"
"$zrcfg" batch - <$text >/var/out
expect "standard input by its name" "$?/$(cat /var/out)" "0/$(printf 'two\n1')"
: >$text
run batch $text
expect "nothing to do" "$out/$err/$status" "//0"

# A failure names its line, and nothing behind it runs.
batch <<'END'
get B.X

get B.None
set B.X=9
END
expect "stops at the first failure" "$out/$err/$status" "1/zrcfg: line 3: get: B.None: no such parameter (code 5)/1"
run get B.X
expect "the rest was not run" "$out" "1"
batch --keep-going <<'END'
get B.None
fly
set B.X
set B.X=9
list C
get "B.X
get B.X
END
expect "goes on when told to" "$out/$err/$status" "9/$(printf '%s\n' \
  'zrcfg: line 1: get: B.None: no such parameter (code 5)' \
  "zrcfg: line 2: no command 'fly'; 'zrcfg help' lists them" \
  'zrcfg: line 3: set: B.X: not PATH=VALUE' \
  'zrcfg: line 5: list: C.: no such object (code 9)' \
  'zrcfg: line 6: the line ends inside double quotes')/1"
batch -k <<'END'
fly
get B.None
END
expect "the exit code is the first failure's" "$status" "2"
printf 'get B.X\n\nexists B\nexists C\nfly' | "$zrcfg" batch -k >/var/both 2>&1
expect "output and errors keep their order" "$(cat /var/both)" "$(printf '%s\n' 9 \
  'zrcfg: line 4: exists: C.: no such object, or its URL is too long (code 1)' \
  "zrcfg: line 5: no command 'fly'; 'zrcfg help' lists them")"
printf '%s\n' 'get B.X B.None B.Y' | "$zrcfg" batch -k >/var/both 2>&1
expect "also within a command" "$(cat /var/both)" \
  "$(printf '%s\n' 9 'zrcfg: line 1: get: B.None: no such parameter (code 5)' 2)"
batch <<'END'
lock B -- sh -c 'exit 3'
END
expect "a status without words" "$err/$status" "zrcfg: line 1: lock: exit code 3/3"
printf '+B.1.\nB.X\n' >/var/config
batch <<'END'
get B.X
apply /var/config
END
expect "a file that a line names has lines of its own" "$out/$err/$status" "9/$(printf '%s\n' \
  'zrcfg: line 2: line 2: apply: not -INSTANCE-URL, +INSTANCE-URL or PATH=VALUE' \
  'zrcfg: line 2: apply: /var/config: nothing was changed')/1"
printf 'B.X=3\n' >/var/config
batch -k <<'END'
apply /var/config
get B.None
END
expect "and its own only" "$err" "zrcfg: line 2: get: B.None: no such parameter (code 5)"

# Options: those of a line count for that line, the time-out of batch for all.
batch <<'END'
get --names B.X
get B.X
--timeout 0 get --json B.X
--version
END
expect "options of a line" "$(printf '%s\n' "$out" | head -2)/$status" "$(printf 'B.X=3\n3')/0"
mkfifo /var/release
flock /var/B/property.conf sh -c 'echo held >/var/held; read line </var/release' &
until [ -e /var/held ]; do sleep 0.01; done
before=$(date +%s%N)
batch --keep-going --timeout 0 <<'END'
get B.X
get B.Y --timeout 500
get B.X --timeout -2
END
expect "time-out of all, and of one" "$out/$err/$status" "3/$(printf '%s\n' \
  'zrcfg: line 1: get: B.X: lock not obtained in time (code 9)' \
  'zrcfg: line 2: get: B.Y: lock not obtained in time (code 9)')/1"
expect "the line's own was waited for" "$((($(date +%s%N) - before) / 1000000 >= 450))" "1"
echo >/var/release
wait
run batch --json $text
expect "an option of another command" "$err/$status" "zrcfg: batch: --json: not an option of this command/2"

# Quoting.
words() {
  printf 'encode --hex %s\n' "$1" >$text
  run batch $text
}
hex() {
  local word
  for word in "$@"; do
    printf %s "$word" | od -An -v -tx1 | tr -d ' \n' | tr a-f A-F
    echo
  done
}
# quoted TEXT WORD...: TEXT stands for these words.
quoted() {
  local line=$1
  shift
  words "$line"
  expect "words of [$line]" "$out/$err/$status" "$(hex "$@")//0"
}
quoted 'a b' a b
quoted '  a		b  ' a b
quoted "'a b'" 'a b'
quoted "'a \"\\n b'" 'a "\n b'
quoted '"a b"' 'a b'
quoted '"it'"'"'s"' "it's"
quoted '"\\ \" \t \r \n \x01\x7f\xFF"' "$(printf '\\ " \t \r \n \001\177\377')"
quoted 'a\ b \" \'"'"' \\ \# \x41' 'a b' '"' "'" '\' '#' x41
quoted "a'b c'\"d e\"f" 'ab cd ef'
quoted "'' \"\" x" '' '' x
quoted 'a#b c#' 'a#b' 'c#'
quoted 'a # b' a
quoted "'#' \"#\"" '#' '#'
quoted 'a=b==c =' 'a=b==c' =
quoted '`x` $HOME $(x) * ~ ; | & < > ! {}' '`x`' '$HOME' '$(x)' '*' '~' ';' '|' '&' '<' '>' '!' '{}'
quoted "$(printf "'\001\r\033' \"\177\"")" "$(printf '\001\r\033')" "$(printf '\177')"
quoted "$(printf '\303\244\377')" "$(printf '\303\244\377')"
quoted "-- '--hex'" '--hex'

# wrong TEXT REASON: no command.
wrong() {
  words "$1"
  expect "[$1] is wrong" "$out/$err/$status" "/zrcfg: line 1: $2/2"
}
escapes='\ in double quotes is followed by neither \, ", t, r, n nor xHH (01 to ff)'
wrong '"a' "the line ends inside double quotes"
wrong "a 'b" "the line ends inside single quotes"
wrong '"a\"' "the line ends inside double quotes"
wrong 'a\' 'the line ends with a \'
for escape in '\q' '\x' '\x4' '\x4g' '\x00' "\\'" '\'; do
  wrong "\"$escape" "$escapes"
done
wrong "$(printf 'a\r')" "a control character outside quotes"
wrong "$(printf 'a\001b')" "a control character outside quotes"
wrong "$(printf 'a\\\033')" "a control character outside quotes"
printf 'get B.X\0B.Y\nget B.X' >$text
run batch -k $text
expect "a zero byte" "$out/$err/$status" "3/zrcfg: line 1: a zero byte in the line/2"

# Values come out as they went in, and a line feed never makes a second command.
batch <<'END'
set 'A.First= a = b\ "c"' A.Second="tab \t and \x01\x7f" A.Third=it\'s
END
run get A.First A.Second A.Third
expect "values" "$out" "$(printf ' a = b\\ "c"\ntab \t and \001\177\nit'"'"'s')"
batch -k <<'END'
set "A.First=x\nset B.X=7"
set "A.First=x\x0aset B.X=7"
set 'A.First=x
set B.Y=7'
END
expect "line feeds" "$err/$status" "$(printf '%s\n' \
  'zrcfg: line 1: set: A.First: the value holds a line feed, which cannot be stored (code 7)' \
  'zrcfg: line 2: set: A.First: the value holds a line feed, which cannot be stored (code 7)' \
  'zrcfg: line 3: the line ends inside single quotes' \
  'zrcfg: line 4: the line ends inside single quotes')/1"
run get A.First B.X B.Y
expect "nothing was set" "$out" "$(printf ' a = b\\ "c"\n3\n2')"
run get --shell A.First
eval "$out"
printf "set 'A.First=%s'\n" "it'\\''s $A_First" >$text
run batch $text
run get A.First
expect "a quote as shells write it" "$out" "it's  a = b\\ \"c\""

# Files that cannot be read, and what would read the commands.
run batch /var/none
expect "no such file" "$err/$status" "zrcfg: batch: /var/none: cannot be read: No such file or directory/1"
run batch /var
expect "a directory" "$err/$status" "zrcfg: batch: /var: cannot be read: Is a directory/1"
run batch a b
expect "two files" "$err/$status" "zrcfg: batch: takes one file/2"
"$zrcfg" batch <&- 2>/var/err
expect "no standard input" "$?/$(cat /var/err)" \
  "1/zrcfg: batch: standard input: cannot be read: Bad file descriptor"
batch -k <<'END'
batch /var/commands
shell
END
expect "no script inside a script" "$err/$status" "$(printf '%s\n' \
  'zrcfg: line 1: batch: not inside another batch or shell' \
  'zrcfg: line 2: shell: not inside another batch or shell')/2"
printf '%s\n' encode 'decode --hex' 'apply -' 'lock B -- cat' 'get B.X' | "$zrcfg" batch -k >/var/out 2>/var/err
expect "the commands are nobody else's input" "$?/$(cat /var/out)/$(cat /var/err)" "1/3/$(printf '%s\n' \
  'zrcfg: line 1: encode: standard input: is where the commands come from' \
  'zrcfg: line 2: decode: standard input: is where the commands come from' \
  'zrcfg: line 3: apply: standard input: is where the commands come from')"
printf 'encode\nget B.X\n' >$text
printf abc | "$zrcfg" batch $text >/var/out
expect "a file leaves standard input to its commands" "$?/$(cat /var/out)" "0/$(printf 'YWJj\n3')"

# Every line's output is there before the next line is asked for.
coproc { "$zrcfg" batch; }
echo 'get B.X' >&"${COPROC[1]}"
read -r -t 20 answer <&"${COPROC[0]}"
expect "an answer at once" "$answer" "3"
echo 'get B.Y' >&"${COPROC[1]}"
read -r -t 20 answer <&"${COPROC[0]}"
expect "and another" "$answer" "2"
exec {COPROC[1]}>&-
wait
printf 'get B.X\nset B.X=4\n' >$text
"$zrcfg" batch $text >/dev/full 2>/var/err
expect "output that is lost is a failure" "$?/$(cat /var/err)" "1/zrcfg: line 1: get: cannot write to standard output"
run get B.X
expect "and ends the batch" "$out" "3"
finish

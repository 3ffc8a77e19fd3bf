# zrcfg shell: from a pipe, on a terminal with line editing, and on one without
. "$(dirname "$0")/common.sh"
terminal=$(dirname "$0")/terminal.py
make_object A First=one Second=two Firm=three
make_object A/1 X=1
make_object A/Sub Y=2
make_object Other X=1
export TERM=dumb HOME=/var/home ZRCFG_HISTORY=/var/history
mkdir /var/home

# From a pipe: as a batch that goes on, without prompts.
printf '%s\n' 'get A.First' 'get A.None' '"' encode 'lock A -- cat' '' 'get A.Second' | \
  "$zrcfg" shell >/var/both 2>&1
expect "from a pipe" "$?/$(cat /var/both)" "0/$(printf '%s\n' one \
  'zrcfg: get: A.None: no such parameter (code 5)' \
  'zrcfg: the line ends inside double quotes' \
  'zrcfg: encode: standard input: is where the commands come from' two)"
for word in exit quit '	exit '; do
  printf '%s\n' 'get A.First' "$word" 'get A.Second' | "$zrcfg" shell >/var/both 2>&1
  expect "'$word' leaves" "$?/$(cat /var/both)" "0/one"
done
printf '%s\n' exi 'exit now' 'get A.First' | "$zrcfg" shell >/var/both 2>&1
expect "other words do not" "$?/$(cat /var/both)" "0/$(printf '%s\n' \
  "zrcfg: no command 'exi'; 'zrcfg help' lists them" \
  "zrcfg: no command 'exit'; 'zrcfg help' lists them" one)"
printf 'get A.First\nshell' | "$zrcfg" shell --timeout 50 >/var/both 2>&1
expect "no shell inside a shell" "$?/$(cat /var/both)" \
  "0/$(printf 'one\nzrcfg: shell: not inside another batch or shell')"
run shell A
expect "takes no arguments" "$err/$status" "zrcfg: shell: takes no arguments/2"
expect "no history of that" "$(ls /var/history /var/home 2>/dev/null)" "/var/home:"

# on_terminal WHAT: the steps of standard input, see terminal.py.
on_terminal() {
  expect "$1" "$(python3 "$terminal" "$zrcfg" shell)" "0"
}

ZRCFG_NO_READLINE=1 on_terminal "without line editing" <<'END'
< 'zrcfg> '
> 'get A.First\n'
< 'one\r\n'
< 'zrcfg> '
> 'get A.None\n'
< 'zrcfg: get: A.None: no such parameter (code 5)\r\n'
< 'zrcfg> '
> 'encode\n'
< 'zrcfg: encode: standard input: is where the commands come from\r\n'
< 'zrcfg> '
> 'set A.First=typed\n'
< 'zrcfg> '
> '\x04'
end
END
run get A.First
expect "what was typed is done" "$out" "typed"
ZRCFG_NO_READLINE=1 on_terminal "'exit' leaves the terminal" <<'END'
< 'zrcfg> '
> 'exit\n'
end
END
expect "no history without line editing" "$(ls /var/history 2>/dev/null)" ""

# The emulated machine has no library for line editing, so the shell has to do without.
case $zrcfg in
  *-emulated)
    on_terminal "a machine without line editing" <<'END'
< 'zrcfg> '
> 'get A.First\n'
< 'typed\r\n'
< 'zrcfg> '
> 'exit\n'
end
END
    finish
    ;;
esac

on_terminal "line editing completes" <<'END'
< 'zrcfg> '
> 'ge\t'
< 'get '
> 'A.\t\t'
< 'A.1.'
< 'A.First'
< 'A.Sub.'
< 'zrcfg> '
> 'Sec\t'
< 'A.Second '
> 'A.S'
> 'u\t'
< 'A.Sub.'
> '\t'
< 'Y'
> '\n'
< 'two\r\n2\r\n'
< 'zrcfg> '
> 'set A.Firm\t'
< 'A.Firm='
> 'four\n'
< 'zrcfg> '
> 'get A.Firm --js\t'
< '--json'
> '\n'
< '"value": "four"'
< 'zrcfg> '
> 'list Ot\t'
< 'Other.'
> '\n'
< 'Other.X=1\r\n'
< 'zrcfg> '
> 'get A.None\n'
< 'no such parameter (code 5)'
< 'zrcfg> '
> ' get A.Second\n'
< 'two\r\n'
< 'zrcfg> '
> 'get "A.Sec\t\n'
< 'the line ends inside double quotes'
< 'zrcfg> '
> 'exit\n'
end
END
expect "history" "$(sed 's/ *$//' /var/history)" "$(printf '%s\n' 'get A.Second A.Sub.Y' \
  'set A.Firm=four' 'get A.Firm --json' 'list Other.' 'get A.None' 'get "A.Sec' 'exit')"
expect "for its owner only" "$(stat -c %a /var/history)" "600"
on_terminal "history of the session before" <<'END'
< 'zrcfg> '
> '\x10\x10\x10\x10'
< 'list Other.'
> '\n'
< 'Other.X=1\r\n'
< 'zrcfg> '
> '\x04'
end
END
seq 2001 >/var/history
on_terminal "a long history" <<'END'
< 'zrcfg> '
> '\x10'
< '2001'
> '\x15exit\n'
end
END
expect "is cut down" "$(head -1 /var/history)/$(tail -1 /var/history)/$(wc -l </var/history)" "1002/exit/1001"
unset ZRCFG_HISTORY
on_terminal "the history at home" <<'END'
< 'zrcfg> '
> 'exit\n'
end
END
expect "lies there" "$(cat /var/home/.zrcfg_history)" "exit"
export ZRCFG_HISTORY=/dev/full
on_terminal "a history that cannot be kept" <<'END'
< 'zrcfg> '
> 'exit\n'
end
END
finish

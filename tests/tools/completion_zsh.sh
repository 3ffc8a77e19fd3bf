# The completion of zsh, typed on a terminal
. "$(dirname "$0")/common.sh"
here=$(readlink -f "$(dirname "$0")")
make_object R Plain=x Place= Other=
make_object R/T
make_object R/T/0 Name=new
make_object R/T/1 Name=one
export TERM=dumb LC_ALL=C.UTF-8 HOME=/var
mkdir /var/bin
ln -s "$zrcfg" /var/bin/zrcfg
touch /var/config.txt

expect "zsh" "$(python3 "$here/terminal.py" zsh -f -i <<END
> 'PS1="ready> "; unset zle_bracketed_paste; unsetopt beep; path=(/var/bin \$path); cd /var\\n'
< 'ready> '
> 'fpath=("$here/../../completion" \$fpath); autoload -U compinit; compinit -u -D; echo lo""aded\\n'
< 'loaded\\r\\n'
< 'ready> '
> 'zrcfg li\\t'
< 'list '
> 'R.\\t'
< 'R.T.'
> '\\n'
< 'R.T.: the object has no parameters'
< 'ready> '
> 'zrcfg get R.Pla\\t'
< 'R.Place'
< 'R.Plain'
> 'i\\t --nam\\t\\n'
< 'R.Plain=x\\r\\n'
< 'ready> '
> 'zrcfg set R.O\\tset \\n'
< 'R.Other='
< 'ready> '
> 'zrcfg get R.Oth\\t\\n'
< 'set\\r\\n'
< 'ready> '
> 'zrcfg apply --dry-run conf\\t\\n'
< '0 lines'
< 'ready> '
> 'exit\\n'
end
END
)" "0"
finish

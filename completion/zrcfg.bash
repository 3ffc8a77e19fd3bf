# Completion of zrcfg's commands, options, and paths of the store, for bash.

# The typed words up to the cursor, put together again where bash splits them at "=" or ":".
_zrcfg_words() {
  local rest=${COMP_LINE:0:COMP_POINT} word i
  words=()
  for ((i = 0; i <= COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    if ((i > 0)) && [[ $rest != [[:space:]]* ]]; then
      words[${#words[@]} - 1]+=$word
    else
      rest=${rest#"${rest%%[![:space:]]*}"}
      words+=("$word")
    fi
    rest=${rest#"$word"}
  done
}

_zrcfg() {
  local words word candidate begin goes_on=
  _zrcfg_words
  word=${words[${#words[@]} - 1]}
  # Bash replaces only what stands behind its last word break.
  begin=${word%"${word##*[=:]}"}
  COMPREPLY=()
  while IFS= read -r candidate; do
    COMPREPLY+=("${candidate#"$begin"}")
    [[ $candidate != *[.=] ]] || goes_on=1
  done < <("$1" complete -- "${words[@]:1}" 2>/dev/null)
  # Outside of a completion, where the function may be called by hand, there are no options to set.
  if [[ -n $goes_on ]]; then
    compopt -o nospace 2>/dev/null
  elif [[ ${#COMPREPLY[@]} -eq 0 && " ${words[*]} " =~ " "(apply|batch|diff|export|lock|restore|snapshot)" " ]]; then
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "${word#"$begin"}")
  fi
}

complete -F _zrcfg zrcfg

# Shared by the command line's tests: a small store, and checks that say what they saw.
set -u
zrcfg=$1
failures=0
out=
err=
status=0

# make_object DIR NAME=VALUE...: a property file with these parameters, writable, and values.
make_object() {
  local dir=/var/$1 count=$(($# - 1)) len pair name
  shift
  mkdir -p "$dir"
  len=$((184 + 124 * count))
  {
    printf "\\x00\\x00\\x$(printf %02x $((len / 256)))\\x$(printf %02x $((len % 256)))"
    head -c 184 /dev/zero
    for pair in "$@"; do
      name=${pair%%=*}
      printf '\0\0\0\0\x40\0\0\0%s' "$name"
      head -c $((124 - 8 - ${#name})) /dev/zero
    done
    for pair in "$@"; do
      [ -n "${pair#*=}" ] && printf '%s\n' "${pair#*=}" || printf '\r\n'
    done
  } >"$dir/property.conf"
}

# poke_header DIR OFFSET HEX: overwrites a byte of the object header.
poke_header() {
  printf "\\x$3" | dd of="/var/$1/property.conf" bs=1 seek=$((4 + $2)) conv=notrunc 2>/dev/null
}

# run ARGUMENT...: the command line's output, error output and exit code.
run() {
  "$zrcfg" "$@" >/var/out 2>/var/err </dev/null
  status=$?
  out=$(cat /var/out)
  err=$(cat /var/err)
}

# expect WHAT SEEN WANTED
expect() {
  if [ "$2" != "$3" ]; then
    printf 'FAILED %s: saw [%s], wanted [%s]\n' "$1" "$2" "$3"
    failures=$((failures + 1))
  else
    printf 'ok %s\n' "$1"
  fi
}

finish() {
  printf '%d failures\n' "$failures"
  [ "$failures" -eq 0 ]
  exit
}

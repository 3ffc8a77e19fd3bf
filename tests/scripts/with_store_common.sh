# Shared by the launcher's tests: running it, and checks that say what they saw.
export VARIABLE="some value"
failures=0
out=
err=
status=0

# run COMMAND...: in a subshell; its output, error output and exit code.
run() {
  ("$@") >"$scratch/out" 2>"$scratch/err" </dev/null
  status=$?
  out=$(cat "$scratch/out")
  err=$(cat "$scratch/err")
}

# expect WHAT SEEN WANTED
expect() {
  if [ "$2" != "$3" ]; then
    printf 'FAILED %s: saw [%s], wanted [%s]; error output [%s]\n' "$1" "$2" "$3" "$err"
    failures=$((failures + 1))
    return
  fi
  printf 'ok     %s: [%s]\n' "$1" "$2"
}

# expect_match WHAT SEEN PATTERN
expect_match() {
  # shellcheck disable=SC2053
  if [[ $2 != $3 ]]; then
    printf 'FAILED %s: saw [%s], wanted a match of [%s]\n' "$1" "$2" "$3"
    failures=$((failures + 1))
    return
  fi
  printf 'ok     %s: [%s]\n' "$1" "${2:0:100}"
}

# refused REASON ARGUMENT...: exit code 125, nothing on the output and one line that has the reason.
refused() {
  local reason=$1
  shift
  run with_store "$@"
  expect "code of: $reason" "$status|$out" "125|"
  expect "lines of: $reason" "$(grep -c '' "$scratch/err")" 1
  expect_match "line of: $reason" "$err" "with-store: *$reason*"
}

# What of the machine must stay as it is. Names only: others may be at work in its /var.
machine() {
  ls -Am -w 0 / /usr/local /var
}

wait_for_file() {
  local tries=0
  until [ -e "$1" ]; do
    tries=$((tries + 1))
    if [ $tries -gt 400 ]; then
      echo "FAILED: $1 has not come up"
      exit 1
    fi
    sleep 0.05
  done
}

finish() {
  [ $failures -eq 0 ] || echo "$failures failed"
  exit $((failures > 0))
}

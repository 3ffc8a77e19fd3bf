# Shared by the tests that upgrade a store with random changes: the store that a model makes, and changes to it.
. "$(dirname "$0")/../tools/common.sh"
mkstore=$2 model=$3 changes=$4
tools=$(cd "$(dirname "$0")/../tools" && pwd)
shift 4
root=InternetGatewayDevice

install_store() {
  rm -rf "/var/$root" /var/regex_file
  cp -a "$1"/* /var/
}

# make_changed_store SEED BUILD-OPTION...: installs the model's store and changes it. `made` says what was done.
make_changed_store() {
  local seed=$1
  shift
  "$mkstore" --model "$model" "$@" /var/fresh >/var/built 2>&1 || cat /var/built
  install_store /var/fresh
  # shellcheck disable=SC2086
  made=$(python3 "$tools/random_changes.py" "$zrcfg" "$root" "$changes" $seed) || failures=1
  echo "changes: $made"
}

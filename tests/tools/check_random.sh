# zrcfg check and its repair on stores that are damaged at random. Arguments: the program, rounds, seed.
. "$(dirname "$0")/check_common.sh"
make_store
seen=$(python3 "$(dirname "$0")/check_random.py" "$zrcfg" "${2:-40}" "${3:-1}" 2>&1)
expect "random damage" "$seen" "${2:-40} rounds, some repaired, some left"
finish

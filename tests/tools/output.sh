# The forms of output: --json, --null, --shell
. "$(dirname "$0")/common.sh"
nasty=$(printf 'q"b\\s/\x27\ttab $HOME `x` \xc3\xa4 \xff\x80 {}[],: end')
make_object A First="$nasty" Second= Third='a=b'
make_object A/1 X=1
poke_header A 8 10

# json FILTER: evaluates a Python expression on the output as `d`.
json() {
  python3 -c '
import json, sys
d = json.loads(sys.stdin.buffer.read().decode("utf-8"))
out = eval(sys.argv[1])
sys.stdout.buffer.write(out.encode("utf-8", "surrogateescape"))' "$1" </var/out
}

run get --json A.First A.Second A.Third
expect "names in JSON" "$(json '" ".join(e["path"] for e in d)')/$err/$status" "A.First A.Second A.Third//0"
expect "values in JSON, byte for byte" "$(json 'd[0]["value"]')" "$nasty"
expect "the others" "$(json 'd[1]["value"] + "|" + d[2]["value"]')" "|a=b"
run get --json A.None A.Third
expect "JSON with a refusal" "$(json 'str(len(d))')/$status" "1/1"
run get --json A.None
expect "JSON of nothing" "$out/$status" "[]/1"
run list -j A
expect "list in JSON" "$(json 'str(len(d)) + d[2]["path"]')" "3A.Third"
run attr get A.First --json
expect "attributes in JSON" "$(json 'repr((d["rw"], d["noti"], d["area"], len(d)))')" "(1, 0, '', 16)"
run object get --json A rw pnoe
expect "object attributes in JSON" "$(json 'repr(d)')" "{'rw': 1, 'pnoe': ''}"
run tree --json A
expect "tree in JSON" "$(json '" ".join("%s:%s:%d" % (e["path"], e["kind"], e["rw"]) for e in d)')" \
  "A.:object:1 A.First:parameter:1 A.Second:parameter:1 A.Third:parameter:1 A.1.:object:0 A.1.X:parameter:1"
run exists --json A
expect "exists in JSON" "$(json 'repr(d)')/$status" "{'exists': True}/0"
run exists --json B
expect "does not exist in JSON" "$(json 'repr(d)')/$status" "{'exists': False}/1"

# In zero-terminated and shell form everything comes back exactly.
run get --null A.First A.Second A.Third
mapfile -d '' values </var/out
expect "zero-terminated values" "${#values[@]}/${values[0]}/${values[1]}/${values[2]}" "3/$nasty//a=b"
run list -0 A
mapfile -d '' values </var/out
expect "zero-terminated list" "${values[0]}/${values[2]}" "A.First=$nasty/A.Third=a=b"
run get --shell A.First A.Second A.Third
unset A_First A_Second A_Third
eval "$out"
expect "shell values" "$A_First/${A_Second-unset}/$A_Third" "$nasty//a=b"
run attr get -s A.First rw noti
expect "shell attributes" "$out" "$(printf "rw='1'\nnoti='0'")"
run tree -s A.1
expect "shell tree" "$out" "$(printf "A_1_='r-'\nA_1_X='rw'")"
run get --json --null A.First
expect "one form only" "$out/$err/$status" "/zrcfg: get: only one of --json, --null and --shell/2"
finish

#!/usr/bin/env bash
# Replays the calls with the programs of two targets on copies of one store: the results are the same,
# the trees are the same byte for byte (but for the address slots), and each target carries on with the
# store that the other one has written.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
[ $# -eq 3 ] || { echo "usage: compare_targets.sh REPLAY OTHER-REPLAY STORE" >&2; exit 2; }
one=$1 other=$2 store=$3
with_store=$here/../../scripts/with-store
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT

# run NAME PROGRAM PROGRAM: the first part with one program, the second with the next, on a copy.
run() {
  local name=$1
  cp -a "$store" "$work/$name"
  cp "$here/settings" "$work/$name/settings"
  for part in 1 2; do
    shift
    "$with_store" "$work/$name" "$1" "$here/calls.txt" $part
  done >"$work/$name.out"
  python3 "$here/tree_digest.py" "$work/$name" >"$work/$name.tree"
}

run one "$one" "$one"
run other "$other" "$other"
run one-other "$one" "$other"
run other-one "$other" "$one"

calls=$(grep -c '^[0-9]' "$work/one.out")
entries=$(wc -l <"$work/one.tree")
[ "$calls" -gt 200 ] && [ "$entries" -gt 300 ] || { echo "too little was replayed"; exit 1; }
python3 "$here/tree_digest.py" "$store" >"$work/before.tree"
if cmp -s "$work/before.tree" "$work/one.tree"; then
  echo "the calls have changed nothing"
  exit 1
fi
for name in other one-other other-one; do
  diff -u "$work/one.out" "$work/$name.out" || { echo "$name: the results differ"; exit 1; }
  diff -u "$work/one.tree" "$work/$name.tree" || { echo "$name: the trees differ"; exit 1; }
done

# The comparison sees a single bit, wherever it is not in a slot.
file=$work/one/InternetGatewayDevice/Time/property.conf
for at in 8 183 188 307 312 1000; do
  cp "$file" "$work/saved"
  byte=$(od -An -tu1 -j$at -N1 "$file")
  printf "\\x$(printf %02x $((byte ^ 1)))" | dd of="$file" bs=1 seek=$at conv=notrunc status=none
  python3 "$here/tree_digest.py" "$work/one" >"$work/changed.tree"
  if cmp -s "$work/changed.tree" "$work/one.tree"; then
    echo "the changed byte $at was not seen"
    exit 1
  fi
  cp "$work/saved" "$file"
done
echo "$calls calls, $entries entries: same results, same trees, each served by the other"

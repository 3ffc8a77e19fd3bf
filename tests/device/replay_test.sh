#!/usr/bin/env bash
# Replays the calls twice with one program on the example store; with a second program, that of another
# target, on the same store.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
[ $# -ge 2 ] || { echo "usage: replay_test.sh MKSTORE REPLAY [OTHER-REPLAY]" >&2; exit 2; }
mkstore=$1 one=$2 other=${3-$2}
examples=$here/../../examples
store=$(mktemp -d)
trap 'rm -rf -- "$store"' EXIT
"$mkstore" --model "$examples/home-gateway.xml" --instances "$examples/home-gateway.instances" \
  --values "$examples/home-gateway.values" --attributes "$examples/home-gateway.attributes" "$store/tree"
"$here/compare_targets.sh" "$one" "$other" "$store/tree"

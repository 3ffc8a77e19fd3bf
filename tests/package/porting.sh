#!/usr/bin/env bash
# The toolchain file and the commands of docs/porting.md, run as they stand: with an SDK that this
# machine's compiler plays, whose root holds a libuci and a log library of the device's own.
set -euo pipefail
work=$WORK_DIR/porting
rm -rf "$work"
mkdir -p "$work/source" "$work/sdk/bin" "$work/sdk/sysroot/usr/lib"

ln -s "$(command -v gcc)" "$work/sdk/bin/mips-linux-uclibc-gcc"
ln -s "$(command -v g++)" "$work/sdk/bin/mips-linux-uclibc-g++"
cmake -S "$SOURCE_DIR/platform/uci" -B "$work/uci" -G Ninja -DCMAKE_BUILD_TYPE=MinSizeRel \
  -DCMAKE_INSTALL_PREFIX="$work/sdk/sysroot/usr" -DCMAKE_INSTALL_LIBDIR=lib >"$work/uci.log"
cmake --build "$work/uci" >>"$work/uci.log"
cmake --install "$work/uci" >>"$work/uci.log"
gcc -shared -fPIC -Wl,-soname,libzrlogmgr.so -I"$SOURCE_DIR" \
  "$SOURCE_DIR/platform/zrlogmgr/zrlogmgr.c" -o "$work/sdk/sysroot/usr/lib/libzrlogmgr.so"

# The commands write into the tree that they are run in.
for entry in "$SOURCE_DIR"/*; do
  [ "$(basename "$entry")" = build ] || ln -s "$entry" "$work/source/"
done
cd "$work/source"
export SDK=$work/sdk
page=$SOURCE_DIR/docs/porting.md
# block FIRST-LINE: the indented block that begins so.
block() {
  awk -v first="    $1" 'index($0, first) == 1 {on = 1} on && !/^    / {exit} on {print substr($0, 5)}' "$page"
}
block '# gateway.cmake' >gateway.cmake
test -s gateway.cmake
commands=$(block 'cmake -S . -B build/gateway')
test -n "$commands"
bash -euc "$commands" >"$work/build.log" 2>&1 || { tail -30 "$work/build.log"; exit 1; }

root=$work/source/root/usr
needed=$(readelf -d "$(find "$root" -name 'libzrcfg.so')" | sed -n 's/.*(NEEDED).*\[\(.*\)\.so.*\]/\1/p' | sort | xargs)
test "$needed" = "libc libuci libzrlogmgr" || { echo "the library needs: $needed"; exit 1; }
test -z "$(find "$root" -name 'libzrlogmgr*' -o -name zrcfg-mkstore)"
# pkg-config finds the header for clients of the device.
include=$(PKG_CONFIG_LIBDIR=$(dirname "$(find "$root" -name zrcfg.pc)") pkg-config --variable=includedir zrcfg)
test "$include" -ef "$root/include" || { echo "zrcfg.pc leads to $include"; exit 1; }
libraries=$(dirname "$(find "$root" -name 'libzrcfg.so')"):$work/sdk/sysroot/usr/lib
LD_LIBRARY_PATH=$libraries "$root/bin/zrcfg" --version

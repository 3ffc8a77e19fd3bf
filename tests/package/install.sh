#!/usr/bin/env bash
# Builds the release configuration and installs it twice: into the stage that the other tests look at,
# and, as packagers do, for /usr below a directory, where every file has its place in a committed list.
set -euo pipefail
rm -rf "$STAGE" "$ROOT"
uci_options=(-DZRCFG_UCI="$UCI_SOURCE")
if [ "$UCI_SOURCE" = system ]; then
  # A libuci outside the system's folders is found when clients are linked and run.
  uci_options+=(-DUCI_LIBRARY="$UCI_LIBRARY" -DUCI_INCLUDE_DIR="$UCI_INCLUDE_DIR"
    -DCMAKE_INSTALL_RPATH="$(dirname "$UCI_LIBRARY")")
fi

# configure PREFIX LIBDIR CMAKE_ARGUMENT...
configure() {
  cmake -S "$SOURCE_DIR" -B "$RELEASE_BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_INSTALL_PREFIX="$1" -DCMAKE_INSTALL_LIBDIR="$2" \
    -DZRCFG_TESTS=OFF -DZRCFG_WERROR=ON "${uci_options[@]}" "${@:3}"
}

# check_pkg_config DIR PREFIX: the .pc file in DIR leads to the files that were installed below PREFIX.
check_pkg_config() {
  local header library
  header=$(PKG_CONFIG_LIBDIR=$1 pkg-config --variable=includedir zrcfg)/zrcfg.h
  library=$(PKG_CONFIG_LIBDIR=$1 pkg-config --variable=libdir zrcfg)/libzrcfg.so
  test "$header" -ef "$2/include/zrcfg.h" || { echo "the header is at $header"; exit 1; }
  test -e "$library" && test "$(realpath "$library")" = "$(realpath "$1/../libzrcfg.so")"
}

configure "$STAGE" "${LIBDIR#"$STAGE"/}"
cmake --build "$RELEASE_BUILD"
cmake --install "$RELEASE_BUILD" >"$WORK_DIR/install.log"
check_pkg_config "$LIBDIR/pkgconfig" "$STAGE"

multiarch=lib/$(gcc -print-multiarch)
configure /usr "$multiarch" -DCMAKE_INSTALL_RPATH=
DESTDIR=$ROOT cmake --install "$RELEASE_BUILD" >"$WORK_DIR/install.log"
check_pkg_config "$ROOT/usr/$multiarch/pkgconfig" "$ROOT/usr"

version=$(sed -n 's/^set(ZRCFG_VERSION \(.*\))$/\1/p' "$SOURCE_DIR/cmake/Version.cmake")
soversion=$(sed -n 's/^set(ZRCFG_SOVERSION \(.*\))$/\1/p' "$SOURCE_DIR/cmake/Version.cmake")
# Pages that only refer to zrcfg.3: one for each call of the header.
aliases=$(grep -rlx '\.so man3/zrcfg\.3' "$ROOT/usr/share/man/man3")
for page in $aliases; do
  call=$(basename "$page" .3)
  grep -qE "^[a-z0-9_]+ $call\(" "$SOURCE_DIR/include/zrcfg.h" || { echo "not a call: $call"; exit 1; }
done
declared=$(grep -cE '^(int|uint32_t|void) [A-Za-z0-9_]+\(' "$SOURCE_DIR/include/zrcfg.h")
test "$(wc -l <<<"$aliases")" -eq "$declared" || { echo "$declared calls have pages: $aliases"; exit 1; }

cd "$ROOT"
find . ! -type d ! -path './usr/share/man/man3/*' -printf '%M %P %l\n' |
  sed "s|$multiarch|LIBDIR|; s/libzrcfg\.so\.$version/libzrcfg.so.VERSION/g
       s/libzrcfg\.so\.$soversion\b/libzrcfg.so.SOVERSION/g; s/ *\$//" | LC_ALL=C sort -k 2 >"$WORK_DIR/installed"
diff -u "$TEST_DIR/installed_files.txt" "$WORK_DIR/installed"
test -s usr/share/man/man3/zrcfg.3
# A page that only refers to another one leads to it.
for page in $(grep -rl '^\.so ' usr/share/man); do
  test -s "usr/share/man/$(sed -n 's/^\.so //p' "$page")" || { echo "$page refers to nothing"; exit 1; }
done
# Nothing of the machine that builds is in the files.
! grep -rl --fixed-strings -e "$SOURCE_DIR" -e "$RELEASE_BUILD" -e "$ROOT" . || exit 1

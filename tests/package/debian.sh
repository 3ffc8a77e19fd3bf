#!/usr/bin/env bash
# cpack makes the Debian packages: their names, dependencies and descriptions, the symbols, the papers
# that each one has to have, and no file outside the folders of packages.
set -euo pipefail
packages=$WORK_DIR/debian
rm -rf "$packages"
cpack --config "$RELEASE_BUILD/CPackConfig.cmake" -B "$packages" >"$WORK_DIR/cpack.log" 2>&1 ||
  { cat "$WORK_DIR/cpack.log"; exit 1; }
version=$(sed -n 's/^set(ZRCFG_VERSION \(.*\))$/\1/p' "$SOURCE_DIR/cmake/Version.cmake")-1
library=libzrcfg$(sed -n 's/^set(ZRCFG_SOVERSION \(.*\))$/\1/p' "$SOURCE_DIR/cmake/Version.cmake")
architecture=$(dpkg --print-architecture)

fail() {
  echo "$1" >&2
  exit 1
}

# file PACKAGE: the package's file.
file() {
  echo "$packages/$1_${version}_$architecture.deb"
}

names=$(cd "$packages" && printf '%s\n' *.deb | sed 's/_.*//' | xargs)
test "$names" = "libzrcfg-dev $library libzrlogmgr zrcfg-mkstore zrcfg-tools" || fail "packages: $names"
for name in $names; do
  content=$WORK_DIR/content/$name
  rm -rf "$content"
  mkdir -p "$content"
  dpkg-deb -R "$(file "$name")" "$content"
  (cd "$content" && md5sum --quiet -c DEBIAN/md5sums)
  papers=$content/usr/share/doc/$name
  grep -qx 'License: Expat' "$papers/copyright" || fail "$name: no license"
  grep -q "Copyright: $(sed -n 's/^Copyright (c) //p' "$SOURCE_DIR/LICENSE")" "$papers/copyright"
  zcat "$papers/changelog.gz" | cmp - "$SOURCE_DIR/CHANGELOG.md"
  test "$(zcat "$papers/changelog.Debian.gz" | dpkg-parsechangelog -l - -S Version)" = "$version"
  outside=$(cd "$content" && find . -path ./DEBIAN -prune -o ! -type d ! -path './usr/*' -print)
  test -z "$outside" || fail "$name has $outside"
  title=$(dpkg-deb -f "$(file "$name")" Description | sed -n 1p)
  case $title in
    "TR-069 configuration store ("*")" | "log library of a home gateway (stand-in)") ;;
    *) fail "$name has the title $title" ;;
  esac
done
(cd "$WORK_DIR/content" && find . ! -type d | cut -d/ -f3- | grep -v '^DEBIAN' | sort | uniq -d) |
  (! grep .) || fail "a file is in two packages"

# depends PACKAGE WORD...: the dependencies have each of the words.
depends() {
  local name=$1 found word
  found=$(dpkg-deb -f "$(file "$name")" Depends)
  echo "$name depends on $found"
  shift
  for word in "$@"; do
    case ", $found," in
      *", $word,"* | *", $word ("*) ;;
      *) fail "$name does not depend on $word" ;;
    esac
  done
}
depends "$library" libc6 libzrlogmgr
depends libzrcfg-dev "$library (= $version)"
depends zrcfg-tools libc6 "$library (= $version)"
depends zrcfg-mkstore libc6 libstdc++6 libpugixml1v5
depends libzrlogmgr libc6

# A client's pkg-config is led to the header, in a folder that the compiler looks at anyway.
development=$WORK_DIR/content/libzrcfg-dev/usr
include=$(PKG_CONFIG_LIBDIR=$(dirname "$(find "$development" -name zrcfg.pc)") pkg-config --variable=includedir zrcfg)
test "$include" -ef "$development/include" || fail "zrcfg.pc leads to $include"

# The manual page of both commands, and the script that it names.
for name in man/man1/zrcfg-restore.1.gz doc/zrcfg-tools/examples/store-backup; do
  test -s "$WORK_DIR/content/zrcfg-tools/usr/share/$name" || fail "zrcfg-tools lacks $name"
done

# What Debian's own tools find in the library is what the symbols file says.
cd "$WORK_DIR"
mkdir -p gensymbols/debian
printf 'Source: zrcfg\n\nPackage: %s\nArchitecture: any\n' "$library" >gensymbols/debian/control
(cd gensymbols && dpkg-gensymbols -c4 -p"$library" -v"$version" -P"$WORK_DIR/content/$library" \
  -I"$WORK_DIR/content/$library/DEBIAN/symbols" -O"$WORK_DIR/gensymbols/found" >"$WORK_DIR/gensymbols/log" 2>&1) ||
  { cat gensymbols/log; exit 1; }
grep -q '^ zrcfg_getsingleparamval@Base 0\.1\.0$' "content/$library/DEBIAN/symbols"

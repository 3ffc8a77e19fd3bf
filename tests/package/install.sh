#!/usr/bin/env bash
# Builds the release configuration and installs it into the stage that the other tests look at.
set -euo pipefail
rm -rf "$STAGE"
uci_options=(-DZRCFG_UCI="$UCI_SOURCE")
if [ "$UCI_SOURCE" = system ]; then
  # A libuci outside the system's folders is found when clients are linked and run.
  uci_options+=(-DUCI_LIBRARY="$UCI_LIBRARY" -DUCI_INCLUDE_DIR="$UCI_INCLUDE_DIR"
    -DCMAKE_INSTALL_RPATH="$(dirname "$UCI_LIBRARY")")
fi
cmake -S "$SOURCE_DIR" -B "$WORK_DIR/build" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_INSTALL_PREFIX="$STAGE" -DCMAKE_INSTALL_LIBDIR="${LIBDIR#"$STAGE"/}" \
  -DZRCFG_HOST_TOOLS=OFF -DZRCFG_TESTS=OFF -DZRCFG_WERROR=ON \
  "${uci_options[@]}"
cmake --build "$WORK_DIR/build"
cmake --install "$WORK_DIR/build"

for file in bin/zrcfg include/zrcfg.h share/man/man1/zrcfg.1 \
  share/bash-completion/completions/zrcfg share/zsh/site-functions/_zrcfg; do
  test -f "$STAGE/$file" || { echo "not installed: $file"; exit 1; }
done
for file in libzrcfg.so libzrlogmgr.so pkgconfig/zrcfg.pc cmake/zrcfg/zrcfgConfig.cmake; do
  test -e "$LIBDIR/$file" || { echo "not installed: $file"; exit 1; }
done

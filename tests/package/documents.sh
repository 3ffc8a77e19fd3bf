#!/usr/bin/env bash
# Runs every example of README, documents and manual pages with the installed program and library, each
# file with a fresh store of the example gateway, and compares what they print.
set -euo pipefail
export PATH=$STAGE/bin:$PATH LD_LIBRARY_PATH=$LIBDIR PKG_CONFIG_PATH=$LIBDIR/pkgconfig
export ZRCFG_HISTORY=/dev/null
examples=$WORK_DIR/examples
rm -rf "$examples"
mkdir -p "$examples"
example=$SOURCE_DIR/examples/home-gateway
zrcfg-mkstore --model "$example.xml" --instances "$example.instances" --values "$example.values" \
  --attributes "$example.attributes" "$examples/store" >"$examples/mkstore"

run_document='cd "$(mktemp -d)" && cp "$3".* "${3%/*}"/upgrade/home-gateway-* . &&
  exec python3 "$1/document_examples.py" "$2" "$1/documents_not_run.txt"'
# README.md is read in the folder of the project, with the store and the programs of the quick start.
run_readme='cd "$(mktemp -d)" && cp -r "$SOURCE_DIR/examples" . && mkdir build &&
  ln -s "$RELEASE_BUILD" build/release && PATH=${PATH#"$STAGE/bin:"} &&
  eval "$(sed -n "/^  export PATH=/p" "$SOURCE_DIR/scripts/quickstart")" &&
  exec python3 "$1/document_examples.py" "$2" "$1/documents_not_run.txt"'
failed=0

# The quick start's session, but for what differs from run to run.
plain() {
  sed -E 's/[0-9]+\.[0-9]+ seconds/T seconds/; s/inode [0-9]+, modified .*/inode N/; s/after [0-9]+ ms/after N ms/'
}
cp -a "$examples/store" "$examples/session"
{
  sed -n 's/^echo "\(== .*\)"$/\1/p' "$SOURCE_DIR/scripts/quickstart"
  cat "$examples/mkstore"
  "$WITH_STORE" "$examples/session" bash "$SOURCE_DIR/scripts/lib/session.sh" "$STAGE/bin/zrcfg"
  sed -n "/^cat <<'END'/,/^END/p" "$SOURCE_DIR/scripts/quickstart" | sed '1d; $d'
} | plain >"$examples/seen"
sed -n '/^    == building/,/^[^ ]/p' "$SOURCE_DIR/README.md" | sed '$d' | sed '$d; s/^    //' | plain |
  diff -u - "$examples/seen" || failed=1
echo "quick start: $(wc -l <"$examples/seen") lines"

for document in "$SOURCE_DIR"/README.md "$SOURCE_DIR"/docs/*.md "$SOURCE_DIR"/examples/README.md \
  "$SOURCE_DIR"/examples/upgrade/README.md "$SOURCE_DIR"/man/*.[1-8]; do
  name=$(basename "$(dirname "$document")").$(basename "$document")
  case $(basename "$document") in
    property.conf.5) ;; # Made from docs/format.md.
    with-store.1)
      # Its examples start the launcher, so they run outside of it.
      TMPDIR=$examples bash -c "$run_document" bash "$TEST_DIR" "$document" "$example" || failed=1
      ;;
    *)
      run=$run_document store=$examples/store
      if [ "$document" = "$SOURCE_DIR/README.md" ]; then
        run=$run_readme store=$examples/session
      fi
      cp -a "$store" "$examples/$name"
      "$WITH_STORE" "$examples/$name" env TMPDIR=/var bash -c "$run" bash "$TEST_DIR" "$document" \
        "$example" || failed=1
      rm -rf "${examples:?}/$name"
      ;;
  esac
done
exit $failed

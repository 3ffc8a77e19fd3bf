#!/usr/bin/env bash
# The manual pages: those made from other files are up to date, all are without a warning of mandoc and
# groff, name their file, and refer to pages that exist.
set -euo pipefail
cd "$(dirname "$0")/../.."
python3 tests/package/manual/make_pages.py
count=0
for page in man/*.[1-8]; do
  # The pages bear the version's date where they are shipped, not in the tree.
  warnings=$(mandoc -T lint -W warning "$page" | grep -v 'missing date' || true)
  warnings+=$(LC_ALL=C.UTF-8 MANWIDTH=80 groff -man -t -T utf8 -ww -z "$page" 2>&1)
  test -z "$warnings" || { echo "$warnings"; exit 1; }
  name=$(basename "$page")
  title=$(sed -n 's/^\.TH \([^ ]*\) \([0-9]\).*/\1.\2/p' "$page" | sed 's/\\//g' | tr '[:upper:]' '[:lower:]')
  test "$title" = "$name" || { echo "$page has the title $title"; exit 1; }
  for other in $(sed 's/\\//g' "$page" | sed -n '/^\.SH SEE ALSO/,$s/^\.BR \([a-z.-]*\) (\([0-9]\)).*/\1.\2/p'); do
    case $other in
      zrcfg* | with-store* | property*) test -f "man/$other" || { echo "$page refers to $other"; exit 1; } ;;
    esac
  done
  count=$((count + 1))
done
echo "$count pages"
test "$count" -ge 5

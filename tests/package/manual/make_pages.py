"""Makes the manual pages that are the text of other files: zrcfg.3 and property.conf.5.

Usage: make_pages.py [--update]. Without it the pages are compared with what would be written, and
differences are printed.
"""
import difflib
import sys

# No compiled modules beside the sources.
sys.dont_write_bytecode = True
import format_page
import library_page
from troff import ROOT

MAKERS = (("zrcfg.3", library_page.page), ("property.conf.5", format_page.page))


def main():
    differs = False
    for name, page in MAKERS:
        path, text = ROOT / "man" / name, page()
        if sys.argv[1:] == ["--update"]:
            path.write_text(text, encoding="utf-8")
            continue
        seen = path.read_text(encoding="utf-8")
        sys.stdout.writelines(difflib.unified_diff(seen.splitlines(True), text.splitlines(True),
                                                   f"man/{name}", "as it would be made"))
        differs = differs or seen != text
    if differs:
        print("not up to date: python3 tests/package/manual/make_pages.py --update")
    return differs


sys.exit(main())

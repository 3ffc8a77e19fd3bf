#!/usr/bin/env bash
# The library needs libc, the log library, and libuci exactly where the system has it: no C++ runtime.
set -euo pipefail
library=$LIBDIR/libzrcfg.so
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort)
echo "needed: $needed"
test -n "$needed"
expected="libc libzrlogmgr"
[ "$UCI_SOURCE" = bundled ] || expected="libc libuci libzrlogmgr"
test "$(sed 's/\.so.*//' <<<"$needed" | xargs)" = "$expected" || { echo "expected: $expected"; exit 1; }

soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
version=$(sed -n 's/^set(ZRCFG_SOVERSION \(.*\))$/\1/p' "$SOURCE_DIR/cmake/Version.cmake")
test "$soname" = "libzrcfg.so.$version" || { echo "soname is $soname"; exit 1; }

undefined=$(nm -D --undefined-only "$library" | awk '{print $2}' | sed 's/@.*//')
grep -qx zr_mod_log_printf <<<"$undefined" || { echo "the log call is not imported"; exit 1; }
# The bundled reader is inside and hidden; libuci's calls are imported. One call of the library's own
# begins like theirs.
uci_imports=$(grep -c '^uci_' <<<"$undefined" || true)
case $UCI_SOURCE in
  bundled) test "$uci_imports" -eq 0 ;;
  system) test "$uci_imports" -gt 0 ;;
esac || { echo "$uci_imports calls of libuci imported"; exit 1; }
uci_defined=$(nm -D --defined-only "$library" | awk '{print $3}' | grep '^uci_' || true)
test "$uci_defined" = uci_char_transform || { echo "defined: $uci_defined"; exit 1; }

runtime=$(grep -E '^(_Z|__cxa_|__gxx_|_Unwind)' <<<"$undefined" | grep -vx __cxa_finalize || true)
test -z "$runtime" || { echo "C++ runtime symbols: $runtime"; exit 1; }

tool_needed=$(readelf -d "$STAGE/bin/zrcfg" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort | xargs)
test "$tool_needed" = "libc.so.6 libzrcfg.so.$version" || { echo "zrcfg needs $tool_needed"; exit 1; }

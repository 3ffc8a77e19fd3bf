#!/usr/bin/env bash
# The library needs libc, libuci where the system has it, and the log library: no C++ runtime.
set -euo pipefail
library=$LIBDIR/libzrcfg.so
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort)
echo "needed: $needed"
test -n "$needed"
while read -r name; do
  case $name in
    libc.so.* | libzrlogmgr.so* | libuci.so*) ;;
    *) echo "unexpected dependency: $name"; exit 1 ;;
  esac
done <<<"$needed"

soname=$(readelf -d "$library" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
version=$(sed -n 's/^set(ZRCFG_SOVERSION \(.*\))$/\1/p' "$SOURCE_DIR/cmake/Version.cmake")
test "$soname" = "libzrcfg.so.$version" || { echo "soname is $soname"; exit 1; }

undefined=$(nm -D --undefined-only "$library" | awk '{print $2}' | sed 's/@.*//')
grep -qx zr_mod_log_printf <<<"$undefined" || { echo "the log call is not imported"; exit 1; }
runtime=$(grep -E '^(_Z|__cxa_|__gxx_|_Unwind)' <<<"$undefined" | grep -vx __cxa_finalize || true)
test -z "$runtime" || { echo "C++ runtime symbols: $runtime"; exit 1; }

tool_needed=$(readelf -d "$STAGE/bin/zrcfg" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | sort | xargs)
test "$tool_needed" = "libc.so.6 libzrcfg.so.$version" || { echo "zrcfg needs $tool_needed"; exit 1; }

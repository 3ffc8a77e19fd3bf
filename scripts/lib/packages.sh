# Installing what a script needs, on Debian; sourced by the scripts beside this folder.

build_packages="g++ gcc cmake ninja-build pkg-config libpugixml-dev libcli11-dev bubblewrap proot perl util-linux"
test_packages="file libgtest-dev libgmock-dev python3 valgrind xxd busybox zsh libreadline8 dpkg-dev mandoc groff-base"
abi_packages="abigail-tools g++-mips-linux-gnu"
mips_packages="g++-mips-linux-gnu qemu-user googletest"
bench_packages="libsqlite3-dev libtdb-dev liblmdb-dev nlohmann-json3-dev python3"
fuzz_packages="clang libclang-rt-dev"
analysis_packages="clang-tidy cppcheck"
i386_packages="g++-i686-linux-gnu valgrind python3"

# need_packages NAME...: installs those that are missing, with sudo when not root.
need_packages() {
  local name missing=() as_root=()
  for name in "$@"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" = installed ] || missing+=("$name")
  done
  [ ${#missing[@]} -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      echo "$0: missing packages, and neither root nor sudo; as root: apt-get install ${missing[*]}" >&2
      exit 1
    fi
    as_root=(sudo)
  fi
  echo "installing: ${missing[*]}"
  install_packages || install_packages || {
    echo "$0: apt-get install ${missing[*]} failed" >&2
    exit 1
  }
}

# One try; a mirror or the network may fail once. The package lists at hand may do when new ones
# cannot be fetched.
install_packages() {
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q >/dev/null ||
    echo "$0: apt-get update failed, going on with the package lists at hand" >&2
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${missing[@]}" >/dev/null
}

# The launcher with-store inside a chroot: the command stays in it, and the store is the one given.
#
# usage: with_store_chroot_test.sh SCRIPTS
set -u
scripts=$1
if [ "$(id -u)" -ne 0 ] || ! unshare --mount true 2>/dev/null; then
  echo "a chroot can be made by root with CAP_SYS_ADMIN only"
  exit 77
fi
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
. "$(dirname "$0")/with_store_common.sh"
mkdir -p "$scratch/root/scripts" "$scratch/root/work/store" "$scratch/root/inside"
cp "$scripts/with-store" "$scratch/root/scripts"

# The machine's programs in a root of its own. It is a mount point, or bwrap could not be used.
# shellcheck disable=SC2016
in_chroot='
  mount --bind "$1" "$1" && cd "$1" && shift || exit 1
  for dir in bin sbin lib lib32 lib64 libx32 usr etc dev proc; do
    [ -L /$dir ] && cp -P /$dir . && continue
    [ -d /$dir ] && mkdir $dir && mount --rbind /$dir $dir
  done
  mkdir -m 1777 tmp; mkdir var home
  exec chroot . env ZRCFG_WITH_STORE=bwrap bash -c "cd /work && exec /scripts/with-store \"\$@\"" with-store "$@"'
run unshare --mount --propagation private bash -c "$in_chroot" chroot "$scratch/root" store \
  sh -c 'pwd; ls -d /inside; ls -A /var; echo kept >/var/file'
expect "exit code" "$status" 0
expect "in the chroot, in its directory, with an empty store" "$out" $'/work\n/inside'
expect "standard error" "$err" ""
expect "the store" "$(cat "$scratch/root/work/store/file")" kept
finish

# What scripts/package-trial does inside the bare Debian, with the packages in /trial.
set -euo pipefail
cd /trial
library=$(basename libzrcfg[0-9]*.deb | sed 's/_.*//')
packages="$library libzrlogmgr libzrcfg-dev zrcfg-tools zrcfg-mkstore"
export DEBIAN_FRONTEND=noninteractive

step() {
  echo "== $*"
}

# quietly COMMAND...: its output only when it fails.
quietly() {
  "$@" >/trial/log 2>&1 || { cat /trial/log; return 1; }
}

# expect SEEN WANTED
expect() {
  [ "$1" = "$2" ] || { printf 'saw    [%s]\nwanted [%s]\n' "$1" "$2"; exit 1; }
}

# Every path but those that apt and dpkg keep for themselves.
tree() {
  find / -xdev \( -path /proc -o -path /dev -o -path /sys -o -path /trial -o -path /tmp -o -path /var/lib/apt \
    -o -path /var/lib/dpkg -o -path /var/cache -o -path /var/log -o -path /root \) -prune -o -print | sort
}

step "what a developer has: compiler, CMake, pkg-config, man"
quietly apt-get update
quietly apt-get install -y --no-install-recommends gcc libc6-dev pkg-config cmake make man-db bubblewrap
# libpugixml comes and goes with the packages.
apt-mark showauto | sort >/trial/auto
tree >/trial/before

step "install"
quietly apt-get install -y --no-install-recommends ./*.deb
for name in $packages; do
  expect "$(dpkg-query -W -f '${db:Status-Status}' "$name")" installed
done
quietly dpkg --verify $packages
ldd /usr/bin/zrcfg /usr/bin/zrcfg-mkstore /usr/lib/*/libzrcfg.so | (! grep 'not found')
zrcfg --version
zrcfg-mkstore --version
for page in zrcfg zrcfg-check zrcfg-diff zrcfg-restore zrcfg-snapshot zrcfg-watch zrcfg-mkstore with-store \
  3:zrcfg 3:zrcfg_getsingleparamval 5:property.conf; do
  quietly man -w ${page%%[!0-9]*} "${page#*:}"
done

step "a store, through the launcher and as this machine's own /var"
examples=/usr/share/doc/zrcfg-mkstore/examples/home-gateway
zrcfg-mkstore --model $examples.xml --instances $examples.instances --values $examples.values \
  --attributes $examples.attributes /trial/store
model=InternetGatewayDevice.DeviceInfo.ModelName
expect "$(with-store /trial/store zrcfg get $model)" HG-400
cp -a /trial/store/* /var/
expect "$(zrcfg get $model)" HG-400
zrcfg set InternetGatewayDevice.User.1.Alias=trial
expect "$(zrcfg get InternetGatewayDevice.User.1.Alias)" trial
expect "$(with-store /trial/store zrcfg get InternetGatewayDevice.User.1.Alias)" owner
expect "$(ZRLOG_LEVEL=7 zrcfg get $model 2>&1 >/dev/null | grep -c ZRCFG | sed 's/[1-9][0-9]*/lines/')" lines

step "clients: pkg-config, CMake, plain cc"
mkdir clients
cp /usr/share/doc/libzrcfg-dev/examples/client/*.c clients/
cat >clients/CMakeLists.txt <<'LISTS'
cmake_minimum_required(VERSION 3.22)
project(clients LANGUAGES C)
find_package(zrcfg REQUIRED)
foreach(name one_value all_values checked_values)
  add_executable(${name} ${name}.c)
  target_link_libraries(${name} PRIVATE zrcfg::zrcfg)
endforeach()
LISTS
quietly cmake -S clients -B clients/by_cmake
quietly cmake --build clients/by_cmake
mkdir clients/by_pkg_config clients/by_hand
for source in clients/*.c; do
  name=$(basename "$source" .c)
  cc "$source" -o clients/by_pkg_config/"$name" $(pkg-config --cflags --libs zrcfg)
  cc -D_FILE_OFFSET_BITS=64 "$source" -o clients/by_hand/"$name" -lzrcfg
done
for way in by_cmake by_pkg_config by_hand; do
  expect "$(clients/$way/one_value InternetGatewayDevice.User.1. Alias $way | tail -n 1)" "0 changed"
  expect "$(clients/$way/all_values InternetGatewayDevice.User.1. | sed -n 2p)" \
    "InternetGatewayDevice.User.1.Alias=$way"
  expect "$(clients/$way/checked_values 11 perhaps | tail -n 1)" "Enable: refused, fault 9007"
  echo "$way: works"
done

step "remove: the store is the owner's and stays"
quietly apt-get remove -y zrcfg-tools
! command -v zrcfg >/dev/null
test -s /var/InternetGatewayDevice/property.conf
clients/by_hand/one_value InternetGatewayDevice.User.1. Alias owner >/dev/null
quietly apt-get remove -y "$library"
! dpkg -s libzrcfg-dev >/dev/null 2>&1
! clients/by_hand/one_value InternetGatewayDevice.User.1. Alias owner 2>/dev/null

step "install again, and purge"
quietly apt-get install -y --no-install-recommends ./*.deb
expect "$(zrcfg get InternetGatewayDevice.User.1.Alias)" owner
# shellcheck disable=SC2086
quietly apt-get purge -y --autoremove $packages
rm -r /var/InternetGatewayDevice /var/regex_file
tree >/trial/after
diff /trial/before /trial/after && echo "nothing is left behind"

# zrcfg exists
. "$(dirname "$0")/common.sh"
make_object A/B First=one
mkdir /var/Bare

run exists A.B.
expect "object" "$out/$err/$status" "//0"
run exists A.
expect "directory without property file" "$status" "0"
run exists Bare.
expect "bare directory" "$status" "0"
run exists A.C.
expect "missing" "$err/$status" "zrcfg: exists: A.C.: no such object, or its URL is too long (code 1)/1"
run exists A.B
expect "without the final dot" "$out/$err/$status" "//0"
run exists ''
expect "empty URL" "$err/$status" "zrcfg: exists: the object URL is empty/2"
long=$(printf 'x%.0s' $(seq 255))
for url in "$long." "$long"; do
  run exists "$url"
  expect "URL of 256 characters" "$err/$status" "zrcfg: exists: $url: the object URL is longer than 255 characters/2"
done
run exists A. B.
expect "one URL only" "$err/$status" "zrcfg: exists: takes one URL/2"
finish

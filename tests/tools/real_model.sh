# Every parameter of a real data model is read and set through the command line.
# Arguments: the program, the store builder, the model document, the reader of documents.
. "$(dirname "$0")/common.sh"
mkstore=$2 model=$3 reader=$4

built=$("$mkstore" --model "$model" /var/store 2>/dev/null)
expect "store built" "$?" "0"
mv /var/store/* /var/
mapfile -t paths < <(python3 "$reader" "$model" | cut -f1 | grep -v '\.$' | sed 's/{i}/0/g')
expect "parameters" "$(grep -o '[0-9]* parameters' <<<"$built" | head -1)" "${#paths[@]} parameters"

run get "${paths[@]}"
expect "every parameter is read" "$status/$(wc -l </var/out)/$err" "0/${#paths[@]}/"

values=() assignments=()
for i in "${!paths[@]}"; do
  values+=("value $i of $((i % 7)) = x")
  assignments+=("${paths[i]}=${values[i]}")
done
run set --no-check "${assignments[@]}"
expect "every parameter is set" "$status/$err" "0/"
run get "${paths[@]}"
expect "every parameter reads back" "$(md5sum </var/out)" "$(printf '%s\n' "${values[@]}" | md5sum)"
finish

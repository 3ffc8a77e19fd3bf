# zrcfg check of a whole store: one that was just built is clean, also while clients change it, and
# what is planted in it is found. Arguments: the program, the store builder and its arguments.
. "$(dirname "$0")/common.sh"
"${@:2}" /var/store >/dev/null 2>&1
expect "store built" "$?" "0"
mv /var/store/* /var/
rmdir /var/store

fingerprint() {
  find /var/[A-Z]* -printf '%p %i %s %m %y %T@ %C@\n' | sort | sha256sum
}

before=$(fingerprint)
run check
expect "a new store is clean" "$out/$err/$status" "//0"
run check --repair
expect "there is nothing to repair" "$out/$err/$status" "//0"
expect "nothing changed" "$(fingerprint)" "$before"

# Three tables that take instances.
root=$(basename /var/[A-Z]*)
tables=
for template in /var/"$root"/*/0 /var/"$root"/*/*/0; do
  [ "$(wc -w <<<"$tables")" -lt 3 ] || break
  table=${template#/var/"$root"/} table=${table%/0}
  instance=$("$zrcfg" add "$root.${table//\//.}" 2>/dev/null) && "$zrcfg" del "$instance" &&
    tables+=" ${table//\//.}"
done
expect "there are tables" "$(wc -w <<<"$tables" | tr -d ' ')" "3"
run check
expect "adding and deleting leaves it clean" "$out/$err/$status" "//0"

# Clients add and delete while the store is checked.
(
  for round in {1..8}; do
    for table in $tables; do
      instance=$("$zrcfg" add "$root.$table") && "$zrcfg" del "$instance" || exit 1
    done
  done
) >/var/out_clients 2>&1 &
clients=$!
rounds=0
wrong=0
while kill -0 "$clients" 2>/dev/null; do
  run check
  [ "$status" -eq 0 ] || { wrong=$((wrong + 1)); printf '%s\n%s\n' "$out" "$err"; }
  rounds=$((rounds + 1))
done
wait "$clients"
expect "the clients" "$?" "0"
expect "clean all the time" "$wrong of $([ $rounds -gt 0 ] && echo some)" "0 of some"

# An instance more in each table, and then its creation undone in part.
found=
for table in $tables; do
  instance=$("$zrcfg" add "$root.$table")
  directory=/var/${instance//./\/}
  rm -r "${directory:?}"
  mkdir "$directory"
  found+="$instance: file-missing,"
done
run check
expect "what is left of them is found" \
  "$(sed -n 's/^\(.*: file-missing\): .*/\1/p' /var/out | sort | paste -sd,)/$status" \
  "$(tr , '\n' <<<"${found%,}" | sort | paste -sd,)/1"
for table in $tables; do
  instance=$(grep -o "^$root\.$table\.[0-9]*\.: file-missing" /var/out | head -1)
  "$zrcfg" del "${instance%: *}" || expect "deleted" "${instance}" ""
done
run check
expect "deleting them mends it" "$out/$err/$status" "//0"
finish

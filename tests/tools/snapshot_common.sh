# Shared by the tests of watch, snapshot, restore and diff: a store with tables, and what its files hold.
. "$(dirname "$0")/common.sh"
export LC_ALL=C

# make_table DIR COUNTER ACCESS: a table with a template, counted in the parent P; ACCESS is its flag
# byte: 10 dynamic, 00 fixed.
make_table() {
  make_object "$1"
  poke_header "$1" 5 63
  poke_header "$1" 8 "$3"
  printf 'P/%s' "$2" | dd of="/var/$1/property.conf" bs=1 seek=$((4 + 76)) conv=notrunc 2>/dev/null
  make_object "$1/0" Name=new Note=
  make_object "$1/0/Sub" Inner=x
}

# P. with two plain parameters, a dynamic table P.T. with the instances 1 and 2, a fixed table P.F.
# with instance 1, and an object P.Last.; Q. is another root.
make_store() {
  make_object P TNumberOfEntries=0 One=1 Two=
  make_table P/T TNumberOfEntries 10
  make_table P/F None 00
  cp -r /var/P/F/0 /var/P/F/1
  make_object P/Last Mark=0
  make_object Q Some=thing
  mkdir -p /var/log/deep
  printf 'add P.T\nadd P.T\n' | "$zrcfg" batch >/dev/null
}

# The store's files: which each is, its bytes, and when it was last written or changed otherwise.
fingerprint() {
  (cd /var && find P Q -printf '%p %i %s %C@\n' 2>/dev/null | sort && sort_of_files | md5sum)
}

sort_of_files() {
  find P Q -type f 2>/dev/null | sort | xargs cat
}

# Its bytes only.
content() {
  (cd /var && find P Q | sort | xargs md5sum 2>/dev/null; find P Q -type d | sort)
}

// check: what lies in an object's directory and belongs to no object.
#include <errno.h>
#include <stdio.h>
#include <string.h>

#include "core/store_file.h"
#include "tools/store/directory_names.h"
#include "tools/zrcfg/check/check.h"

namespace zrcfg_tool {

using zrcfg_store::Entry;
using zrcfg_store::EntryKind;
using zrcfg_store::ObjectPlace;

namespace {

// The path of a file or directory that has no URL.
struct EntryPath {
  char text[sizeof zrcfg::kStoreRoot + zrcfg::kUrlSize + 256];

  EntryPath(const ObjectPlace &place, const char *name) {
    (void)snprintf(text, sizeof text, "%s%s%s", zrcfg::kStoreRoot, place.path, name);  // Fits.
  }
};

void find_stray_directory(Check &check, const ObjectPlace &place, const char *name) {
  const EntryPath path(place, name);
  if (strchr(name, '.') != nullptr) {
    check.findings.add(Problem::kStrayDirectory, path.text, "no object's name has a dot");
    return;
  }
  ObjectPlace child = place;
  if (!child.enter(name)) {
    check.findings.add(Problem::kPathTooLong, path.text,
                       "its URL would have more than 255 characters");
    return;
  }
  if (zrcfg_store::is_instance_name(name) && name[0] == '0' && name[1] != '\0') {
    check.findings.add(Problem::kStrayDirectory, path.text,
                       "no instance's number begins with a zero");
  }
}

}  // namespace

void find_stray_entries(Check &check, const ObjectPlace &place) {
  zrcfg_store::DirectoryNames names(check.root_fd, place.path);
  for (const Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    const bool is_property_file = strcmp(entry->name, zrcfg::kPropertyFileName) == 0;
    if (entry->kind == EntryKind::kDirectory && !is_property_file) {
      find_stray_directory(check, place, entry->name);
    } else if (!is_property_file) {
      check.findings.add(Problem::kStrayFile, EntryPath(place, entry->name).text, "%s",
                         entry->kind == EntryKind::kFile   ? "a file that no object has"
                         : entry->kind == EntryKind::kLink ? "a symbolic link"
                                                           : "a special file");
    }
    check.findings.print();
  }
  if (names.error() == ENOMEM) {
    check.findings.add(Problem::kDirectoryUnreadable, place.url, "not enough memory to read it");
  } else if (names.error() != 0 && names.error() != ENOENT) {
    check.findings.add(Problem::kDirectoryUnreadable, place.url, "the directory cannot be read: %s",
                       strerror(names.error()));
  }
  check.findings.print();
}

}  // namespace zrcfg_tool

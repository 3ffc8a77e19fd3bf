// The choice of a new instance's number.
#include "lifecycle/free_number.h"

#include <dirent.h>
#include <string.h>
#include <unistd.h>

#include "core/decimal_text.h"
#include "core/store_file.h"
#include "core/trace.h"
#include "lifecycle/dir_reader.h"

namespace zrcfg {
namespace {

constexpr int kHighestNumber = 255;  // `max_instance` is a byte.
constexpr int kTriedOneByOne = 4;

// The number that a directory's name stands for exactly, or 0.
int instance_number(const char *name) {
  const bool exact = name[0] != '0' && name[strspn(name, "0123456789")] == '\0';
  return exact ? decimal_value(name) : 0;
}

// The numbers of which a table certainly has directories. Of others an attempt has to show it.
struct TakenNumbers {
  bool has[kHighestNumber + 1] = {};

  void read(const Table &table) {
    const int fd = open_store_file(table.dir.text, kDirFlags);
    if (fd == -1) {
      return;
    }
    DirReader reader(fd);
    for (const DirEntry *entry = reader.next(); entry != nullptr; entry = reader.next()) {
      const int number = entry->type == DT_DIR ? instance_number(entry->name) : 0;
      if (number <= kHighestNumber) {
        has[number] = true;
      }
    }
    (void)close(fd);  // Only read.
  }
};

}  // namespace

int choose_free_number(const Table &table) {
  const int limit = table.header().max_instance;
  TakenNumbers taken;
  for (int number = 1; number <= limit; ++number) {
    if (number == kTriedOneByOne + 1) {
      taken.read(table);  // So a full table does not cost an attempt for each instance.
    }
    if (taken.has[number]) {
      continue;
    }
    const InstancePath candidate(table.dir, number);
    if (candidate.is_free()) {
      ZRCFG_TRACE("%s is not exist, use it.\n", candidate.text);
      return number;
    }
  }
  return 0;
}

}  // namespace zrcfg

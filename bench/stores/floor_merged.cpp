// The same results, files and locks as the floor, with the fewest system calls that give them.
//
// What is kept because another process can see it: which file is locked, in which mode and for how
// long; the explicit unlock (a forked child holds a copy of the descriptor); one write of the value
// section; what is created, in which order. What is folded: an opening that succeeds is the
// existence test, one read serves header, records and values, and a file that is its own lock file
// is opened once.
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "bench/stores/floor_work.h"

namespace bench {
namespace {

using namespace floor_work;

File g_file;
Section g_section;

// A locked file, and whether it is the object's own property file.
struct Locked {
  int fd;
  bool own;
};

Locked lock(const Path &dir, int operation, int own_flags) {
  Locked locked = {-1, false};
  for (size_t at = next_number(dir, 0); at != 0; at = next_number(dir, at + 1)) {
    const Path lock_dir = template_at(dir, at);
    locked.own = strcmp(lock_dir.text, dir.text) == 0;
    locked.fd = open(property_of(lock_dir).text, (locked.own ? own_flags : O_RDONLY) | O_CLOEXEC);
    if (locked.fd != -1) {
      break;
    }
  }
  if (locked.fd == -1) {
    locked.own = true;
    locked.fd = open(property_of(dir).text, own_flags | O_CLOEXEC);
  }
  if (locked.fd != -1 && flock(locked.fd, operation) != 0) {
    close(locked.fd);
    locked.fd = -1;
  }
  return locked;
}

void unlock(const Locked &locked) {
  flock(locked.fd, LOCK_UN);
  close(locked.fd);
}

bool load(int fd) {
  const ssize_t got = pread(fd, g_file.bytes, sizeof g_file.bytes, 0);
  g_file.size = got > 0 ? static_cast<size_t>(got) : 0;
  return g_file.parse();
}

// Reads the property file of `dir` inside its lock and runs `work` with its descriptor.
template <typename Work>
bool with_file(const Locked &locked, const Path &dir, int flags, Work work) {
  if (locked.own) {
    return load(locked.fd) && work(locked.fd);
  }
  const int fd = open(property_of(dir).text, flags | O_CLOEXEC);
  if (fd == -1) {
    return false;
  }
  const bool done = load(fd) && work(fd);
  close(fd);
  return done;
}

template <typename Work>
bool with_object(const Path &dir, int lock_operation, int flags, Work work) {
  const Locked locked = lock(dir, lock_operation, flags);
  if (locked.fd == -1) {
    return false;
  }
  const bool done = with_file(locked, dir, flags, work);
  unlock(locked);
  return done;
}

bool store(int fd) {
  const off_t at = static_cast<off_t>(g_file.section_at);
  const size_t new_size = g_file.section_at + g_section.size;
  return pwrite(fd, g_section.bytes, g_section.size, at) == static_cast<ssize_t>(g_section.size) &&
         (new_size >= g_file.size || ftruncate(fd, static_cast<off_t>(new_size)) == 0);
}

bool create(const Tree &, const char *) {
  return true;
}

bool open_store() {
  return true;
}

void close_store() {}

bool read(const char *url, const char *name, char *value) {
  return with_object(dir_of_url(url), LOCK_SH, O_RDONLY,
                     [&](int) { return read_value(g_file, name, value); });
}

bool write(const char *url, const char *name, const char *value) {
  return with_object(dir_of_url(url), LOCK_EX, O_RDWR, [&](int fd) {
    bool changed = false;
    return replace_value(g_file, name, value, g_section, changed) && (!changed || store(fd));
  });
}

bool read_many(const char *url, ParamValueEntry *list) {
  return with_object(dir_of_url(url), LOCK_SH, O_RDONLY,
                     [&](int) { return read_values(g_file, list); });
}

bool write_many(const char *url, ParamValueEntry *list) {
  return with_object(dir_of_url(url), LOCK_EX, O_RDWR,
                     [&](int fd) { return replace_values(g_file, list, g_section) && store(fd); });
}

bool list_values(const char *url, Visit visit, void *context) {
  ParamValueListNode *head = nullptr;
  const bool done = with_object(dir_of_url(url), LOCK_SH, O_RDONLY, [&](int) {
    head = make_value_list(g_file, url);
    return head != nullptr;
  });
  visit_values(head, visit, context);
  return done;
}

struct KernelEntry {
  ino64_t d_ino;
  off64_t d_off;
  unsigned short d_reclen;
  unsigned char d_type;
  char d_name[];
};

// Calls `visit` for each entry of an open directory but the two of dots.
template <typename Visit>
bool for_each_entry(int dir_fd, Visit visit) {
  alignas(KernelEntry) char block[8192];
  bool good = true;
  for (;;) {
    const long got = syscall(SYS_getdents64, dir_fd, block, sizeof block);
    if (got <= 0) {
      return got == 0 && good;
    }
    for (long at = 0; at < got;) {
      const KernelEntry *const entry = reinterpret_cast<const KernelEntry *>(block + at);
      at += entry->d_reclen;
      if (strcmp(entry->d_name, ".") != 0 && strcmp(entry->d_name, "..") != 0) {
        good = visit(*entry) && good;
      }
    }
  }
}

bool list_names(const Path &dir, Names &names) {
  names.count = 0;
  const int fd = open(dir.text, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd == -1) {
    return false;
  }
  const bool done = for_each_entry(fd, [&](const KernelEntry &entry) {
    if (entry.d_type == DT_DIR) {
      names.add(entry.d_name);
    }
    return true;
  });
  close(fd);
  names.sort();
  return done;
}

// The object's lock is taken for its parameters and once more for its sub-objects, on one opening
// of the lock file.
bool enumerate_object(const Path &dir, const char *url, NodeList &list) {
  const Locked locked = lock(dir, LOCK_SH, O_RDONLY);
  if (locked.fd == -1) {
    return false;
  }
  bool hidden = false;
  Names names;
  names.count = 0;
  bool done = with_file(locked, dir, O_RDONLY, [&](int) {
    hidden = g_file.object_hidden();
    return hidden || append_nodes(g_file, url, list);
  });
  flock(locked.fd, LOCK_UN);
  if (done && !hidden) {
    done = flock(locked.fd, LOCK_SH | LOCK_NB) == 0 && list_names(dir, names);
    flock(locked.fd, LOCK_UN);
  }
  close(locked.fd);
  for (size_t i = 0; done && i < names.count; ++i) {
    char child[kPathSize];
    const size_t url_length = strlen(url);
    const size_t length = strlen(names.text[i]);
    memcpy(child, url, url_length);
    memcpy(child + url_length, names.text[i], length);
    memcpy(child + url_length + length, ".", 2);
    Path child_dir = dir;
    child_dir.append(names.text[i], length);
    child_dir.append("/", 1);
    done = enumerate_object(child_dir, child, list);
  }
  return done;
}

bool enumerate(const char *url, Visit visit, void *context) {
  NodeList list;
  const bool done = enumerate_object(dir_of_url(url), url, list);
  visit_nodes(list.head, visit, context);
  return done;
}

bool copy_file(int from_dir, const char *name, const char *to) {
  char block[16384];
  const int in = openat(from_dir, name, O_RDONLY | O_CLOEXEC);
  const int out = open(to, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  bool good = in != -1 && out != -1;
  for (ssize_t got = sizeof block; good && got == sizeof block;) {
    got = ::read(in, block, sizeof block);
    good = got >= 0 && ::write(out, block, static_cast<size_t>(got)) == got;
  }
  close(in);
  close(out);
  return good;
}

// Copies what is in an open directory to the directory `to`, which exists.
bool copy_children(int from_dir, const Path &to) {
  return for_each_entry(from_dir, [&](const KernelEntry &entry) {
    Path target = to;
    target.append("/", 1);
    target.append(entry.d_name);
    if (entry.d_type != DT_DIR) {
      return copy_file(from_dir, entry.d_name, target.text);
    }
    const int fd = openat(from_dir, entry.d_name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool good = fd != -1 && mkdir(target.text, 0755) == 0 && copy_children(fd, target);
    close(fd);
    return good;
  });
}

bool remove_tree(int parent, const char *name) {
  const int fd = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (fd == -1) {
    return false;
  }
  const bool emptied = for_each_entry(fd, [&](const KernelEntry &entry) {
    return entry.d_type == DT_DIR ? remove_tree(fd, entry.d_name)
                                  : unlinkat(fd, entry.d_name, 0) == 0;
  });
  close(fd);
  return unlinkat(parent, name, AT_REMOVEDIR) == 0 && emptied;
}

struct Table {
  Path dir;
  char counter[64];
  unsigned limit;
  Locked locked;
  int template_fd;  // The template's directory: its opening is the test for it.

  Path instance(unsigned number) const {
    Path path = dir;
    char text[16];
    snprintf(text, sizeof text, "%u", number);
    path.append(text);
    return path;
  }
  void release() const {
    close(template_fd);
    unlock(locked);
  }
};

bool open_table(const char *url, Table &table) {
  table.dir = dir_of_url(url);
  Path template_dir = table.dir;
  template_dir.append("0/");
  table.locked = lock(template_dir, LOCK_EX, O_RDONLY);
  const int fd = open(property_of(table.dir).text, O_RDONLY | O_CLOEXEC);
  const bool loaded = table.locked.fd != -1 && fd != -1 && load(fd);
  close(fd);
  if (!loaded || g_file.object_rw() == 0) {
    return false;
  }
  snprintf(table.counter, sizeof table.counter, "%s", g_file.counter());
  table.limit = g_file.max_instance();
  table.template_fd = open(template_dir.text, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  return table.template_fd != -1;
}

bool count(const Table &table, int step) {
  Path parent = table.dir;
  parent.text[parent.length - 1] = '\0';
  parent.length = static_cast<size_t>(strrchr(parent.text, '/') + 1 - parent.text);
  parent.text[parent.length] = '\0';
  return with_object(parent, LOCK_EX, O_RDWR, [&](int fd) {
    char value[256] = "";
    bool changed = false;
    if (!read_value(g_file, table.counter, value)) {
      return false;
    }
    snprintf(value, sizeof value, "%d", atoi(value) + step);
    return replace_value(g_file, table.counter, value, g_section, changed) &&
           (!changed || store(fd));
  });
}

// Marks the instances that a table has, with one reading of its directory.
void mark_taken(const Path &dir, bool (&taken)[256]) {
  const int fd = open(dir.text, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  for_each_entry(fd, [&](const KernelEntry &entry) {
    const unsigned number = static_cast<unsigned>(atoi(entry.d_name));
    if (number < 256) {
      taken[number] = true;
    }
    return true;
  });
  close(fd);
}

// Makes the directory of the lowest free number: the first few are tried, then the directory is
// read, so that a full table does not cost a try for each instance.
unsigned make_instance(const Table &table) {
  constexpr unsigned kTries = 4;
  bool taken[256] = {};
  for (unsigned number = 1; number <= table.limit; ++number) {
    if (number == kTries + 1) {
      mark_taken(table.dir, taken);
    }
    if (!taken[number] && mkdir(table.instance(number).text, 0755) == 0) {
      return number;
    }
  }
  return table.limit + 1;
}

bool add(const char *url, uint32_t *index) {
  Table table;
  if (!open_table(url, table)) {
    return false;
  }
  const unsigned number = make_instance(table);
  const bool copied =
      number <= table.limit && copy_children(table.template_fd, table.instance(number));
  table.release();
  *index = number;
  return copied && count(table, 1);
}

bool remove(const char *url, uint32_t index) {
  Table table;
  if (!open_table(url, table)) {
    return false;
  }
  const bool removed = remove_tree(AT_FDCWD, table.instance(index).text);
  table.release();
  return removed && count(table, -1);
}

}  // namespace

const Store kFloorMergedStore = {"floor-merged", create,    open_store, close_store,
                                 read,           write,     read_many,  write_many,
                                 list_values,    enumerate, add,        remove};

}  // namespace bench

// The bare system calls that the store's contract speaks of, each access kept: existence is tested
// before every opening, and the value section is read a second time.
#include <dirent.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "bench/stores/floor_work.h"

namespace bench {
namespace {

using namespace floor_work;

File g_file;
Section g_section;

bool exists(const Path &path) {
  return access(path.text, F_OK) == 0;
}

Path lock_dir_of(const Path &dir) {
  for (size_t at = next_number(dir, 0); at != 0; at = next_number(dir, at + 1)) {
    const Path candidate = template_at(dir, at);
    if (exists(candidate)) {
      return candidate;
    }
  }
  return dir;
}

int lock(const Path &dir, int operation) {
  const Path file = property_of(lock_dir_of(dir));
  if (!exists(file)) {
    return -1;
  }
  const int fd = open(file.text, O_RDONLY | O_CLOEXEC);
  if (fd != -1 && flock(fd, operation) != 0) {
    close(fd);
    return -1;
  }
  return fd;
}

void unlock(int fd) {
  flock(fd, LOCK_UN);
  close(fd);
}

// Opens and reads the property file of `dir`; -1 when there is none that can be used.
int load(const Path &dir, int flags) {
  const Path path = property_of(dir);
  if (!exists(path)) {
    return -1;
  }
  const int fd = open(path.text, flags | O_CLOEXEC);
  if (fd == -1) {
    return -1;
  }
  const ssize_t got = pread(fd, g_file.bytes, sizeof g_file.bytes, 0);
  g_file.size = got > 0 ? static_cast<size_t>(got) : 0;
  if (!g_file.parse()) {
    close(fd);
    return -1;
  }
  return fd;
}

bool reread_section(int fd) {
  const ssize_t got =
      pread(fd, g_file.bytes + g_file.section_at, sizeof g_file.bytes - g_file.section_at,
            static_cast<off_t>(g_file.section_at));
  g_file.size = g_file.section_at + static_cast<size_t>(got > 0 ? got : 0);
  return got >= 0;
}

bool store(int fd) {
  const off_t at = static_cast<off_t>(g_file.section_at);
  const size_t new_size = g_file.section_at + g_section.size;
  return pwrite(fd, g_section.bytes, g_section.size, at) == static_cast<ssize_t>(g_section.size) &&
         (new_size >= g_file.size || ftruncate(fd, static_cast<off_t>(new_size)) == 0);
}

// Locks, reads, runs `work` with the property file's descriptor, closes and unlocks.
template <typename Work>
bool with_object(const Path &dir, int lock_operation, int flags, Work work) {
  const int lock_fd = lock(dir, lock_operation);
  if (lock_fd == -1) {
    return false;
  }
  const int fd = load(dir, flags);
  const bool done = fd != -1 && work(fd);
  if (fd != -1) {
    close(fd);
  }
  unlock(lock_fd);
  return done;
}

template <typename Work>
bool read_with(const char *url, Work work) {
  return with_object(dir_of_url(url), LOCK_SH, O_RDONLY,
                     [&](int fd) { return reread_section(fd) && work(); });
}

bool write_one(const Path &dir, const char *name, const char *value) {
  return with_object(dir, LOCK_EX, O_RDWR, [&](int fd) {
    bool changed = false;
    return reread_section(fd) && replace_value(g_file, name, value, g_section, changed) &&
           (!changed || store(fd));
  });
}

bool create(const Tree &, const char *) {
  return true;
}

bool open_store() {
  return true;
}

void close_store() {}

bool read(const char *url, const char *name, char *value) {
  return read_with(url, [&] { return read_value(g_file, name, value); });
}

bool write(const char *url, const char *name, const char *value) {
  return write_one(dir_of_url(url), name, value);
}

bool read_many(const char *url, ParamValueEntry *list) {
  return read_with(url, [&] { return read_values(g_file, list); });
}

bool write_many(const char *url, ParamValueEntry *list) {
  return with_object(dir_of_url(url), LOCK_EX, O_RDWR, [&](int fd) {
    return reread_section(fd) && replace_values(g_file, list, g_section) && store(fd);
  });
}

bool list_values(const char *url, Visit visit, void *context) {
  ParamValueListNode *head = nullptr;
  const bool done = read_with(url, [&] {
    head = make_value_list(g_file, url);
    return head != nullptr;
  });
  visit_values(head, visit, context);
  return done;
}

bool list_names(const Path &dir, Names &names) {
  const int lock_fd = lock(dir, LOCK_SH | LOCK_NB);
  if (lock_fd == -1) {
    return false;
  }
  names.count = 0;
  DIR *const stream = opendir(dir.text);
  if (stream != nullptr) {
    for (const dirent *entry = readdir(stream); entry != nullptr; entry = readdir(stream)) {
      if (entry->d_type == DT_DIR && entry->d_name[0] != '.') {
        names.add(entry->d_name);
      }
    }
    closedir(stream);
  }
  unlock(lock_fd);
  names.sort();
  return stream != nullptr;
}

bool enumerate_object(const char *url, NodeList &list) {
  const Path dir = dir_of_url(url);
  bool hidden = false;
  if (!with_object(dir, LOCK_SH, O_RDONLY, [&](int) {
        hidden = g_file.object_hidden();
        return hidden || append_nodes(g_file, url, list);
      })) {
    return false;
  }
  Names names;
  if (hidden || !list_names(dir, names)) {
    return hidden;
  }
  for (size_t i = 0; i < names.count; ++i) {
    char child[kPathSize];
    snprintf(child, sizeof child, "%s%s.", url, names.text[i]);
    if (!enumerate_object(child, list)) {
      return false;
    }
  }
  return true;
}

bool enumerate(const char *url, Visit visit, void *context) {
  NodeList list;
  const bool done = enumerate_object(url, list);
  visit_nodes(list.head, visit, context);
  return done;
}

bool copy_file(const char *from, const char *to) {
  if (access(from, R_OK) != 0 || access(to, F_OK) == 0) {
    return false;
  }
  const int in = open(from, O_RDONLY | O_CLOEXEC);
  const int out = open(to, O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
  bool good = in != -1 && out != -1;
  while (good) {
    char block[16384];
    const ssize_t got = ::read(in, block, sizeof block);
    if (got <= 0) {
      good = got == 0;
      break;
    }
    good = ::write(out, block, static_cast<size_t>(got)) == got;
  }
  close(in);
  close(out);
  return good;
}

bool copy_tree(const char *from, const char *to) {
  struct stat status;
  if (stat(from, &status) != 0) {
    return false;
  }
  if (!S_ISDIR(status.st_mode)) {
    return copy_file(from, to);
  }
  DIR *const stream = opendir(from);
  bool good = stream != nullptr && mkdir(to, 0755) == 0;
  while (good) {
    const dirent *const entry = readdir(stream);
    if (entry == nullptr) {
      break;
    }
    if (entry->d_name[0] != '.') {
      char source[kPathSize * 2];
      char target[kPathSize * 2];
      snprintf(source, sizeof source, "%s/%s", from, entry->d_name);
      snprintf(target, sizeof target, "%s/%s", to, entry->d_name);
      good = copy_tree(source, target);
    }
  }
  if (stream != nullptr) {
    closedir(stream);
  }
  return good;
}

bool remove_tree(const char *path) {
  DIR *const stream = opendir(path);
  if (stream == nullptr) {
    return unlink(path) == 0;
  }
  bool good = true;
  for (const dirent *entry = readdir(stream); entry != nullptr; entry = readdir(stream)) {
    if (entry->d_name[0] != '.') {
      char child[kPathSize * 2];
      snprintf(child, sizeof child, "%s/%s", path, entry->d_name);
      good = remove_tree(child) && good;
    }
  }
  closedir(stream);
  return rmdir(path) == 0 && good;
}

// A table whose instances come or go: its directory, its counter, and the lock that is held.
struct Table {
  Path dir;
  char counter[64];
  unsigned limit;
  int lock_fd;

  Path instance(unsigned number) const {
    Path path = dir;
    char text[16];
    snprintf(text, sizeof text, "%u", number);
    path.append(text);
    return path;
  }
};

bool open_table(const char *url, Table &table) {
  table.dir = dir_of_url(url);
  Path template_dir = table.dir;
  template_dir.append("0/");
  table.lock_fd = lock(template_dir, LOCK_EX);
  const int fd = table.lock_fd == -1 ? -1 : load(table.dir, O_RDONLY);
  if (fd == -1) {
    return false;
  }
  close(fd);
  snprintf(table.counter, sizeof table.counter, "%s", g_file.counter());
  table.limit = g_file.max_instance();
  return g_file.object_rw() != 0 && exists(table.instance(0));
}

bool count(const Table &table, int step) {
  Path parent = table.dir;
  parent.text[parent.length - 1] = '\0';
  parent.length = static_cast<size_t>(strrchr(parent.text, '/') + 1 - parent.text);
  parent.text[parent.length] = '\0';
  return with_object(parent, LOCK_EX, O_RDWR, [&](int fd) {
    char value[256] = "";
    bool changed = false;
    if (!reread_section(fd) || !read_value(g_file, table.counter, value)) {
      return false;
    }
    snprintf(value, sizeof value, "%d", atoi(value) + step);
    return replace_value(g_file, table.counter, value, g_section, changed) &&
           (!changed || store(fd));
  });
}

bool add(const char *url, uint32_t *index) {
  Table table;
  if (!open_table(url, table)) {
    return false;
  }
  unsigned number = 1;
  while (number <= table.limit && exists(table.instance(number))) {
    ++number;
  }
  const bool copied =
      number <= table.limit && copy_tree(table.instance(0).text, table.instance(number).text);
  unlock(table.lock_fd);
  *index = number;
  return copied && count(table, 1);
}

bool remove(const char *url, uint32_t index) {
  Table table;
  if (!open_table(url, table)) {
    return false;
  }
  const Path instance = table.instance(index);
  const bool removed = exists(instance) && remove_tree(instance.text);
  unlock(table.lock_fd);
  return removed && count(table, -1);
}

}  // namespace

const Store kFloorStore = {"floor",   create,     open_store,  close_store, read, write,
                           read_many, write_many, list_values, enumerate,   add,  remove};

}  // namespace bench

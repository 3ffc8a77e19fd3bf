// What both floors do in memory: paths, and values in the bytes of a property file.
#ifndef ZRCFG_BENCH_STORES_FLOOR_WORK_H_
#define ZRCFG_BENCH_STORES_FLOOR_WORK_H_

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#include "bench/store.h"

namespace bench::floor_work {

inline constexpr size_t kPathSize = 320;
inline constexpr size_t kFileSize = 100000;  // 255 records with values of full length.
inline constexpr size_t kHeaderAt = 4;
inline constexpr size_t kRecordsAt = 188;
inline constexpr size_t kRecordSize = 124;

// A path below the store root, by its length so that something can be put behind it.
struct Path {
  char text[kPathSize];
  size_t length;

  void append(const char *suffix, size_t suffix_length);
  void append(const char *suffix);
};

// The directory of a URL, and its property file.
Path dir_of_url(const char *url);
Path property_of(const Path &dir);

// Visits the places where a template may own the lock of `dir`: position behind each "/" that an
// instance number follows, from `from` on; 0 when there is none.
size_t next_number(const Path &dir, size_t from);
// The template that stands beside the instance at that position.
Path template_at(const Path &dir, size_t position);

// A property file's bytes as they were read.
struct File {
  char bytes[kFileSize];
  size_t size;
  size_t section_at;
  size_t records;

  // Finds out where things lie once `size` bytes have been read.
  bool parse();
  const char *record(size_t i) const { return bytes + kRecordsAt + i * kRecordSize; }
  const char *name(size_t i) const { return record(i) + 8; }
  unsigned rw(size_t i) const { return static_cast<uint8_t>(record(i)[4]) >> 6; }
  unsigned object_rw() const { return static_cast<uint8_t>(bytes[kHeaderAt + 8]) >> 4 & 3u; }
  bool hidden(size_t i) const;
  bool object_hidden() const;
  unsigned max_instance() const { return static_cast<uint8_t>(bytes[kHeaderAt + 5]); }
  const char *counter() const;
};

// The new value section of a write.
struct Section {
  char bytes[kFileSize];
  size_t size;
};

bool read_value(const File &file, const char *name, char *value);
// Builds the section with one value replaced. False for an unknown name; `changed` tells whether
// anything is to be written.
bool replace_value(const File &file, const char *name, const char *value, Section &section,
                   bool &changed);
bool read_values(const File &file, ParamValueEntry *list);
// Replaces the values of a list; each node learns the old value and the parameter's attributes.
bool replace_values(const File &file, ParamValueEntry *list, Section &section);
// Builds the list of all visible parameters as the library hands it out; null without memory.
ParamValueListNode *make_value_list(const File &file, const char *url);

// A list of objects and parameters while it is built.
struct NodeList {
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
};
// Appends an object and its visible parameters.
bool append_nodes(const File &file, const char *url, NodeList &list);

void visit_values(ParamValueListNode *node, Visit visit, void *context);
void visit_nodes(NODE_INFO *node, Visit visit, void *context);

// The names of sub-objects: numbers by value first, then names in byte order, no template.
struct Names {
  static constexpr size_t kMost = 512;
  char text[kMost][64];
  size_t count;

  void add(const char *name);
  void sort();
};

}  // namespace bench::floor_work

#endif  // ZRCFG_BENCH_STORES_FLOOR_WORK_H_

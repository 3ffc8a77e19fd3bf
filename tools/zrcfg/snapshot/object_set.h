// Objects with the bytes of their property files, in the order of the tree.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_OBJECT_SET_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_OBJECT_SET_H_

#include <stddef.h>
#include <stdint.h>

#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/object_url.h"

namespace zrcfg_tool {

// Parents before children, instances by number before other names: the order in which a store is
// walked over. Below 0, 0 or above.
int compare_urls(const char *a, const char *b);

// Whether an object is `scope` or lies below it; "" is the whole store.
bool is_within(const char *url, const char *scope);

// Whether the URL is that of an instance of a table, the template not counted.
bool is_instance_url(const char *url);

class ObjectSet {
 public:
  static constexpr size_t kNone = SIZE_MAX;

  ObjectSet() = default;
  ~ObjectSet();
  ObjectSet(const ObjectSet &) = delete;
  ObjectSet &operator=(const ObjectSet &) = delete;

  // Appends an object; its URL and bytes are copied. Reports and returns false without memory.
  bool add(const char *url, const char *bytes, size_t size);
  // Brings the objects into their order, for those that were not added in it.
  void sort();
  // Forgets all objects.
  void clear();

  size_t count() const { return count_; }
  const char *url(size_t i) const { return pool_.at + entries_[i].at; }
  // The file's bytes, with a zero byte behind them.
  char *bytes(size_t i) const { return pool_.at + entries_[i].at + entries_[i].url_size; }
  size_t size(size_t i) const { return entries_[i].size; }

  // The object of that URL; kNone for none.
  size_t find(const char *url) const;

 private:
  struct Entry {
    size_t at;        // In the pool: the URL, behind its terminator the bytes.
    size_t url_size;  // With its terminator.
    size_t size;
  };

  Bytes pool_;
  Entry *entries_ = nullptr;
  size_t count_ = 0;
  size_t capacity_ = 0;
};

// Whether both have the same objects; and with the same bytes.
bool same_objects(const ObjectSet &a, const ObjectSet &b);
bool same_content(const ObjectSet &a, const ObjectSet &b);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_OBJECT_SET_H_

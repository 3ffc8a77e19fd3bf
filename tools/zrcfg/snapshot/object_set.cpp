// Objects with the bytes of their property files, in the order of the tree.
#include "tools/zrcfg/snapshot/object_set.h"

#include <stdlib.h>
#include <string.h>

#include "tools/store/directory_names.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

constexpr size_t kFirstCapacity = 256;

// One component of a URL, terminated.
struct Component {
  char name[ZRCFG_URL_SIZE];

  // Takes the component that `at` begins with; returns what is behind its dot.
  const char *take(const char *at) {
    const size_t length = strcspn(at, ".");
    memcpy(name, at, length);
    name[length] = '\0';
    return at + length + (at[length] == '.' ? 1 : 0);
  }
};

}  // namespace

int compare_urls(const char *a, const char *b) {
  while (*a != '\0' && *b != '\0') {
    Component left;
    Component right;
    a = left.take(a);
    b = right.take(b);
    const int order = zrcfg_store::compare_names(left.name, right.name);
    if (order != 0) {
      return order;
    }
  }
  return (*a != '\0' ? 1 : 0) - (*b != '\0' ? 1 : 0);
}

bool is_within(const char *url, const char *scope) {
  return strncmp(url, scope, strlen(scope)) == 0;
}

bool is_instance_url(const char *url) {
  ObjectUrl whole;
  InstanceName instance;
  const size_t length = strlen(url);
  memcpy(whole.text, url, length + 1);
  return split_instance(whole, instance) && instance.index != 0;
}

ObjectSet::~ObjectSet() {
  free(entries_);
}

bool ObjectSet::add(const char *url, const char *bytes, size_t size) {
  if (count_ == capacity_) {
    const size_t grown = capacity_ == 0 ? kFirstCapacity : 2 * capacity_;
    void *const block = realloc(entries_, grown * sizeof(Entry));
    if (block == nullptr) {
      complain("out of memory");
      return false;
    }
    entries_ = static_cast<Entry *>(block);
    capacity_ = grown;
  }
  const Entry entry = {pool_.size, strlen(url) + 1, size};
  if (!pool_.append(url, entry.url_size) || !pool_.append(bytes, size) || !pool_.append('\0')) {
    return false;
  }
  entries_[count_++] = entry;
  return true;
}

void ObjectSet::sort() {
  if (count_ == 0) {
    return;  // Without a block to sort.
  }
  const auto compare = [](const void *a, const void *b, void *pool) {
    const char *const urls = static_cast<const char *>(pool);
    return compare_urls(urls + static_cast<const Entry *>(a)->at,
                        urls + static_cast<const Entry *>(b)->at);
  };
  qsort_r(entries_, count_, sizeof(Entry), compare, pool_.at);
}

void ObjectSet::clear() {
  pool_.size = 0;
  count_ = 0;
}

size_t ObjectSet::find(const char *wanted) const {
  size_t first = 0;
  size_t end = count_;
  while (first < end) {
    const size_t middle = first + (end - first) / 2;
    const int order = compare_urls(url(middle), wanted);
    if (order == 0) {
      return middle;
    }
    if (order < 0) {
      first = middle + 1;
    } else {
      end = middle;
    }
  }
  return kNone;
}

bool same_objects(const ObjectSet &a, const ObjectSet &b) {
  if (a.count() != b.count()) {
    return false;
  }
  for (size_t i = 0; i < a.count(); ++i) {
    if (strcmp(a.url(i), b.url(i)) != 0) {
      return false;
    }
  }
  return true;
}

bool same_content(const ObjectSet &a, const ObjectSet &b) {
  if (!same_objects(a, b)) {
    return false;
  }
  for (size_t i = 0; i < a.count(); ++i) {
    if (a.size(i) != b.size(i) || memcmp(a.bytes(i), b.bytes(i), a.size(i)) != 0) {
      return false;
    }
  }
  return true;
}

}  // namespace zrcfg_tool

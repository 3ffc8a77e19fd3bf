// The sub-objects of an object: its subdirectories in their fixed order.
#include "enum/sub_objects.h"

#include <errno.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>

#include "core/call_frame.h"
#include "core/checked_url.h"
#include "core/decimal_text.h"
#include "core/export.h"
#include "core/result_list.h"
#include "core/store_file.h"
#include "lock/object_lock.h"

namespace zrcfg {
namespace {

constexpr unsigned char kDirectoryBit = 4;
constexpr size_t kComparedLength = 255;

// The sorted entries of a directory.
struct EntryScan {
  dirent **entries = nullptr;
  int count = -1;  // -1 when the directory could not be read; that is logged.

  explicit EntryScan(const char *dir_path) {
    char path[sizeof(kStoreRoot) + kFilePathSize];
    if (join_path(path, sizeof path, kStoreRoot, dir_path)) {
      count = scandir(path, &entries, nullptr, objsort);
    }
    if (count < 0) {
      ZRCFG_TRACE("unable to get %s sub directory\n", dir_path);
    }
  }
  ~EntryScan() { free_nlist(entries, count); }
  EntryScan(const EntryScan &) = delete;
  EntryScan &operator=(const EntryScan &) = delete;
};

bool is_sub_object(const dirent &entry) {
  return (entry.d_type & kDirectoryBit) != 0 && strcmp(entry.d_name, ".") != 0 &&
         strcmp(entry.d_name, "..") != 0 && strcmp(entry.d_name, "0") != 0;
}

// Whether the path names a directory itself, not a link to one.
bool is_real_directory(const char *path) {
  struct stat status;
  return LSTAT(path, &status) == 0 && S_ISDIR(status.st_mode);
}

struct SubObjectInfo {
  bool visible;
  uint8_t rw;
};

// Opens the sub-object `name` of the object in `dir` and reads what a listing needs of it. One that
// cannot be opened counts as hidden.
SubObjectInfo look_at(const DirPath &dir, const char *name, int timeout) {
  SubObjectInfo info = {false, 0};
  char plain_path[kUrlSize];
  char path[kUrlSize];
  if (!join_path(plain_path, sizeof plain_path, dir.text, name) || !is_real_directory(plain_path) ||
      !join_path(path, sizeof path, plain_path, "/")) {
    return info;
  }
  OpenObject object;
  if (open_object(object, path, ZRCFG_LOCK_SHARED, timeout, Access::kRead) != ZRCFG_OK) {
    return info;
  }
  const ObjectHeader &header = object.loaded.image->header;
  info = {objIsHide(&header) == 0, header_field::kRw.get(header)};
  close_object(object);
  return info;
}

// The list of visible sub-objects. A node without memory is left out, and the tail is then unknown.
struct InfoList {
  ResultList<NODE_INFO> nodes;
  bool tail_known = true;

  void add(const char *url, const char *name, uint8_t rw) {
    NODE_INFO *const node = nodes.append();
    tail_known = node != nullptr;
    if (node == nullptr) {
      ZRCFG_TRACE("malloc NODE_INFO fail.\n");
      return;
    }
    node->rw = rw;
    const int length = snprintf(node->name, sizeof node->name, "%s%s.", url, name);
    if (length >= static_cast<int>(sizeof node->name)) {
      ZRCFG_TRACE("%s%s. is cut!\n", url, name);  // No object's URL is that long.
    }
  }
};

// The number that digits stand for.
int compare_numbers(const char *left, const char *right) {
  const int a = decimal_value(left);
  const int b = decimal_value(right);
  return (a > b) - (a < b);
}

// Whether what is compared of a name consists of digits only.
bool is_compared_number(const char *name) {
  const size_t digits = strspn(name, "0123456789");
  return name[digits] == '\0' || digits >= kComparedLength;
}

}  // namespace

uint32_t list_sub_object_names(const char *url, SubObjName **list, LockFile &lock) {
  DirPath path;
  uint32_t result = check_url_to_path(url, NullText::kExclaimed, path);
  if (result != ZRCFG_OK) {
    return result;
  }
  int lock_fd = -1;
  if (take_object_lock(path.text, lock, &lock_fd, 0, ZRCFG_LOCK_SHARED) != 0) {
    ZRCFG_TRACE("getReadLock fail!\n");
    return ZRCFG_E_LOCK;
  }
  result = constructObjList(path.text, list);
  if (result != ZRCFG_OK) {
    ZRCFG_TRACE("getObjList() fail ret=%d!\n", static_cast<int>(result));
  }
  (void)releaseLock(lock_fd);  // The listing's result is what matters.
  return result;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int is_digit(const char *text) {
  if (text == nullptr) {
    return 0;
  }
  return text[strspn(text, "0123456789")] == '\0' ? 1 : 0;
}

ZRCFG_EXPORT int objsort(const struct dirent **a, const struct dirent **b) {
  const char *const left = (*a)->d_name;
  const char *const right = (*b)->d_name;
  if (is_compared_number(left) && is_compared_number(right)) {
    return compare_numbers(left, right);
  }
  return strncmp(left, right, kComparedLength);
}

ZRCFG_EXPORT void free_nlist(struct dirent **list, int n) {
  if (list == nullptr) {
    return;
  }
  for (int i = 0; i < n; ++i) {
    free(list[i]);
  }
  free(list);
}

ZRCFG_EXPORT uint32_t constructObjList(const char *dirPath, SubObjName **ppList) {
  if (dirPath == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  const EntryScan scan(dirPath);
  if (scan.count < 0) {
    return ZRCFG_E_NOT_FOUND;
  }
  ResultList<SubObjName> list;
  for (int i = 0; i < scan.count; ++i) {
    if (!is_sub_object(*scan.entries[i])) {
      continue;
    }
    SubObjName *const node = list.append();
    if (node == nullptr) {
      ZRCFG_TRACE("objInfo is NULL\n");
      return ZRCFG_E_MEMORY;
    }
    const size_t length = strnlen(scan.entries[i]->d_name, sizeof node->name - 1);
    memcpy(node->name, scan.entries[i]->d_name, length);  // Zeroed before, so terminated.
  }
  list.hand_over(ppList, nullptr);
  return ZRCFG_OK;
}

ZRCFG_EXPORT uint32_t zrcfg_getallsubobj(const char *url, SubObjName **ppList) {
  LockFile lock;
  return list_sub_object_names(url, ppList, lock);
}

ZRCFG_EXPORT int zrcfg_getsubobjinfo(const char *url, NODE_INFO **ppHead, NODE_INFO **ppTail,
                                     int timeout) {
  DirPath dir;
  const uint32_t result = check_url_to_path(url, NullText::kExclaimed, dir);
  if (result != ZRCFG_OK) {
    return static_cast<int>(result);
  }
  const EntryScan scan(dir.text);
  if (scan.count < 0) {
    return ZRCFG_E_NOT_FOUND;
  }
  InfoList list;
  for (int i = 0; i < scan.count; ++i) {
    const char *const name = scan.entries[i]->d_name;
    if (!is_sub_object(*scan.entries[i])) {
      continue;
    }
    const SubObjectInfo info = look_at(dir, name, timeout);
    if (info.visible) {
      list.add(url, name, info.rw);
    }
  }
  NODE_INFO *tail = nullptr;
  list.nodes.hand_over(ppHead, &tail);
  if (ppHead != nullptr && ppTail != nullptr) {
    *ppTail = list.tail_known ? tail : nullptr;
  }
  return ZRCFG_OK;
}

}  // extern "C"

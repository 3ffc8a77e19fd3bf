// Where an object lies below the root of a store: its directory path and its URL.
#include "tools/store/object_place.h"

#include <string.h>

#include "core/property_file.h"
#include "tools/store/directory_names.h"

namespace zrcfg_store {

bool ObjectPlace::set_url(const char *new_url) {
  const size_t new_length = strlen(new_url);
  if (new_length >= sizeof url) {
    return false;
  }
  memcpy(url, new_url, new_length + 1);
  for (size_t i = 0; i <= new_length; ++i) {
    path[i] = url[i] == '.' ? '/' : url[i];
  }
  length = new_length;
  return true;
}

bool ObjectPlace::enter(const char *name) {
  const size_t name_length = strlen(name);
  if (length + name_length + 1 >= sizeof url || memchr(name, '.', name_length) != nullptr) {
    return false;
  }
  memcpy(path + length, name, name_length);
  memcpy(url + length, name, name_length);
  length += name_length;
  memcpy(path + length, "/", 2);
  memcpy(url + length, ".", 2);
  ++length;
  return true;
}

void ObjectPlace::cut(size_t earlier_length) {
  length = earlier_length;
  path[length] = '\0';
  url[length] = '\0';
}

void ObjectPlace::last_name(char *name) const {
  size_t start = length > 0 ? length - 1 : 0;
  const size_t end = start;
  while (start > 0 && path[start - 1] != '/') {
    --start;
  }
  memcpy(name, path + start, end - start);
  name[end - start] = '\0';
}

bool ObjectPlace::is_instance() const {
  char name[zrcfg::kUrlSize];
  last_name(name);
  return is_instance_name(name);
}

void property_path(const ObjectPlace &place, char *out) {
  (void)zrcfg::join_path(out, zrcfg::kFilePathSize, place.path,
                         zrcfg::kPropertyFileName);  // Fits.
}

}  // namespace zrcfg_store

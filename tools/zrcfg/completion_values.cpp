// What may stand for an argument of a command: things of the store, and names.
#include "tools/zrcfg/completion_values.h"

#include <dirent.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/object_reader.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr char kStoreRoot[] = "/var/";
constexpr int kOneTry = 0;  // Nobody waits for a lock while typing.

// The store's root is no object, so its directory is read; only those with a property file count.
void add_roots(const char *typed, Candidates &out) {
  DIR *const directory = opendir(kStoreRoot);
  if (directory == nullptr) {
    return;
  }
  for (const dirent *entry = readdir(directory); entry != nullptr; entry = readdir(directory)) {
    char url[sizeof entry->d_name + 1];
    (void)snprintf(url, sizeof url, "%s.", entry->d_name);  // Fits.
    ObjAttr attributes;
    if (entry->d_name[0] != '.' && strlen(url) < ZRCFG_URL_SIZE &&
        zrcfg_getobjattr(url, &attributes, ZRCFG_NO_LOCK) == ZRCFG_OK) {
      out.add(typed, "", url, "");
    }
  }
  (void)closedir(directory);  // Only read.
}

void add_sub_objects(const char *typed, const char *url, Candidates &out) {
  SubObjName *node = nullptr;
  if (zrcfg_getallsubobj(url, &node) != ZRCFG_OK) {
    return;
  }
  while (node != nullptr) {
    SubObjName *const next = node->next;
    out.add(typed, url, node->name, ".");
    free(node);
    node = next;
  }
}

void add_parameters(const char *typed, const char *url, const char *tail, Candidates &out) {
  static ObjectRows object;  // Too large for a small stack.
  if (read_object_rows(url, kOneTry, RowContent::kNames, object) != ZRCFG_OK) {
    return;
  }
  for (int i = 0; i < object.count; ++i) {
    out.add(typed, url, object.rows[i].name, tail);
  }
}

}  // namespace

void add_paths(const char *typed, const char *parameter_tail, Candidates &out) {
  const char *const dot = strrchr(typed, '.');
  if (dot == nullptr) {
    add_roots(typed, out);
    return;
  }
  const size_t length = static_cast<size_t>(dot - typed) + 1;
  if (length >= ZRCFG_URL_SIZE) {
    return;
  }
  char url[ZRCFG_URL_SIZE];
  memcpy(url, typed, length);
  url[length] = '\0';
  add_sub_objects(typed, url, out);
  if (parameter_tail != nullptr) {
    add_parameters(typed, url, parameter_tail, out);
  }
}

void add_attributes(const AttributeTable &table, bool settable, const char *tail, const char *typed,
                    Candidates &out) {
  for (size_t i = 0; i < table.count; ++i) {
    if (!settable || table.attributes[i].number != kNotSettable) {
      out.add(typed, "", table.attributes[i].name, tail);
    }
  }
}

}  // namespace zrcfg_tool

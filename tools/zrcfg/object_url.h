// An object URL as an argument.
#ifndef ZRCFG_TOOLS_ZRCFG_OBJECT_URL_H_
#define ZRCFG_TOOLS_ZRCFG_OBJECT_URL_H_

#include "zrcfg.h"

namespace zrcfg_tool {

struct ObjectUrl {
  char text[ZRCFG_URL_SIZE];
};

// Takes an object's path with or without its final dot. Reports and returns false when it is empty,
// too long or has an empty component.
bool parse_object_url(const char *text, ObjectUrl &url);

// Whether two dots of a URL meet or it begins with one. To the file system such a component is
// nothing, so that the same object would have several names.
bool has_empty_component(const char *url);

// Copies the first component of a URL, without its dot.
void copy_root_name(const char *url, char (&name)[ZRCFG_URL_SIZE]);

// The URL of an instance, split.
struct InstanceName {
  ObjectUrl table;
  int index;
};

// Splits a URL whose last component is a number; whether it is one.
bool split_instance(const ObjectUrl &url, InstanceName &instance);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_OBJECT_URL_H_

// An object URL as an argument.
#include "tools/zrcfg/object_url.h"

#include <string.h>

#include "tools/zrcfg/number.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {

bool parse_object_url(const char *text, ObjectUrl &url) {
  const size_t length = strlen(text);
  if (length == 0) {
    complain("the object URL is empty");
    return false;
  }
  const bool has_dot = text[length - 1] == '.';
  if (length + (has_dot ? 0 : 1) >= sizeof url.text) {
    complain("%s: the object URL is longer than 255 characters", text);
    return false;
  }
  memcpy(url.text, text, length + 1);
  if (!has_dot) {
    memcpy(url.text + length, ".", 2);
  }
  if (has_empty_component(url.text)) {
    complain("%s: the object URL has an empty component", text);
    return false;
  }
  return true;
}

bool has_empty_component(const char *url) {
  return url[0] == '.' || strstr(url, "..") != nullptr;
}

void copy_root_name(const char *url, char (&name)[ZRCFG_URL_SIZE]) {
  const size_t length = strcspn(url, ".");
  memcpy(name, url, length);
  name[length] = '\0';
}

bool split_instance(const ObjectUrl &url, InstanceName &instance) {
  const size_t length = strlen(url.text) - 1;  // Without the final dot.
  const void *const dot = memrchr(url.text, '.', length);
  if (dot == nullptr || dot == url.text) {
    return false;
  }
  const size_t table_length = static_cast<size_t>(static_cast<const char *>(dot) - url.text) + 1;
  memcpy(instance.table.text, url.text, table_length);
  instance.table.text[table_length] = '\0';
  return parse_number(url.text + table_length, length - table_length, instance.index);
}

}  // namespace zrcfg_tool

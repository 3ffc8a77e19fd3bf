// The paths of both floors: directories, property files, and the templates that own locks.
#include <string.h>

#include "bench/stores/floor_work.h"

namespace bench::floor_work {
namespace {

constexpr char kRoot[] = "/var/";
constexpr char kPropertyFile[] = "property.conf";

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

void Path::append(const char *suffix, size_t suffix_length) {
  memcpy(text + length, suffix, suffix_length);
  length += suffix_length;
  text[length] = '\0';
}

void Path::append(const char *suffix) {
  append(suffix, strlen(suffix));
}

Path dir_of_url(const char *url) {
  Path path;
  path.length = sizeof kRoot - 1;
  memcpy(path.text, kRoot, sizeof kRoot);
  for (; *url != '\0'; ++url) {
    path.text[path.length++] = *url == '.' ? '/' : *url;
  }
  path.text[path.length] = '\0';
  return path;
}

Path property_of(const Path &dir) {
  Path path;
  path.length = 0;
  path.append(dir.text, dir.length);
  path.append(kPropertyFile, sizeof kPropertyFile - 1);
  return path;
}

size_t next_number(const Path &dir, size_t from) {
  size_t i = from == 0 ? sizeof kRoot : from;  // The first segment is never an instance number.
  for (; i < dir.length; ++i) {
    if (dir.text[i - 1] != '/' || !is_digit(dir.text[i])) {
      continue;
    }
    size_t end = i;
    while (is_digit(dir.text[end])) {
      ++end;
    }
    if (dir.text[end] == '/') {
      return i;
    }
  }
  return 0;
}

Path template_at(const Path &dir, size_t position) {
  Path path;
  path.length = 0;
  path.append(dir.text, position);
  path.append("0/", 2);
  return path;
}

}  // namespace bench::floor_work

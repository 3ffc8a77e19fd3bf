// What must hold for any input; a program that finds it broken says so and aborts.
#include "fuzz/check.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace zrcfg_fuzz {
namespace {

const char *under_way = "start";

}  // namespace

void set_under_way(const char *name) {
  under_way = name;
}

void require(bool condition, const char *text) {
  if (condition) {
    return;
  }
  fprintf(stderr, "BROKEN: %s: %s\n", under_way, text);
  abort();
}

bool is_terminated(const char *field, size_t size) {
  return strnlen(field, size) < size;
}

}  // namespace zrcfg_fuzz

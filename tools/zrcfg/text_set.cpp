// A set of texts.
#include "tools/zrcfg/text_set.h"

#include <stdint.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

constexpr size_t kFirstCapacity = 64;

size_t hash_of(const char *text, size_t length) {
  uint32_t hash = 2166136261u;
  for (size_t i = 0; i < length; ++i) {
    hash = (hash ^ static_cast<unsigned char>(text[i])) * 16777619u;
  }
  return hash;
}

}  // namespace

TextSet::~TextSet() {
  for (size_t i = 0; i < capacity_; ++i) {
    free(slots_[i]);
  }
  free(slots_);
}

// The slot that holds the text, or the free one where it belongs.
size_t TextSet::place_of(const char *text, size_t length) const {
  size_t place = hash_of(text, length) & (capacity_ - 1);
  while (slots_[place] != nullptr &&
         (strncmp(slots_[place], text, length) != 0 || slots_[place][length] != '\0')) {
    place = (place + 1) & (capacity_ - 1);
  }
  return place;
}

bool TextSet::grow() {
  const size_t old_capacity = capacity_;
  char **const old_slots = slots_;
  capacity_ = old_capacity == 0 ? kFirstCapacity : old_capacity * 2;
  slots_ = static_cast<char **>(calloc(capacity_, sizeof *slots_));
  if (slots_ == nullptr) {
    slots_ = old_slots;
    capacity_ = old_capacity;
    complain("out of memory");
    return false;
  }
  for (size_t i = 0; i < old_capacity; ++i) {
    if (old_slots[i] != nullptr) {
      slots_[place_of(old_slots[i], strlen(old_slots[i]))] = old_slots[i];
    }
  }
  free(old_slots);
  return true;
}

bool TextSet::add(const char *text) {
  if (2 * (used_ + 1) > capacity_ && !grow()) {
    return false;
  }
  const size_t place = place_of(text, strlen(text));
  if (slots_[place] != nullptr) {
    return true;
  }
  slots_[place] = strdup(text);
  if (slots_[place] == nullptr) {
    complain("out of memory");
    return false;
  }
  ++used_;
  return true;
}

bool TextSet::has(const char *text, size_t length) const {
  if (capacity_ == 0) {
    return false;
  }
  return slots_[place_of(text, length)] != nullptr;
}

bool TextSet::has(const char *text) const {
  return has(text, strlen(text));
}

}  // namespace zrcfg_tool

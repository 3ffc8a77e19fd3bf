// Finding records by name, for calls that look many names up.
#include "core/record_index.h"

#include <string.h>

namespace zrcfg {
namespace {

// Mixes the name's length with four words of it, from its beginning to its end, into one byte.
uint8_t bucket_of(const char *name, size_t length) {
  uint32_t words[4] = {};
  if (length < sizeof words[0]) {
    memcpy(words, name, length);
  } else {
    const size_t last = length - sizeof words[0];
    memcpy(&words[0], name, sizeof words[0]);
    memcpy(&words[1], name + last / 3, sizeof words[1]);
    memcpy(&words[2], name + last * 2 / 3, sizeof words[2]);
    memcpy(&words[3], name + last, sizeof words[3]);
  }
  uint32_t hash = static_cast<uint32_t>(length);
  for (const uint32_t word : words) {
    hash = (hash ^ word) * 2654435761u;
    hash ^= hash >> 15;
  }
  return static_cast<uint8_t>(hash >> 24);
}

}  // namespace

int RecordIndex::find(const char (&name)[kNameSize]) {
  const size_t length = strnlen(name, kNameSize);
  if (lookups_ < kPlainLookups) {
    ++lookups_;
    return search(name, length);
  }
  if (lookups_ == kPlainLookups) {
    ++lookups_;
    build();
  }
  uint8_t place = first_[bucket_of(name, length)];
  while (place != 0 && !has_name(range_.begin()[place - 1], name, length)) {
    place = next_[place - 1];
  }
  return place - 1;
}

// From the last record to the first, so that of two records of one name the first is found.
void RecordIndex::build() {
  memset(first_, 0, sizeof first_);
  for (uint32_t i = range_.size(); i > 0; --i) {
    const char *const name = range_.begin()[i - 1].name;
    uint8_t &first = first_[bucket_of(name, strnlen(name, kNameSize))];
    next_[i - 1] = first;
    first = static_cast<uint8_t>(i);
  }
}

int RecordIndex::search(const char *name, size_t length) const {
  int i = 0;
  for (const ParamRecord &record : range_) {
    if (has_name(record, name, length)) {
      return i;
    }
    ++i;
  }
  return kNoRecord;
}

}  // namespace zrcfg

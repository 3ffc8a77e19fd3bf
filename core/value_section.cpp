// The value section of a property file: one line a record. The one reader and the one writer.
#include "core/value_section.h"

#include <stdlib.h>
#include <string.h>

#include "core/property_file.h"
#include "core/store_file.h"
#include "core/trace.h"

namespace zrcfg {

bool ValueLine::equals(const char *value, size_t value_length) const {
  return length == value_length && memcmp(text, value, length) == 0;
}

void ValueLine::copy_value(char *out) const {
  if (text[0] == kEmptyValueMark) {
    out[0] = '\0';
    return;
  }
  const size_t kept = length < kMaxValueLength ? length : kMaxValueLength;
  memcpy(out, text, kept);
  out[kept] = '\0';
}

ValueLines::ValueLines(const ValueSection &section)
    : position_(section.text), end_(section.text + strnlen(section.text, section.size)) {}

ValueLine ValueLines::next() {
  while (position_ < end_ && *position_ == '\n') {
    ++position_;
  }
  if (position_ == end_) {
    return {nullptr, 0};
  }
  char *const text = position_;
  char *const feed = static_cast<char *>(memchr(text, '\n', static_cast<size_t>(end_ - text)));
  position_ = feed != nullptr ? feed : end_;
  return {text, static_cast<size_t>(position_ - text)};
}

bool is_single_line(const char *name, const char *value, size_t length) {
  if (memchr(value, '\n', length) == nullptr) {
    return true;
  }
  ZRCFG_TRACE("param(%s) value holds a line feed, not set!\n", name);
  return false;
}

SectionBuilder::SectionBuilder(size_t records, size_t needed)
    : text_(nullptr),
      capacity_(needed < records * kValueSlotSize ? needed : records * kValueSlotSize),
      size_(0) {
  text_ = static_cast<char *>(malloc(capacity_ + 1));
}

SectionBuilder::~SectionBuilder() {
  free(text_);
}

bool SectionBuilder::append(const char *text, size_t length) {
  if (length == 0) {
    text = &kEmptyValueMark;
    length = 1;
  }
  if (length + 1 > capacity_ - size_) {
    return false;
  }
  memcpy(text_ + size_, text, length);
  text_[size_ + length] = '\n';
  size_ += length + 1;
  return true;
}

bool rewrite_section(int fd, const ValueSection &old_section, const char *text, size_t size) {
  const off_t new_end = old_section.offset + static_cast<off_t>(size);
  if (write_all_at(fd, text, size, old_section.offset) &&
      (new_end >= old_section.file_size || truncate_to(fd, new_end))) {
    return true;
  }
  ZRCFG_TRACE("value section not written, old values put back!\n");
  const bool restored = write_all_at(fd, old_section.text, old_section.size, old_section.offset) &&
                        truncate_to(fd, old_section.file_size);
  if (!restored) {
    ZRCFG_TRACE("old values not put back!\n");
  }
  return false;
}

}  // namespace zrcfg

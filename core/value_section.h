// The value section of a property file: one line a record. The one reader and the one writer.
#ifndef ZRCFG_CORE_VALUE_SECTION_H_
#define ZRCFG_CORE_VALUE_SECTION_H_

#include <stddef.h>
#include <sys/types.h>

namespace zrcfg {

inline constexpr char kEmptyValueMark = '\r';

// A value section as it was read. `text` lies in a block of its reader's and has a writable byte
// behind its end.
struct ValueSection {
  char *text;
  size_t size;
  off_t offset;     // Where the section begins in the file.
  off_t file_size;  // The size of the whole file when it was read.
};

// One stored line, without its line feed; not terminated. A null text stands for no line.
struct ValueLine {
  char *text;
  size_t length;

  bool exists() const { return text != nullptr; }
  bool equals(const char *value, size_t value_length) const;
  // Writes the value to a buffer of 256 bytes: a line marked empty gives "", a line over 255
  // characters is cut.
  void copy_value(char *out) const;
};

// Yields the lines of a section in order. Empty lines are passed over and a zero byte ends the
// section, as for a tokenizer.
class ValueLines {
 public:
  explicit ValueLines(const ValueSection &section);
  ValueLine next();

 private:
  char *position_;
  char *end_;
};

// Terminates a line for as long as it lives, so that it can be printed in place.
class TerminatedLine {
 public:
  explicit TerminatedLine(const ValueLine &line) : end_(line.text + line.length), saved_(*end_) {
    *end_ = '\0';
  }
  ~TerminatedLine() { *end_ = saved_; }
  TerminatedLine(const TerminatedLine &) = delete;
  TerminatedLine &operator=(const TerminatedLine &) = delete;

 private:
  char *end_;
  char saved_;
};

// Whether the value can be stored: it holds no line feed, which would shift every later value.
// Logs a refusal.
bool is_single_line(const char *name, const char *value, size_t length);

// Assembles a new value section in a block of its own.
class SectionBuilder {
 public:
  // Room for 256 bytes a record at most, and for no more than `needed` bytes; `ok()` tells whether
  // it was there.
  SectionBuilder(size_t records, size_t needed);
  ~SectionBuilder();
  SectionBuilder(const SectionBuilder &) = delete;
  SectionBuilder &operator=(const SectionBuilder &) = delete;

  bool ok() const { return text_ != nullptr; }
  // Appends one line, the empty value as its mark. False when the room is used up.
  bool append(const char *text, size_t length);
  const char *text() const { return text_; }
  size_t size() const { return size_; }

 private:
  char *text_;
  size_t capacity_;
  size_t size_;
};

// Puts `text` in the place of the section that was read, with one positioned write and, when the
// file shrinks, one truncation. On failure the old section and size are put back; false.
bool rewrite_section(int fd, const ValueSection &old_section, const char *text, size_t size);

}  // namespace zrcfg

#endif  // ZRCFG_CORE_VALUE_SECTION_H_

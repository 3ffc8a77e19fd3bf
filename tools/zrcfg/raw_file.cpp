// The fields of a raw property file, well formed or not.
#include "tools/zrcfg/raw_file.h"

#include <inttypes.h>
#include <stdio.h>
#include <string.h>

namespace zrcfg_tool {
namespace {

constexpr size_t kLengthSize = 4;
constexpr size_t kHeaderSize = 184;
constexpr size_t kRecordSize = 124;
constexpr uint32_t kMaxLength = 16u << 20;
constexpr size_t kMaxValue = 255;
constexpr size_t kMaxRecords = 255;

enum class Kind { kNumber, kWord, kText, kBytes, kFlags };

// A bit field within a flags byte.
struct Bits {
  const char *name;
  uint8_t shift;
  uint8_t width;
};

struct Layout {
  const char *name;
  uint8_t offset;
  uint8_t size;
  Kind kind;
  const Bits *bits;  // Of flags; ends with a null name.
};

constexpr Bits kHeaderFlags8[] = {
    {"hide", 7, 1}, {"flag0", 6, 1}, {"rw", 4, 2}, {"key", 0, 4}, {nullptr, 0, 0}};
constexpr Bits kHeaderFlags9[] = {
    {"level7", 4, 4}, {"flag9", 3, 1}, {"flag8", 2, 1}, {"flag11", 1, 1}, {nullptr, 0, 0}};
constexpr Bits kRecordFlags4[] = {{"rw", 6, 2}, {"key", 2, 4}, {"encryt", 0, 2}, {nullptr, 0, 0}};
constexpr Bits kRecordFlags5[] = {{"noti", 4, 4},    {"flash_rw", 3, 1},   {"hide", 2, 1},
                                  {"noti_rw", 1, 1}, {"namechange", 0, 1}, {nullptr, 0, 0}};
constexpr Bits kRecordFlags6[] = {{"flash_encryt", 7, 1}, {"inform_tr069", 5, 1}, {nullptr, 0, 0}};

constexpr Layout kHeader[] = {
    {"url_slot", 0, 4, Kind::kBytes, nullptr},
    {"param_num", 4, 1, Kind::kNumber, nullptr},
    {"max_instance", 5, 1, Kind::kNumber, nullptr},
    {"device_type", 6, 1, Kind::kNumber, nullptr},
    {"level3", 7, 1, Kind::kNumber, nullptr},
    {"access_flags", 8, 1, Kind::kFlags, kHeaderFlags8},
    {"extra_flags", 9, 1, Kind::kFlags, kHeaderFlags9},
    {"reserved_10", 10, 2, Kind::kBytes, nullptr},
    {"devfunc", 12, 64, Kind::kText, nullptr},
    {"pnoe", 76, 64, Kind::kText, nullptr},
    {"reserved_140", 140, 8, Kind::kBytes, nullptr},
    {"extra_text", 148, 28, Kind::kText, nullptr},
    {"reserved_176", 176, 4, Kind::kBytes, nullptr},
    {"param_list_slot", 180, 4, Kind::kBytes, nullptr},
};
constexpr Layout kRecord[] = {
    {"type", 0, 1, Kind::kNumber, nullptr},
    {"inform_dbus", 1, 1, Kind::kNumber, nullptr},
    {"device_type", 2, 1, Kind::kNumber, nullptr},
    {"reserved_3", 3, 1, Kind::kBytes, nullptr},
    {"access_flags", 4, 1, Kind::kFlags, kRecordFlags4},
    {"notify_flags", 5, 1, Kind::kFlags, kRecordFlags5},
    {"inform_flags", 6, 1, Kind::kFlags, kRecordFlags6},
    {"reserved_7", 7, 1, Kind::kBytes, nullptr},
    {"name", 8, 64, Kind::kText, nullptr},
    {"accesslist", 72, 16, Kind::kText, nullptr},
    {"area", 88, 28, Kind::kText, nullptr},
    {"param_check", 116, 4, Kind::kWord, nullptr},
    {"next_slot", 120, 4, Kind::kBytes, nullptr},
};

uint32_t word_at(const uint8_t *bytes) {
  return (uint32_t{bytes[0]} << 24) | (uint32_t{bytes[1]} << 16) | (uint32_t{bytes[2]} << 8) |
         uint32_t{bytes[3]};
}

// The number of whole records that the length word announces.
size_t announced_records(uint32_t length) {
  return length >= kHeaderSize && length <= kMaxLength ? (length - kHeaderSize) / kRecordSize : 0;
}

// Walks over the bytes, handing out fields.
struct Walk {
  const uint8_t *bytes;
  size_t size;
  void (*visit)(const RawField &, void *);
  void *context;

  bool has(size_t offset) const { return offset < size; }

  void emit(size_t offset, size_t field_size, const char *name, const char *text) const {
    const size_t left = size - offset;
    visit({offset, field_size < left ? field_size : left, name, text}, context);
  }

  void emit_layout(const char *where, size_t base, const Layout &layout) const;
  void emit_lines(size_t offset, size_t records) const;
};

void describe_flags(uint8_t byte, const Bits *bits, char *text, size_t size) {
  size_t used = 0;
  text[0] = '\0';
  for (; bits->name != nullptr; ++bits) {
    const unsigned value = (byte >> bits->shift) & ((1u << bits->width) - 1u);
    const int length =
        snprintf(text + used, size - used, "%s%s=%u", used > 0 ? " " : "", bits->name, value);
    used += static_cast<size_t>(length);  // The texts of each byte fit.
  }
}

void Walk::emit_layout(const char *where, size_t base, const Layout &layout) const {
  const size_t offset = base + layout.offset;
  if (!has(offset)) {
    return;
  }
  char name[64];
  (void)snprintf(name, sizeof name, "%s.%s", where, layout.name);  // Fits.
  char text[128] = "";
  const uint8_t *const field = bytes + offset;
  const size_t left = size - offset;
  switch (layout.kind) {
    case Kind::kNumber:
      (void)snprintf(text, sizeof text, "%u", *field);
      break;
    case Kind::kWord:
      if (left >= layout.size) {
        (void)snprintf(text, sizeof text, "%" PRIu32, word_at(field));
      }
      break;
    case Kind::kFlags:
      describe_flags(*field, layout.bits, text, sizeof text);
      break;
    case Kind::kText: {
      const size_t width = left < layout.size ? left : layout.size;
      const int length = static_cast<int>(strnlen(reinterpret_cast<const char *>(field), width));
      (void)snprintf(text, sizeof text, "%.*s", length, field);
      break;
    }
    case Kind::kBytes:
      break;
  }
  emit(offset, layout.size, name, text);
}

// The value lines, those behind the last record's included.
void Walk::emit_lines(size_t offset, size_t records) const {
  for (size_t number = 0; has(offset); ++number) {
    const uint8_t *const line = bytes + offset;
    const void *const feed = memchr(line, '\n', size - offset);
    const size_t length = feed != nullptr
                              ? static_cast<size_t>(static_cast<const uint8_t *>(feed) - line)
                              : size - offset;
    char name[64];
    (void)snprintf(name, sizeof name, number < records ? "value %zu" : "extra line %zu", number);
    char text[kMaxValue + 1];
    const size_t kept = length < kMaxValue ? length : kMaxValue;
    memcpy(text, line, kept);
    text[length > 0 && line[0] == '\r' ? 0 : kept] = '\0';
    emit(offset, feed != nullptr ? length + 1 : length, name, text);
    offset += length + 1;
  }
}

}  // namespace

void visit_raw_fields(const uint8_t *bytes, size_t size, void (*visit)(const RawField &, void *),
                      void *context) {
  const Walk walk = {bytes, size, visit, context};
  if (size == 0) {
    return;
  }
  const uint32_t length = size >= kLengthSize ? word_at(bytes) : 0;
  char text[64];
  (void)snprintf(text, sizeof text, "%" PRIu32 ", %zu records", length, announced_records(length));
  walk.emit(0, kLengthSize, "length", size >= kLengthSize ? text : "");
  for (const Layout &layout : kHeader) {
    walk.emit_layout("header", kLengthSize, layout);
  }
  const size_t records = announced_records(length);
  size_t offset = kLengthSize + kHeaderSize;
  for (size_t i = 0; i < records && walk.has(offset); ++i, offset += kRecordSize) {
    char where[32];
    (void)snprintf(where, sizeof where, "record %zu", i);  // Fits.
    for (const Layout &layout : kRecord) {
      walk.emit_layout(where, offset, layout);
    }
  }
  const size_t section_at = kLengthSize + (records > 0 ? size_t{length} : kHeaderSize);
  if (section_at > offset && walk.has(offset)) {
    walk.emit(offset, section_at - offset, "rest of the records", "");
  }
  if (walk.has(section_at)) {
    walk.emit_lines(section_at, records);
  }
}

const char *raw_file_damage(const uint8_t *bytes, size_t size) {
  if (size < kLengthSize) {
    return "the length word is missing";
  }
  const uint32_t length = word_at(bytes);
  if (length < kHeaderSize || length > kMaxLength) {
    return "the length word is out of range";
  }
  if ((length - kHeaderSize) % kRecordSize != 0) {
    return "the length word is not that of whole records";
  }
  const size_t records = announced_records(length);
  const size_t section_at = kLengthSize + size_t{length};
  if (size < section_at) {
    return "the file ends within header or records";
  }
  if (records > kMaxRecords) {
    return "more than 255 records";
  }
  const uint8_t *at = bytes + section_at;
  const uint8_t *const end = bytes + size;
  for (size_t i = 0; i < records; ++i) {
    const void *const feed = memchr(at, '\n', static_cast<size_t>(end - at));
    if (feed == nullptr) {
      return "fewer values than records";
    }
    const size_t line = static_cast<size_t>(static_cast<const uint8_t *>(feed) - at);
    if (line == 0 || line > kMaxValue) {
      return line == 0 ? "an empty line among the values" : "a value longer than 255 characters";
    }
    if (memchr(at, '\0', line) != nullptr) {
      return "a zero byte among the values";
    }
    at += line + 1;
  }
  return at == end ? nullptr : "bytes behind the last value";
}

}  // namespace zrcfg_tool

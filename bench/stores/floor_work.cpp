// What both floors do in memory: paths, and values in the bytes of a property file.
#include "bench/stores/floor_work.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

namespace bench::floor_work {
namespace {

bool is_number(const char *name) {
  return name[strspn(name, "0123456789")] == '\0';
}

struct Line {
  const char *text;
  size_t length;

  bool is_empty_value() const { return text[0] == '\r'; }
};

// Takes the line at `at` and moves on; a null text at the end.
Line take_line(const char *&at, const char *end) {
  const char *const feed =
      static_cast<const char *>(memchr(at, '\n', static_cast<size_t>(end - at)));
  if (feed == nullptr) {
    return {nullptr, 0};
  }
  const Line line = {at, static_cast<size_t>(feed - at)};
  at = feed + 1;
  return line;
}

void copy_line(const Line &line, char *value) {
  const size_t length = line.is_empty_value() ? 0 : std::min<size_t>(line.length, 255);
  memcpy(value, line.text, length);
  value[length] = '\0';
}

void put_line(Section &section, const char *text, size_t length) {
  if (length == 0) {
    text = "\r";
    length = 1;
  }
  memcpy(section.bytes + section.size, text, length);
  section.bytes[section.size + length] = '\n';
  section.size += length + 1;
}

constexpr size_t kNoRecord = ~size_t{0};

bool is_named(const File &file, size_t i, const char *name, size_t size) {
  return memcmp(file.name(i), name, size) == 0;
}

// Finds the records of a list's names. Lists mostly come in the order of the file, so the record
// behind the last one is looked at first; a hash table is built for a list that does not.
class Finder {
 public:
  explicit Finder(const File &file) : file_(file) {}

  size_t find(const char *name) {
    const size_t length = strlen(name);
    if (next_ < file_.records && is_named(file_, next_, name, length + 1)) {
      return next_++;
    }
    if (!built_) {
      build();
    }
    size_t slot = hash(name, length);
    while (slots_[slot] != 0 && !is_named(file_, slots_[slot] - 1u, name, length + 1)) {
      slot = (slot + 1) % kSlots;
    }
    if (slots_[slot] == 0) {
      return kNoRecord;
    }
    next_ = slots_[slot];
    return next_ - 1;
  }

 private:
  static constexpr size_t kSlots = 1024;

  static size_t hash(const char *name, size_t length) {
    uint32_t words[3] = {};
    memcpy(words, name, std::min<size_t>(length, 8));
    memcpy(words + 2, name + (length > 4 ? length - 4 : 0), std::min<size_t>(length, 4));
    const uint32_t mixed = words[0] * 2654435761u ^ words[1] * 2246822519u ^ words[2] * 3266489917u;
    return (mixed ^ mixed >> 15 ^ length * 97) % kSlots;
  }

  void build() {
    built_ = true;
    memset(slots_, 0, sizeof slots_);
    for (size_t i = 0; i < file_.records; ++i) {
      size_t slot = hash(file_.name(i), strlen(file_.name(i)));
      while (slots_[slot] != 0) {
        slot = (slot + 1) % kSlots;
      }
      slots_[slot] = static_cast<uint16_t>(i + 1);
    }
  }

  const File &file_;
  size_t next_ = 0;
  bool built_ = false;
  uint16_t slots_[kSlots];
};

// The record of one name.
size_t find(const File &file, const char *name) {
  const size_t size = strlen(name) + 1;
  for (size_t i = 0; i < file.records; ++i) {
    if (is_named(file, i, name, size)) {
      return i;
    }
  }
  return kNoRecord;
}

// The lines of a file by record.
size_t index_lines(const File &file, Line (&lines)[256]) {
  const char *at = file.bytes + file.section_at;
  size_t i = 0;
  for (; i < file.records; ++i) {
    lines[i] = take_line(at, file.bytes + file.size);
    if (lines[i].text == nullptr) {
      break;
    }
  }
  return i;
}

bool is_hidden(const char *device_type, uint8_t hide) {
  return hide != 0 || (*device_type != 0 && (static_cast<uint8_t>(*device_type) & 0xBFu) == 0);
}

// The URL with the name behind it, cut to the field.
void join_name(char (&out)[256], const char *url, size_t url_length, const char *name) {
  const size_t length = std::min(strnlen(name, 64), sizeof out - 1 - url_length);
  memcpy(out, url, url_length);
  memcpy(out + url_length, name, length);
  out[url_length + length] = '\0';
}

}  // namespace

bool File::parse() {
  if (size < kRecordsAt) {
    return false;
  }
  uint32_t length = 0;
  for (size_t i = 0; i < kHeaderAt; ++i) {
    length = length << 8 | static_cast<uint8_t>(bytes[i]);
  }
  section_at = kHeaderAt + length;
  records = (length + kHeaderAt - kRecordsAt) / kRecordSize;
  return section_at <= size && records < 256;
}

bool File::hidden(size_t i) const {
  return is_hidden(record(i) + 2, static_cast<uint8_t>(record(i)[5]) & 4u);
}

bool File::object_hidden() const {
  return is_hidden(bytes + kHeaderAt + 6, static_cast<uint8_t>(bytes[kHeaderAt + 8]) & 128u);
}

const char *File::counter() const {
  const char *const slash = static_cast<const char *>(memrchr(bytes + kHeaderAt + 76, '/', 64));
  return slash == nullptr ? "" : slash + 1;
}

bool read_value(const File &file, const char *name, char *value) {
  const size_t wanted = find(file, name);
  if (wanted == kNoRecord) {
    return true;
  }
  const char *at = file.bytes + file.section_at;
  Line line = {nullptr, 0};
  for (size_t i = 0; i <= wanted; ++i) {
    line = take_line(at, file.bytes + file.size);
    if (line.text == nullptr) {
      return false;
    }
  }
  copy_line(line, value);
  return true;
}

bool replace_value(const File &file, const char *name, const char *value, Section &section,
                   bool &changed) {
  const size_t wanted = find(file, name);
  if (wanted == kNoRecord) {
    return false;
  }
  const char *const begin = file.bytes + file.section_at;
  const char *at = begin;
  Line line = {nullptr, 0};
  for (size_t i = 0; i <= wanted; ++i) {
    line = take_line(at, file.bytes + file.size);
    if (line.text == nullptr) {
      return false;
    }
  }
  const size_t length = strlen(value);
  changed = line.length != length || memcmp(line.text, value, length) != 0;
  if (!changed) {
    return true;
  }
  section.size = static_cast<size_t>(line.text - begin);
  memcpy(section.bytes, begin, section.size);
  put_line(section, value, length);
  const size_t rest = file.size - static_cast<size_t>(at - file.bytes);
  memcpy(section.bytes + section.size, at, rest);
  section.size += rest;
  return true;
}

bool read_values(const File &file, ParamValueEntry *list) {
  Line lines[256];
  if (index_lines(file, lines) < file.records) {
    return false;
  }
  Finder finder(file);
  for (ParamValueEntry *node = list; node != nullptr; node = node->next) {
    const size_t i = finder.find(node->name);
    if (i != kNoRecord) {
      copy_line(lines[i], node->value);
    }
  }
  return true;
}

bool replace_values(const File &file, ParamValueEntry *list, Section &section) {
  Line lines[256];
  if (index_lines(file, lines) < file.records) {
    return false;
  }
  Finder finder(file);
  for (ParamValueEntry *node = list; node != nullptr; node = node->next) {
    const size_t i = finder.find(node->name);
    if (i == kNoRecord) {
      continue;
    }
    char old_value[256];
    copy_line(lines[i], old_value);
    strncpy(node->old_value, old_value, sizeof node->old_value);
    node->changed = strcmp(old_value, node->value) != 0;
    lines[i] = {node->value, strlen(node->value)};
    const uint8_t *const record = reinterpret_cast<const uint8_t *>(file.record(i));
    const unsigned noti = record[5] >> 4;
    node->noti = noti & 15u;
    node->flash_rw = record[5] >> 3 & 1u;
    node->namechange = record[5] & 1u;
    node->inform_tr069 = record[6] >> 5 & 1u;
    node->inform_dbus = record[1];
  }
  section.size = 0;
  for (size_t i = 0; i < file.records; ++i) {
    put_line(section, lines[i].text, std::min<size_t>(lines[i].length, 255));
  }
  return true;
}

ParamValueListNode *make_value_list(const File &file, const char *url) {
  ParamValueListNode *head = nullptr;
  ParamValueListNode **end = &head;
  const size_t url_length = strlen(url);
  const char *at = file.bytes + file.section_at;
  for (size_t i = 0; i < file.records; ++i) {
    const Line line = take_line(at, file.bytes + file.size);
    if (line.text == nullptr || file.hidden(i)) {
      continue;
    }
    ParamValueListNode *const node =
        static_cast<ParamValueListNode *>(calloc(1, sizeof(ParamValueListNode)));
    if (node == nullptr) {
      return nullptr;
    }
    join_name(node->url, url, url_length, file.name(i));
    copy_line(line, node->value);
    *end = node;
    end = &node->next;
  }
  return head;
}

bool append_nodes(const File &file, const char *url, NodeList &list) {
  const size_t url_length = strlen(url);
  for (size_t i = 0; i <= file.records; ++i) {
    if (i > 0 && file.hidden(i - 1)) {
      continue;
    }
    NODE_INFO *const node = static_cast<NODE_INFO *>(calloc(1, sizeof(NODE_INFO)));
    if (node == nullptr) {
      return false;
    }
    join_name(node->name, url, url_length, i > 0 ? file.name(i - 1) : "");
    node->rw = static_cast<uint8_t>(i > 0 ? file.rw(i - 1) : file.object_rw());
    (list.head == nullptr ? list.head : list.tail->next) = node;
    list.tail = node;
  }
  return true;
}

void visit_values(ParamValueListNode *node, Visit visit, void *context) {
  while (node != nullptr) {
    visit(context, node->url, 0, node->value);
    ParamValueListNode *const next = node->next;
    free(node);
    node = next;
  }
}

void visit_nodes(NODE_INFO *node, Visit visit, void *context) {
  for (const NODE_INFO *at = node; at != nullptr; at = at->next) {
    visit(context, at->name, at->rw, nullptr);
  }
  while (node != nullptr) {
    NODE_INFO *const next = node->next;
    free(node);
    node = next;
  }
}

void Names::add(const char *name) {
  if (count < kMost && strcmp(name, "0") != 0) {
    snprintf(text[count++], sizeof text[0], "%s", name);
  }
}

void Names::sort() {
  using Name = char[64];
  qsort(text, count, sizeof(Name), [](const void *left, const void *right) {
    const char *const a = static_cast<const char *>(left);
    const char *const b = static_cast<const char *>(right);
    return is_number(a) && is_number(b) ? atoi(a) - atoi(b) : strcmp(a, b);
  });
}

}  // namespace bench::floor_work

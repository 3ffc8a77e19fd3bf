// The bytes of a snapshot; docs/format.md has their grammar.
#include "tools/zrcfg/snapshot/snapshot_file.h"

#include <inttypes.h>
#include <string.h>

#include "core/property_file.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/snapshot/crc32.h"
#include "tools/zrcfg/snapshot/property_view.h"

namespace zrcfg_tool {
namespace {

using zrcfg::BigEndian32;

// A transfer as text would change the line ends of the magic.
constexpr char kMagic[] = {'Z', 'R', 'S', 'N', 'A', 'P', '\r', '\n'};
constexpr uint32_t kVersion = 1;
constexpr size_t kWordSize = sizeof(BigEndian32);
constexpr size_t kFixedWords = 3;  // Version, size, number of objects.
constexpr size_t kSmallest = sizeof kMagic + (kFixedWords + 2) * kWordSize;

bool append_word(Bytes &file, size_t value) {
  BigEndian32 word;
  word.set(static_cast<uint32_t>(value));
  return file.append(reinterpret_cast<const char *>(word.bytes), sizeof word.bytes);
}

bool append_block(Bytes &file, const char *bytes, size_t size) {
  return append_word(file, size) && file.append(bytes, size);
}

// Reads what was appended, never behind `end`.
struct Reader {
  const char *at;
  const char *end;

  bool word(uint32_t &value) {
    BigEndian32 big;
    if (static_cast<size_t>(end - at) < sizeof big.bytes) {
      return false;
    }
    memcpy(big.bytes, at, sizeof big.bytes);
    at += sizeof big.bytes;
    value = big.get();
    return true;
  }

  bool block(const char *&bytes, uint32_t &size) {
    if (!word(size) || static_cast<size_t>(end - at) < size) {
      return false;
    }
    bytes = at;
    at += size;
    return true;
  }

  // Text without a zero byte that an object URL can hold.
  bool url(ObjectUrl &out) {
    const char *bytes;
    uint32_t size;
    if (!block(bytes, size) || size >= sizeof out.text || memchr(bytes, '\0', size) != nullptr) {
      return false;
    }
    memcpy(out.text, bytes, size);
    out.text[size] = '\0';
    return true;
  }
};

// Whether the URL leads into the store: components without a slash, none of them empty, each with
// its dot.
bool is_safe_url(const char *url) {
  if (*url == '\0' || strchr(url, '/') != nullptr) {
    return false;
  }
  for (const char *at = url; *at != '\0';) {
    const size_t length = strcspn(at, ".");
    if (length == 0 || at[length] == '\0') {
      return false;
    }
    at += length + 1;
  }
  return true;
}

bool damaged(const char *name, const char *what) {
  complain("%s: damaged snapshot: %s", name, what);
  return false;
}

// Checks what the checksum covers from the outside: is it a snapshot, whole and unchanged?
bool check_whole(const Bytes &file, const char *name) {
  if (!looks_like_snapshot(file)) {
    complain("%s: no snapshot", name);
    return false;
  }
  Reader reader = {file.at + sizeof kMagic, file.at + file.size};
  uint32_t version = 0;
  uint32_t size = 0;
  if (file.size < kSmallest || !reader.word(version) || !reader.word(size)) {
    return damaged(name, "it ends early");
  }
  if (version != kVersion) {
    complain("%s: snapshot of version %" PRIu32 ", not %" PRIu32, name, version, kVersion);
    return false;
  }
  if (size != file.size) {
    return damaged(name, size > file.size ? "it ends early" : "something follows its end");
  }
  Reader tail = {file.at + file.size - kWordSize, file.at + file.size};
  uint32_t sum = 0;
  (void)tail.word(sum);  // It is there.
  return sum == crc32(file.at, file.size - kWordSize) || damaged(name, "the checksum is wrong");
}

// Adds one object; null, or what is wrong with it.
const char *take_object(Reader &reader, const char *scope, ObjectSet &objects) {
  ObjectUrl url;
  const char *bytes;
  uint32_t size;
  if (!reader.url(url) || !reader.block(bytes, size)) {
    return "an object is cut off";
  }
  if (!is_safe_url(url.text)) {
    return "a path that leads out of the store";
  }
  if (!is_within(url.text, scope)) {
    return "an object that lies elsewhere";
  }
  const size_t count = objects.count();
  if (count == 0 ? scope[0] != '\0' && strcmp(url.text, scope) != 0
                 : compare_urls(objects.url(count - 1), url.text) >= 0) {
    return "objects that are not in their order";
  }
  if (!objects.add(url.text, bytes, size)) {
    return "no memory for it";
  }
  PropertyView view;
  return view_property_file(objects.bytes(count), size, view);
}

}  // namespace

bool looks_like_snapshot(const Bytes &file) {
  return file.size >= sizeof kMagic && memcmp(file.at, kMagic, sizeof kMagic) == 0;
}

bool encode_snapshot(const ObjectSet &objects, const char *scope, Bytes &file) {
  size_t size = kSmallest + strlen(scope);
  for (size_t i = 0; i < objects.count(); ++i) {
    size += 2 * kWordSize + strlen(objects.url(i)) + objects.size(i);
  }
  if (size > UINT32_MAX) {
    complain("too large for a snapshot");
    return false;
  }
  bool ok = file.append(kMagic, sizeof kMagic) && append_word(file, kVersion) &&
            append_word(file, size) && append_word(file, objects.count()) &&
            append_block(file, scope, strlen(scope));
  for (size_t i = 0; ok && i < objects.count(); ++i) {
    ok = append_block(file, objects.url(i), strlen(objects.url(i))) &&
         append_block(file, objects.bytes(i), objects.size(i));
  }
  return ok && append_word(file, crc32(file.at, file.size));
}

bool decode_snapshot(const Bytes &file, const char *name, ObjectUrl &scope, ObjectSet &objects) {
  if (!check_whole(file, name)) {
    return false;
  }
  Reader reader = {file.at + sizeof kMagic + 2 * kWordSize, file.at + file.size - kWordSize};
  uint32_t count = 0;
  if (!reader.word(count) || !reader.url(scope) ||
      (scope.text[0] != '\0' && !is_safe_url(scope.text))) {
    return damaged(name, "its head is none");
  }
  for (uint32_t i = 0; i < count; ++i) {
    const char *const wrong = take_object(reader, scope.text, objects);
    if (wrong != nullptr) {
      return damaged(name, wrong);
    }
  }
  if (reader.at != reader.end) {
    return damaged(name, "something follows its objects");
  }
  return count > 0 || damaged(name, "it holds no object");
}

}  // namespace zrcfg_tool

// Loading a property file: one read, one block that holds image, directory path and value section.
#include <stdlib.h>
#include <string.h>

#include "core/object_image.h"
#include "core/store_file.h"

namespace zrcfg {
namespace {

constexpr bool kSlotsHoldAddresses = sizeof(void *) == sizeof(BigEndian32);

// Stands in front of the image. Its last bytes receive the file's length word, so that a file can
// be read with one call and the image begins where the header lands.
struct ImagePrefix {
  uint32_t len;
  uint32_t record_count;
  char *dir_path;
  uint8_t padding[4];
  BigEndian32 length_word;
};
static_assert(offsetof(ImagePrefix, length_word) + kLengthWordSize == sizeof(ImagePrefix));

// The first read takes a file of 255 records and values of 60 characters whole; a larger one takes
// another. Pages that a small file does not fill are never touched. Together with the tables of the
// bulk calls the block stays below what malloc gives back to the system with every free.
constexpr size_t kFirstReadSize = 48u << 10;
constexpr size_t kMaxFileSize = 32u << 20;
constexpr size_t kFileOffset = offsetof(ImagePrefix, length_word);

ImagePrefix &prefix_of(const ObjectImage &image) {
  char *const at = const_cast<char *>(reinterpret_cast<const char *>(&image));
  return *reinterpret_cast<ImagePrefix *>(at - sizeof(ImagePrefix));
}

ObjectImage *image_of(ImagePrefix *prefix) {
  return reinterpret_cast<ObjectImage *>(prefix + 1);
}

// A file's bytes in a block that begins with a prefix and has `room` unused bytes behind them.
struct Block {
  ImagePrefix *prefix;
  size_t used;

  char *file() const { return reinterpret_cast<char *>(prefix) + kFileOffset; }

  bool resize(size_t file_capacity, size_t room) {
    void *const grown = realloc(prefix, kFileOffset + file_capacity + room);
    if (grown == nullptr) {
      return false;
    }
    prefix = static_cast<ImagePrefix *>(grown);
    return true;
  }
};

bool length_word_ok(uint32_t len) {
  return len >= kHeaderSize && len <= kMaxStructSize;
}

// Whether the bytes read end with the last record's line, so that the end of the file need not be
// asked for.
bool is_complete(const Block &block) {
  const uint32_t len = block.prefix->length_word.get();
  const size_t section_at = kLengthWordSize + size_t{len};
  if (block.used < section_at) {
    return false;
  }
  const char *at = block.file() + section_at;
  const char *const end = block.file() + block.used;
  for (uint32_t lines = record_count(len); lines > 0; --lines) {
    const char *const feed =
        static_cast<const char *>(memchr(at, '\n', static_cast<size_t>(end - at)));
    if (feed == nullptr || feed == at) {
      return false;
    }
    at = feed + 1;
  }
  return at == end;
}

// Reads the whole file. 0; 10 when it is malformed, too large or cannot be read; 15 no memory.
uint32_t read_file(int fd, Block &block, size_t room) {
  size_t capacity = kFirstReadSize;
  if (!block.resize(capacity, room)) {
    return ZRCFG_E_MEMORY;
  }
  for (;;) {
    if (block.used == capacity) {
      capacity *= 2;
      if (capacity > kMaxFileSize) {
        return ZRCFG_E_ARGUMENT;
      }
      if (!block.resize(capacity, room)) {
        return ZRCFG_E_MEMORY;
      }
    }
    const ssize_t got = read_at(fd, block.file() + block.used, capacity - block.used,
                                static_cast<off_t>(block.used));
    if (got < 0) {
      return ZRCFG_E_ARGUMENT;
    }
    block.used += static_cast<size_t>(got);
    if (block.used >= kLengthWordSize && !length_word_ok(block.prefix->length_word.get())) {
      return ZRCFG_E_ARGUMENT;
    }
    if (got == 0) {
      return block.used >= kLengthWordSize ? ZRCFG_OK : ZRCFG_E_ARGUMENT;
    }
    if (block.used < capacity && block.used >= kLengthWordSize && is_complete(block)) {
      return ZRCFG_OK;
    }
  }
}

// Makes room for the directory path between records and values, and for what a length word beyond
// the end of the file announces, as zero bytes. False without memory.
bool lay_out(Block &block, const char *dir_path, LoadedObject &loaded) {
  const size_t path_size = strlen(dir_path) + 1;
  const uint32_t len = block.prefix->length_word.get();
  const size_t section_at = kLengthWordSize + size_t{len};
  const size_t file_size = block.used;
  const size_t section_size = file_size > section_at ? file_size - section_at : 0;
  if (file_size < section_at) {
    if (!block.resize(section_at, path_size + 1)) {
      return false;
    }
    memset(block.file() + file_size, 0, section_at - file_size);
  }
  char *const path = block.file() + section_at;
  char *const section = path + path_size;
  memmove(section, path, section_size);
  section[section_size] = '\0';
  memcpy(path, dir_path, path_size);
  block.prefix->len = len;
  block.prefix->record_count = record_count(len);
  block.prefix->dir_path = path;
  loaded.image = image_of(block.prefix);
  loaded.section = {section, section_size, static_cast<off_t>(section_at),
                    static_cast<off_t>(file_size)};
  return true;
}

[[maybe_unused]] void store_address(uint8_t (&slot)[4], const void *address) {
  if constexpr (kSlotsHoldAddresses) {
    memcpy(slot, &address, sizeof slot);
  }
}

// Fills the count and, where addresses fit, the slots.
void link_records(ObjectImage &image) {
  const ImagePrefix &prefix = prefix_of(image);
  const uint32_t count = prefix.record_count;
  image.header.param_num = static_cast<uint8_t>(count);
  if constexpr (kSlotsHoldAddresses) {
    ParamRecord *const first = records(image).begin();
    store_address(image.header.url_slot, prefix.dir_path);
    store_address(image.header.param_list_slot, count > 0 ? first : nullptr);
    for (uint32_t i = 0; i < count; ++i) {
      store_address(first[i].next_slot, i + 1 < count ? &first[i + 1] : nullptr);
    }
  }
}

}  // namespace

RecordRange records(ObjectImage &image) {
  return {reinterpret_cast<ParamRecord *>(&image + 1), image.header.param_num};
}

uint32_t stored_record_count(const ObjectImage &image) {
  return prefix_of(image).record_count;
}

const char *image_dir_path(const ObjectImage &image) {
  return prefix_of(image).dir_path;
}

ParamRecord *find_record(ObjectImage &image, const char *name) {
  const size_t length = strlen(name);
  for (ParamRecord &record : records(image)) {
    if (has_name(record, name, length)) {
      return &record;
    }
  }
  return nullptr;
}

FieldName::FieldName(const char (&field)[kNameSize]) {
  const size_t length = strnlen(field, kNameSize);
  memcpy(text, field, length);
  text[length] = '\0';
}

uint32_t load_object(int fd, const char *dir_path, LoadedObject &loaded) {
  Block block = {nullptr, 0};
  uint32_t result = read_file(fd, block, strlen(dir_path) + 2);
  if (result == ZRCFG_OK && !lay_out(block, dir_path, loaded)) {
    result = ZRCFG_E_MEMORY;
  }
  if (result != ZRCFG_OK) {
    free(block.prefix);
    return result;
  }
  link_records(*loaded.image);
  return ZRCFG_OK;
}

void free_image(ObjectImage *image) {
  if (image != nullptr) {
    free(&prefix_of(*image));
  }
}

}  // namespace zrcfg

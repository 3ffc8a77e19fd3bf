// One property file as it stands on disk, well formed or not.
#include "tools/store/stored_object.h"

#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <unistd.h>

#include "core/store_file.h"

namespace zrcfg_store {

using zrcfg::ParamRecord;

namespace {

constexpr off_t kMaxFileSize = off_t{32} << 20;  // What the library reads.

// Opening a FIFO or a device waits for nothing and has no effect.
int open_file(int dir_fd, const char *path) {
  int fd;
  do {
    fd = openat(dir_fd, path, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
  } while (fd == -1 && errno == EINTR);
  return fd;
}

bool all_zero(const char *bytes, size_t size) {
  return size == 0 || (bytes[0] == '\0' && memcmp(bytes, bytes + 1, size - 1) == 0);
}

// What a file is that cannot be opened.
FileState state_of_error(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return FileState::kMissing;
    case ELOOP:  // A link.
    case ENXIO:  // A socket.
    case ENODEV:
      return FileState::kNotRegular;
    case ENOMEM:
      return FileState::kNoMemory;
    default:
      return FileState::kUnreadable;
  }
}

}  // namespace

StoredObject::~StoredObject() {
  drop();
}

void StoredObject::drop() {
  zrcfg::free_image(loaded_.image);
  loaded_ = zrcfg::LoadedObject();
  status_ = {};
  error_ = 0;
}

bool StoredObject::load(int dir_fd, const char *path) {
  const int fd = open_file(dir_fd, path);
  if (fd == -1) {
    const int error = errno;
    drop();
    error_ = error;
    state_ = state_of_error(error);
    return false;
  }
  const bool read = load_open(fd);
  (void)close(fd);  // Only read.
  return read;
}

bool StoredObject::load_open(int fd) {
  drop();
  if (fstat(fd, &status_) != 0) {
    error_ = errno;
    state_ = FileState::kUnreadable;
    return false;
  }
  if (!S_ISREG(status_.st_mode)) {
    state_ = FileState::kNotRegular;
    return false;
  }
  if (status_.st_size > kMaxFileSize) {
    state_ = FileState::kTooLarge;
    return false;
  }
  // Core has one code for all that it refuses; a reading error is told apart by reading again.
  const uint32_t result = zrcfg::load_object(fd, "", loaded_);
  zrcfg::BigEndian32 word;
  if (result == ZRCFG_OK) {
    state_ = FileState::kRead;
  } else if (result == ZRCFG_E_MEMORY) {
    state_ = FileState::kNoMemory;
  } else if (zrcfg::read_at(fd, word.bytes, sizeof word.bytes, 0) == -1) {
    error_ = errno;
    state_ = FileState::kUnreadable;
  } else {
    state_ = FileState::kBadLength;
  }
  return state_ == FileState::kRead;
}

uint32_t StoredObject::length_word() const {
  return static_cast<uint32_t>(loaded_.section.offset) - zrcfg::kLengthWordSize;
}

const ParamRecord *StoredObject::records() const {
  return zrcfg::records(*loaded_.image).begin();
}

uint32_t StoredObject::record_count() const {
  return zrcfg::stored_record_count(*loaded_.image);
}

LineCount StoredObject::count_lines() const {
  const zrcfg::ValueSection &all = section();
  zrcfg::ValueLines lines(all);
  LineCount count;
  const uint32_t wanted = record_count();
  while (count.values < wanted) {
    const zrcfg::ValueLine line = lines.next();
    if (!line.exists()) {
      break;
    }
    const size_t start = static_cast<size_t>(line.text - all.text);
    count.damage |= start > count.end ? kEmptyLine : 0u;
    count.damage |= line.length > zrcfg::kMaxValueLength ? kLongLine : 0u;
    count.end = start + line.length;
    const bool ended = count.end < all.size && all.text[count.end] == '\n';
    count.damage |= ended ? 0u : kOpenLine;
    count.end += ended ? 1u : 0u;
    ++count.values;
  }
  // Behind the last value that is there: whatever readers stop at, or pass over in search of a
  // line.
  const char *const rest = all.text + count.end;
  const size_t rest_size = all.size - count.end;
  const bool unfinished = count.values < wanted || (count.damage & kOpenLine) != 0;
  count.damage |= count.values < wanted ? kMissingLines : 0u;
  if (rest_size > 0) {
    const bool zero = memchr(rest, '\0', rest_size) != nullptr;
    count.damage |= !unfinished ? kSurplus : zero ? kZeroByte : kEmptyLine;
    count.damage |= unfinished && all_zero(rest, rest_size) ? kZeroTail : 0u;
  }
  return count;
}

unsigned StoredObject::damage() const {
  const uint32_t beyond_header = length_word() - zrcfg::kHeaderSize;
  unsigned damage = count_lines().damage;
  damage |= section().file_size < section().offset ? kShortFile : 0u;
  damage |= beyond_header % zrcfg::kRecordSize != 0 ? kPartialRecord : 0u;
  damage |= record_count() > zrcfg::kMaxServedRecords ? kTooManyRecords : 0u;
  return damage;
}

}  // namespace zrcfg_store

// Preparing a property file for an update of attributes, and writing records and header in place.
#include "attr/property_update.h"

#include <string.h>
#include <unistd.h>

#include "core/store_file.h"
#include "core/trace.h"
#include "lifecycle/dir_tree.h"
#include "lock/object_lock.h"

namespace zrcfg {
namespace {

constexpr int kPrepareTimeout = 100;
constexpr uint32_t kBitsPerByte = 8;

uint32_t unable_to_open(const char *path) {
  ZRCFG_TRACE("unable to open %s file\n", path);
  return ZRCFG_E_NO_FILE;
}

// Copies the file that was found elsewhere into the object's directory.
uint32_t copy_into_place(const char *found, const char *path, const char *dir, bool log_success) {
  if (strcmp(found, path) == 0) {
    return ZRCFG_OK;
  }
  if (fileCopy(found, dir) != 0) {
    ZRCFG_TRACE("fileCopy() fail!\n");
    return ZRCFG_E_NO_FILE;
  }
  if (log_success) {
    ZRCFG_TRACE("fileCopy() succ from %s to %s!\n", found, path);
  }
  return ZRCFG_OK;
}

uint32_t copy_under_lock(const char *found, const char *path, const char *dir) {
  if (isLocked(found) == 1) {
    return unable_to_open(path);
  }
  int lock_fd = -1;
  if (cfgGetLock(found, &lock_fd, kPrepareTimeout, ZRCFG_LOCK_SHARED) != 0) {
    ZRCFG_TRACE("getLock fail!\n");
    return ZRCFG_E_LOCK;
  }
  const uint32_t result = copy_into_place(found, path, dir, true);
  (void)releaseLock(lock_fd);  // The copy's result is what matters.
  return result;
}

// Brings a property file that is not in its directory there, from where the search finds it.
uint32_t fetch(const char *dir, const char *path, PrepareGuard guard) {
  char found[kFilePathSize];
  if (getPropertyFile(dir, found) != ZRCFG_OK) {
    ZRCFG_TRACE("getPropertyFile() fail!\n");
    return ZRCFG_E_NO_FILE;
  }
  return guard == PrepareGuard::kLock ? copy_under_lock(found, path, dir)
                                      : copy_into_place(found, path, dir, false);
}

off_t record_offset(uint32_t position) {
  return static_cast<off_t>(kLengthWordSize + kHeaderSize) +
         static_cast<off_t>(position) * kRecordSize;
}

}  // namespace

uint32_t bring_file(const ObjectImage &image, const PropertyFd &file, PrepareGuard guard,
                    char *path) {
  const char *const dir = image_dir_path(image);
  // Fits: the image was opened through the same join.
  (void)join_path(path, kFilePathSize, dir, kPropertyFileName);
  if (file.fd == -1 && ACCESS(path, F_OK) != 0) {
    return fetch(dir, path, guard);
  }
  ZRCFG_TRACE("property_file=%s exist!\n", path);
  return ZRCFG_OK;
}

uint32_t open_for_update(const char *path, PropertyFd &file) {
  if (!file.writable) {
    file.close();
    if (!file.open(path, Access::kWrite) || !file.writable) {
      return unable_to_open(path);
    }
  }
  return ZRCFG_OK;
}

uint32_t prepare_update(const ObjectImage &image, PropertyFd &file, PrepareGuard guard) {
  char path[kFilePathSize];
  const uint32_t result = bring_file(image, file, guard, path);
  return result == ZRCFG_OK ? open_for_update(path, file) : result;
}

void write_header(int fd, const ObjectImage &image) {
  if (!write_all_at(fd, &image.header, kHeaderSize, kLengthWordSize)) {
    ZRCFG_TRACE("header not written!\n");
  }
}

void RecordWriter::mark(uint32_t position) {
  static_assert(kMaxServedRecords <= sizeof marked_ * kBitsPerByte);
  marked_[position / kBitsPerByte] |= static_cast<uint8_t>(1u << position % kBitsPerByte);
  if (position >= end_) {
    end_ = position + 1;
  }
}

bool RecordWriter::is_marked(uint32_t position) const {
  return (marked_[position / kBitsPerByte] >> position % kBitsPerByte & 1u) != 0;
}

bool RecordWriter::write(uint32_t first, uint32_t count) {
  return write_all_at(fd_, records(image_).begin() + first, size_t{count} * kRecordSize,
                      record_offset(first));
}

uint32_t RecordWriter::write_run(uint32_t first, uint32_t count) {
  if (write(first, count)) {
    return count;
  }
  uint32_t written = 0;
  for (uint32_t i = 0; i < count; ++i) {
    if (write(first + i, 1)) {
      ++written;
    } else {
      ZRCFG_TRACE("fwrite failed!\n");
    }
  }
  return written;
}

uint32_t RecordWriter::flush() {
  uint32_t written = 0;
  for (uint32_t first = 0; first < end_;) {
    uint32_t behind = first;
    while (behind < end_ && is_marked(behind)) {
      ++behind;
    }
    written += behind > first ? write_run(first, behind - first) : 0;
    first = behind + 1;  // That one is not marked.
  }
  return written;
}

}  // namespace zrcfg

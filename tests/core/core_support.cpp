// What the tests of the core share: the usual object, opened images, guarded buffers, log order.
#include "tests/core/core_support.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <regex>
#include <stdexcept>

namespace zrcfg_test {
namespace {

constexpr time_t kLongAgo = 1000000000;

const std::vector<std::string> &fixed_beginnings() {
  static const std::vector<std::string> beginnings = {
      "Input parameters can't be NULL",
      "pObjUrl ",
      "objUrl = ",
      "obj_path=",
      "object can't be NULL",
      "getLock fail",
      "getLockFile()",
      "getLockPath()",
      "objPath=",
      "no need to be locked",
      "getPropertyFile() fail",
      "property_file",
      "unable to open",
      "file(fd=",
      "createObjByPath() fail",
      "getSingleParamValueByParamName() fail",
      "setSingleParamValueByParamName() fail",
      "set_single_param_value_by_param_name() fail",
      "pBuf malloc failed",
      "pWriteBuf malloc failed",
      "i=",
      "param=",
      "param(",
      "Find the param!",
      "Same value",
      "read finish!",
      "device_type ",
      "hide = ",
  };
  return beginnings;
}

bool begins_with_any(const std::string &text, const std::vector<std::string> &beginnings) {
  return std::any_of(beginnings.begin(), beginnings.end(), [&text](const std::string &beginning) {
    return text.compare(0, beginning.size(), beginning) == 0;
  });
}

}  // namespace

OpenedImage::OpenedImage(const std::string &dir) {
  int lock_fd = -1;
  const uint32_t result = createObjByPath(&image_, dir.c_str(), &lock_fd, 0, ZRCFG_NO_LOCK);
  if (result != 0) {
    throw std::runtime_error("createObjByPath gives " + std::to_string(result));
  }
  clear_log();
}

OpenedImage::~OpenedImage() {
  destroyObj(image_, -1);
}

std::string OpenedImage::bytes(size_t offset, size_t size) const {
  return std::string(static_cast<const char *>(image_) + offset, size);
}

std::string GuardedBuffer::text() const {
  const char *const begin = bytes_.data() + kGuard;
  return std::string(begin, strnlen(begin, 256));
}

bool GuardedBuffer::untouched_from(size_t offset) const {
  for (size_t i = 0; i < bytes_.size(); ++i) {
    if ((i < kGuard || i >= kGuard + offset) && bytes_.at(i) != kMark) {
      return false;
    }
  }
  return true;
}

HeldLock::HeldLock(const std::string &relative, int operation)
    : fd_(open(store_path(relative).c_str(), O_RDONLY | O_CLOEXEC)) {
  if (fd_ < 0 || flock(fd_, operation | LOCK_NB) != 0) {
    close(fd_);
    throw std::runtime_error("cannot lock " + relative);
  }
}

HeldLock::~HeldLock() {
  close(fd_);
}

bool can_lock(const std::string &relative, int operation) {
  try {
    const HeldLock lock(relative, operation);
    return true;
  } catch (const std::runtime_error &) {
    return false;
  }
}

std::vector<std::string> fixed_log() {
  static const std::regex not_locked(".* file was not locked\\.\n");
  static const std::regex descriptor("(lockfd=)[0-9]+|(fd=)[0-9]+");
  static const std::regex address("((?:param|pRead)=)(?!0 )[0-9a-f]+");
  std::vector<std::string> lines;
  for (std::string line : log_texts()) {
    if (!begins_with_any(line, fixed_beginnings()) && !std::regex_match(line, not_locked)) {
      continue;
    }
    line = std::regex_replace(line, descriptor, "$1$2N");
    if (line.compare(0, 6, "param=") == 0) {
      line = std::regex_replace(line, address, "$1P");
    }
    lines.push_back(line);
  }
  return lines;
}

std::string last_fixed_log() {
  const std::vector<std::string> lines = fixed_log();
  return lines.empty() ? std::string() : lines.back();
}

std::string long_path(size_t length, char separator) {
  std::string path;
  while (length - path.size() > 128) {
    path += std::string(63, 'x') + separator;
  }
  return path + std::string(length - path.size() - 1, 'y') + separator;
}

void age_file(const std::string &relative) {
  const timespec times[2] = {{kLongAgo, 0}, {kLongAgo, 0}};
  if (utimensat(AT_FDCWD, store_path(relative).c_str(), times, 0) != 0) {
    throw std::runtime_error("cannot age " + relative);
  }
}

bool is_aged(const std::string &relative) {
  struct stat status = {};
  return stat(store_path(relative).c_str(), &status) == 0 && status.st_mtime == kLongAgo;
}

void make_unopenable(const std::string &relative) {
  unlink(store_path(relative).c_str());
  if (mknod(store_path(relative).c_str(), S_IFSOCK | 0666, 0) != 0) {
    throw std::runtime_error("cannot make a socket at " + relative);
  }
}

}  // namespace zrcfg_test

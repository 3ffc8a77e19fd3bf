// The wrapped libc calls.
#include "tests/platform/uci/failing_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>

namespace zrcfg_test {
namespace {

bool active = false;
CallFaults current;
int allocations = 0;

bool allocation_fails() {
  if (!active || ++allocations != current.failing_allocation) {
    return false;
  }
  errno = ENOMEM;
  return true;
}

}  // namespace

void set_call_faults(const CallFaults &faults) {
  current = faults;
  allocations = 0;
  active = true;
}

void clear_call_faults() {
  active = false;
}

int allocations_made() {
  return allocations;
}

}  // namespace zrcfg_test

using namespace zrcfg_test;

extern "C" {

void *__real_malloc(size_t size);
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
char *__real_strdup(const char *text);
int __real_open64(const char *path, int flags, ...);
int __real_fstat64(int fd, struct stat *status);
ssize_t __real_read(int fd, void *buffer, size_t size);

void *__wrap_malloc(size_t size) {
  return allocation_fails() ? nullptr : __real_malloc(size);
}

void *__wrap_calloc(size_t count, size_t size) {
  return allocation_fails() ? nullptr : __real_calloc(count, size);
}

void *__wrap_realloc(void *block, size_t size) {
  return allocation_fails() ? nullptr : __real_realloc(block, size);
}

char *__wrap_strdup(const char *text) {
  return allocation_fails() ? nullptr : __real_strdup(text);
}

int __wrap_asprintf(char **text, const char *format, ...) {
  if (allocation_fails()) {
    return -1;
  }
  va_list arguments;
  va_start(arguments, format);
  const int length = vasprintf(text, format, arguments);
  va_end(arguments);
  return length;
}

int __wrap_open64(const char *path, int flags, ...) {
  if (active && current.opens > 0) {
    --current.opens;
    errno = current.open_errno;
    return -1;
  }
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  return __real_open64(path, flags, mode);
}

int __wrap_fstat64(int fd, struct stat *status) {
  if (active && current.fstat_fails) {
    errno = EIO;
    return -1;
  }
  const int result = __real_fstat64(fd, status);
  if (active && current.told_size >= 0) {
    status->st_size = current.told_size;
  }
  return result;
}

ssize_t __wrap_read(int fd, void *buffer, size_t size) {
  if (active && current.reads > 0) {
    --current.reads;
    errno = current.read_errno;
    return -1;
  }
  const bool limited = active && current.read_limit > 0 && current.read_limit < size;
  return __real_read(fd, buffer, limited ? current.read_limit : size);
}

}  // extern "C"

// The interposed libc functions. The test program's definitions come before libc's in the lookup,
// so every call that the library makes by name arrives here first.

// Both the plain and the 64-suffixed names are defined here, so neither may be an alias.
#undef _FILE_OFFSET_BITS

#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <link.h>
#include <regex.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <type_traits>

#include "tests/support/libc_hooks_internal.h"

using namespace zrcfg_test;

namespace {

// The definition of the function that the one here hides.
// NOLINTBEGIN(bugprone-macro-parentheses): decltype tells a name from one in parentheses.
#define NEXT(name)                                                        \
  ([] {                                                                   \
    static decltype(&name) found = nullptr;                               \
    if (found == nullptr) {                                               \
      found = reinterpret_cast<decltype(&name)>(dlsym(RTLD_NEXT, #name)); \
    }                                                                     \
    return found;                                                         \
  }())
// NOLINTEND(bugprone-macro-parentheses)

template <typename Result>
long long as_number(Result result) {
  if constexpr (std::is_pointer_v<Result>) {
    return result == nullptr ? -1 : 0;
  } else {
    return static_cast<long long>(result);
  }
}

// Runs `real` with the bytes it may move, or fails in its place with `failure`.
template <typename Result, typename Real>
Result pass(const HookedCall &made, Result failure, Real real) {
  if (!hooks_active()) {
    return real(kNoLimit);
  }
  const Verdict verdict = judge_call(made);
  Result result = failure;
  // A descriptor is gone after a failed close, whatever the reason: the kernel does the same.
  if (verdict.error == 0 || verdict.error == kKilled || made.call == Call::kClose ||
      made.call == Call::kCloseDir) {
    result = real(verdict.limit);
  }
  if (verdict.error == kKilled) {
    die();
  }
  if (verdict.error != 0) {
    result = failure;
  }
  const int error = verdict.error != 0 ? verdict.error : errno;
  if (made.call != Call::kReadDir || verdict.error != 0) {
    record_call(made, as_number(result));
  }
  errno = error;
  return result;
}

int creation_mode(int flags, va_list arguments) {
  return (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(arguments, int) : 0;
}

struct AddressRange {
  uintptr_t begin;
  uintptr_t end;
};

AddressRange library_range;

int find_library(dl_phdr_info *info, size_t, void *) {
  if (strstr(info->dlpi_name, "libzrcfg") == nullptr) {
    return 0;
  }
  for (int i = 0; i < info->dlpi_phnum; ++i) {
    const auto &header = info->dlpi_phdr[i];
    if (header.p_type == PT_LOAD && (header.p_flags & PF_X) != 0) {
      library_range.begin = info->dlpi_addr + header.p_vaddr;
      library_range.end = library_range.begin + header.p_memsz;
    }
  }
  return 1;
}

// Everything else in the process, the tests' own containers among it, allocates undisturbed.
bool from_library(const void *caller) {
  const auto address = reinterpret_cast<uintptr_t>(caller);
  return hooks_active() && address >= library_range.begin && address < library_range.end;
}

HookedCall allocation(const char *name, size_t size) {
  return {Call::kAllocate, name, nullptr, -1, 0, static_cast<long long>(size)};
}

}  // namespace

namespace zrcfg_test {

void prepare_hooks() {
  if (library_range.end == 0) {
    dl_iterate_phdr(find_library, nullptr);
  }
}

}  // namespace zrcfg_test

#define HOOK_OPEN(name)                                                      \
  int name(const char *path, int flags, ...) {                               \
    va_list arguments;                                                       \
    va_start(arguments, flags);                                              \
    const int mode = creation_mode(flags, arguments);                        \
    va_end(arguments);                                                       \
    return pass<int>({Call::kOpen, #name, path, -1, flags, 0}, -1,           \
                     [&](size_t) { return NEXT(name)(path, flags, mode); }); \
  }
#define HOOK_OPENAT(name)                                                         \
  int name(int dir, const char *path, int flags, ...) {                           \
    va_list arguments;                                                            \
    va_start(arguments, flags);                                                   \
    const int mode = creation_mode(flags, arguments);                             \
    va_end(arguments);                                                            \
    return pass<int>({Call::kOpen, #name, path, -1, flags, 0}, -1,                \
                     [&](size_t) { return NEXT(name)(dir, path, flags, mode); }); \
  }
#define HOOK_PREAD(name, offset_type)                                                         \
  ssize_t name(int fd, void *buffer, size_t size, offset_type offset) {                       \
    return pass<ssize_t>(                                                                     \
        {Call::kRead, #name, nullptr, fd, 0, static_cast<long long>(size)}, -1,               \
        [&](size_t limit) { return NEXT(name)(fd, buffer, std::min(size, limit), offset); }); \
  }
#define HOOK_PWRITE(name, offset_type)                                                       \
  ssize_t name(int fd, const void *bytes, size_t size, offset_type offset) {                 \
    return pass<ssize_t>(                                                                    \
        {Call::kWrite, #name, nullptr, fd, 0, static_cast<long long>(size)}, -1,             \
        [&](size_t limit) { return NEXT(name)(fd, bytes, std::min(size, limit), offset); }); \
  }
#define HOOK_SEEK(name, offset_type)                                                  \
  offset_type name(int fd, offset_type offset, int whence) noexcept {                 \
    return pass<offset_type>({Call::kSeek, #name, nullptr, fd, whence, offset}, -1,   \
                             [&](size_t) { return NEXT(name)(fd, offset, whence); }); \
  }
#define HOOK_FTRUNCATE(name, offset_type)                                \
  int name(int fd, offset_type size) noexcept {                          \
    return pass<int>({Call::kTruncate, #name, nullptr, fd, 0, size}, -1, \
                     [&](size_t) { return NEXT(name)(fd, size); });      \
  }
#define HOOK_TRUNCATE(name, offset_type)                              \
  int name(const char *path, offset_type size) noexcept {             \
    return pass<int>({Call::kTruncate, #name, path, -1, 0, size}, -1, \
                     [&](size_t) { return NEXT(name)(path, size); }); \
  }
#define HOOK_STAT(name, stat_type)                                      \
  int name(const char *path, struct stat_type *status) noexcept {       \
    return pass<int>({Call::kStat, #name, path, -1, 0, 0}, -1,          \
                     [&](size_t) { return NEXT(name)(path, status); }); \
  }
#define HOOK_FSTAT(name, stat_type)                                   \
  int name(int fd, struct stat_type *status) noexcept {               \
    return pass<int>({Call::kStat, #name, nullptr, fd, 0, 0}, -1,     \
                     [&](size_t) { return NEXT(name)(fd, status); }); \
  }
#define HOOK_FSTATAT(name, stat_type)                                                 \
  int name(int dir, const char *path, struct stat_type *status, int flags) noexcept { \
    return pass<int>({Call::kStat, #name, path, -1, flags, 0}, -1,                    \
                     [&](size_t) { return NEXT(name)(dir, path, status, flags); });   \
  }
#define HOOK_FOPEN(name)                                                 \
  FILE *name(const char *path, const char *mode) {                       \
    return pass<FILE *>({Call::kFopen, #name, path, -1, 0, 0}, nullptr,  \
                        [&](size_t) { return NEXT(name)(path, mode); }); \
  }
#define HOOK_PATH(name, family)                                 \
  int name(const char *path) noexcept {                         \
    return pass<int>({family, #name, path, -1, 0, 0}, -1,       \
                     [&](size_t) { return NEXT(name)(path); }); \
  }
#define HOOK_READDIR(name, entry_type)                                                    \
  struct entry_type *name(DIR *directory) {                                               \
    return pass<struct entry_type *>({Call::kReadDir, #name, nullptr, -1, 0, 0}, nullptr, \
                                     [&](size_t) { return NEXT(name)(directory); });      \
  }
#define HOOK_FD(name)                                              \
  int name(int fd) {                                               \
    return pass<int>({Call::kOther, #name, nullptr, fd, 0, 0}, -1, \
                     [&](size_t) { return NEXT(name)(fd); });      \
  }

extern "C" {

HOOK_OPEN(open)
HOOK_OPEN(open64)
HOOK_OPENAT(openat)
HOOK_OPENAT(openat64)
HOOK_PREAD(pread, off_t)
HOOK_PREAD(pread64, off64_t)
HOOK_PWRITE(pwrite, off_t)
HOOK_PWRITE(pwrite64, off64_t)
HOOK_SEEK(lseek, off_t)
HOOK_SEEK(lseek64, off64_t)
HOOK_FTRUNCATE(ftruncate, off_t)
HOOK_FTRUNCATE(ftruncate64, off64_t)
HOOK_TRUNCATE(truncate, off_t)
HOOK_TRUNCATE(truncate64, off64_t)
HOOK_STAT(stat, stat)
HOOK_STAT(stat64, stat64)
HOOK_STAT(lstat, stat)
HOOK_STAT(lstat64, stat64)
HOOK_FSTAT(fstat, stat)
HOOK_FSTAT(fstat64, stat64)
HOOK_FSTATAT(fstatat, stat)
HOOK_FSTATAT(fstatat64, stat64)
HOOK_FOPEN(fopen)
HOOK_FOPEN(fopen64)
HOOK_PATH(unlink, Call::kOther)
HOOK_PATH(remove, Call::kOther)
HOOK_PATH(rmdir, Call::kOther)
HOOK_READDIR(readdir, dirent)
HOOK_READDIR(readdir64, dirent64)
HOOK_FD(fsync)
HOOK_FD(fdatasync)

int close(int fd) {
  return pass<int>({Call::kClose, "close", nullptr, fd, 0, 0}, -1,
                   [&](size_t) { return NEXT(close)(fd); });
}

ssize_t read(int fd, void *buffer, size_t size) {
  return pass<ssize_t>({Call::kRead, "read", nullptr, fd, 0, static_cast<long long>(size)}, -1,
                       [&](size_t limit) { return NEXT(read)(fd, buffer, std::min(size, limit)); });
}

ssize_t write(int fd, const void *bytes, size_t size) {
  return pass<ssize_t>({Call::kWrite, "write", nullptr, fd, 0, static_cast<long long>(size)}, -1,
                       [&](size_t limit) { return NEXT(write)(fd, bytes, std::min(size, limit)); });
}

int flock(int fd, int operation) noexcept {
  return pass<int>({Call::kLock, "flock", nullptr, fd, operation, 0}, -1,
                   [&](size_t) { return NEXT(flock)(fd, operation); });
}

int access(const char *path, int mode) noexcept {
  return pass<int>({Call::kAccess, "access", path, -1, mode, 0}, -1,
                   [&](size_t) { return NEXT(access)(path, mode); });
}

int faccessat(int dir, const char *path, int mode, int flags) noexcept {
  return pass<int>({Call::kAccess, "faccessat", path, -1, mode, 0}, -1,
                   [&](size_t) { return NEXT(faccessat)(dir, path, mode, flags); });
}

DIR *opendir(const char *path) {
  return pass<DIR *>({Call::kOpenDir, "opendir", path, -1, 0, 0}, nullptr,
                     [&](size_t) { return NEXT(opendir)(path); });
}

int closedir(DIR *directory) {
  return pass<int>({Call::kCloseDir, "closedir", nullptr, -1, 0, 0}, -1,
                   [&](size_t) { return NEXT(closedir)(directory); });
}

DIR *fdopendir(int fd) {
  return pass<DIR *>({Call::kOpenDir, "fdopendir", nullptr, fd, 0, 0}, nullptr,
                     [&](size_t) { return NEXT(fdopendir)(fd); });
}

ssize_t getdents64(int fd, void *buffer, size_t size) noexcept {
  return pass<ssize_t>({Call::kReadDir, "getdents64", nullptr, fd, 0, static_cast<long long>(size)},
                       -1, [&](size_t) { return NEXT(getdents64)(fd, buffer, size); });
}

// Takes the arguments of every call; what a call does not have is passed on as it was found.
long syscall(long number, ...) noexcept {
  va_list list;
  va_start(list, number);
  long arguments[6];
  for (long &argument : arguments) {
    argument = va_arg(list, long);
  }
  va_end(list);
  const auto make = [&](size_t) {
    return NEXT(syscall)(number, arguments[0], arguments[1], arguments[2], arguments[3],
                         arguments[4], arguments[5]);
  };
  if (number != SYS_getdents64) {
    return make(kNoLimit);
  }
  return pass<long>(
      {Call::kReadDir, "getdents64", nullptr, static_cast<int>(arguments[0]), 0, arguments[2]}, -1,
      make);
}

int unlinkat(int dir, const char *path, int flags) noexcept {
  return pass<int>({Call::kOther, "unlinkat", path, -1, flags, 0}, -1,
                   [&](size_t) { return NEXT(unlinkat)(dir, path, flags); });
}

int mkdirat(int dir, const char *path, mode_t mode) noexcept {
  return pass<int>({Call::kOther, "mkdirat", path, -1, 0, 0}, -1,
                   [&](size_t) { return NEXT(mkdirat)(dir, path, mode); });
}

int regcomp(regex_t *compiled, const char *pattern, int flags) {
  if (!hooks_active()) {
    return NEXT(regcomp)(compiled, pattern, flags);
  }
  const HookedCall made = {Call::kRegcomp, "regcomp", nullptr, -1, flags, 0};
  const Verdict verdict = judge_call(made);
  const int result = verdict.error != 0 ? REG_ESPACE : NEXT(regcomp)(compiled, pattern, flags);
  record_call(made, result);
  return result;
}

int mkdir(const char *path, mode_t mode) noexcept {
  return pass<int>({Call::kOther, "mkdir", path, -1, 0, 0}, -1,
                   [&](size_t) { return NEXT(mkdir)(path, mode); });
}

int rename(const char *from, const char *to) noexcept {
  return pass<int>({Call::kOther, "rename", from, -1, 0, 0}, -1,
                   [&](size_t) { return NEXT(rename)(from, to); });
}

int usleep(useconds_t microseconds) {
  return pass<int>({Call::kSleep, "usleep", nullptr, -1, 0, microseconds}, -1, [&](size_t) {
    return hooks_active() && sleeps_skipped() ? 0 : NEXT(usleep)(microseconds);
  });
}

int nanosleep(const timespec *time, timespec *left) {
  const long long microseconds = time->tv_sec * 1000000LL + time->tv_nsec / 1000;
  return pass<int>({Call::kSleep, "nanosleep", nullptr, -1, 0, microseconds}, -1, [&](size_t) {
    return hooks_active() && sleeps_skipped() ? 0 : NEXT(nanosleep)(time, left);
  });
}

void *malloc(size_t size) {
  if (!from_library(__builtin_return_address(0))) {
    return NEXT(malloc)(size);
  }
  return pass<void *>(allocation("malloc", size), nullptr,
                      [&](size_t) { return NEXT(malloc)(size); });
}

void *calloc(size_t count, size_t size) {
  if (!from_library(__builtin_return_address(0))) {
    return NEXT(calloc)(count, size);
  }
  return pass<void *>(allocation("calloc", count * size), nullptr,
                      [&](size_t) { return NEXT(calloc)(count, size); });
}

void *realloc(void *block, size_t size) {
  if (!from_library(__builtin_return_address(0))) {
    return NEXT(realloc)(block, size);
  }
  return pass<void *>(allocation("realloc", size), nullptr,
                      [&](size_t) { return NEXT(realloc)(block, size); });
}

}  // extern "C"

// Counts, records, fails and cuts short the libc calls that the library makes.
#ifndef ZRCFG_TESTS_SUPPORT_LIBC_HOOKS_H_
#define ZRCFG_TESTS_SUPPORT_LIBC_HOOKS_H_

#include <stddef.h>

#include <string>
#include <vector>

namespace zrcfg_test {

// Families of libc functions; the plain, the 64-suffixed and the positioned forms count alike.
enum class Call {
  kOpen,      // open, openat
  kClose,     // close
  kRead,      // read, pread
  kWrite,     // write, pwrite
  kSeek,      // lseek
  kTruncate,  // ftruncate, truncate
  kLock,      // flock
  kAccess,    // access, faccessat
  kStat,      // stat, fstat, lstat, fstatat
  kOpenDir,   // opendir, fdopendir
  kCloseDir,  // closedir
  kFopen,     // fopen
  kSleep,     // usleep, nanosleep
  kOther,     // fsync, fdatasync, rename, unlink, unlinkat, remove, mkdir, mkdirat, rmdir
  kReadDir,   // readdir, getdents64; many entries come with one system call
  kRegcomp,   // regcomp, which fails with REG_ESPACE whatever the error
  // malloc, calloc, realloc, called from libzrcfg itself. Valgrind puts its own functions in the
  // place of these hooks unless it runs with --soname-synonyms=somalloc=nouserintercepts.
  kAllocate,
  // Beside its own family, every call that may change the store: writing, truncating, creating,
  // making, removing, renaming.
  kChange,
};

const char *call_name(Call call);

struct CallRecord {
  Call call;
  std::string function;
  std::string path;  // Of the calls that take one.
  int fd;            // The argument, or for an opening the result; -1 elsewhere.
  int flags;         // Open flags, lock operation, access mode.
  long long amount;  // Bytes asked for, the size set, microseconds to sleep.
  long long result;
};

inline constexpr unsigned kForEver = ~0u;
inline constexpr size_t kNoLimit = ~size_t{0};
// As an error: the process is killed in front of the call; with a `limit` behind so many bytes of
// it.
inline constexpr int kKilled = -1;

// From the `nth` call (from 1) of a family on, `times` calls fail with `error`. An `error` of 0
// cuts reads and writes to `limit` bytes instead, and leaves other calls alone.
struct Fault {
  Call call;
  unsigned nth;
  unsigned times;
  int error;
  size_t limit;
  bool only_writable = false;  // Of the openings, fails those that ask for write access.
};

Fault fail_once(Call call, unsigned nth, int error);
Fault fail_times(Call call, unsigned nth, unsigned times, int error);
Fault fail_for_ever(Call call, unsigned nth, int error);
Fault fail_writable_opens(int error);
Fault kill_at(Call call, unsigned nth);
Fault kill_within(Call call, unsigned nth, size_t bytes);
Fault cut_short(Call call, unsigned nth, unsigned times, size_t limit);

// Watches the calls of this process from its making to stop(), or to its end. One at a time.
class CallWatch {
 public:
  explicit CallWatch(const std::vector<Fault> &faults = {}, bool skip_sleeps = false);
  ~CallWatch();
  CallWatch(const CallWatch &) = delete;
  CallWatch &operator=(const CallWatch &) = delete;

  void stop();
  // The calls of a family; every system call except pauses.
  unsigned count(Call call) const;
  unsigned system_calls() const;
  // How often a fault was applied.
  unsigned faults_hit() const;
  // What happened, in order. Recording ends with the 4000th call, counting does not.
  std::vector<CallRecord> records() const;
  // The same as one line a call, for messages.
  std::string describe() const;
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_SUPPORT_LIBC_HOOKS_H_

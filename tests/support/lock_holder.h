// A lock held by another process, until it is told to let go or is killed.
#ifndef ZRCFG_TESTS_SUPPORT_LOCK_HOLDER_H_
#define ZRCFG_TESTS_SUPPORT_LOCK_HOLDER_H_

#include <sys/types.h>

#include <string>

namespace zrcfg_test {

enum class Held { kShared, kExclusive };

// Forks a child that locks a file or directory of the store, by flock and without the library. To
// be made while the test program has a single thread.
class LockHolder {
 public:
  // `relative` is relative to the store root. Returns when the child holds the lock; throws when it
  // cannot have it at once.
  LockHolder(const std::string &relative, Held held);
  ~LockHolder();
  LockHolder(const LockHolder &) = delete;
  LockHolder &operator=(const LockHolder &) = delete;

  // Lets the child unlock and end; returns when it has ended.
  void release();
  // Kills the child with the lock in its hand; returns when it has ended.
  void kill_child();

 private:
  void reap();

  pid_t child_ = -1;
  int control_ = -1;  // The child holds the lock for as long as this end of the pipe is open.
};

// Whether such a lock on the file or directory `relative` of the store could be had right now.
bool exclusively_lockable(const std::string &relative);
bool shared_lockable(const std::string &relative);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_SUPPORT_LOCK_HOLDER_H_

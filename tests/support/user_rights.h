// Rights of an ordinary user: the superuser is never refused, so tests of refusals step down.
#ifndef ZRCFG_TESTS_SUPPORT_USER_RIGHTS_H_
#define ZRCFG_TESTS_SUPPORT_USER_RIGHTS_H_

#include <sys/types.h>

#include <string>

namespace zrcfg_test {

// Runs as a user who is not the superuser, as far as files are concerned.
class OrdinaryUser {
 public:
  OrdinaryUser();
  ~OrdinaryUser();
  OrdinaryUser(const OrdinaryUser &) = delete;
  OrdinaryUser &operator=(const OrdinaryUser &) = delete;

 private:
  bool was_root_;
};

// Changes the mode of an entry of the store for the length of a block. Begins before and ends
// behind the ordinary user, who could not do it.
class ModeChange {
 public:
  ModeChange(const std::string &relative, mode_t mode);
  ~ModeChange();
  ModeChange(const ModeChange &) = delete;
  ModeChange &operator=(const ModeChange &) = delete;

 private:
  std::string path_;
  mode_t before_;
};

// An ordinary user, and an entry of the store with this mode.
class UserWithMode {
 public:
  UserWithMode(const std::string &relative, mode_t mode) : change_(relative, mode) {}

 private:
  ModeChange change_;
  OrdinaryUser user_;
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_SUPPORT_USER_RIGHTS_H_

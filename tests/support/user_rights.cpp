#include "tests/support/user_rights.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <stdexcept>

#include "tests/support/property_builder.h"

namespace zrcfg_test {
namespace {

constexpr uid_t kNobody = 65534;

}  // namespace

OrdinaryUser::OrdinaryUser() : was_root_(geteuid() == 0) {
  if (chmod("/var", 0755) != 0 || (was_root_ && seteuid(kNobody) != 0)) {
    throw std::runtime_error("cannot become an ordinary user");
  }
}

OrdinaryUser::~OrdinaryUser() {
  if (was_root_ && seteuid(0) != 0) {
    ADD_FAILURE() << "cannot become root again";
  }
}

ModeChange::ModeChange(const std::string &relative, mode_t mode)
    : path_(store_path(relative)), before_(0) {
  struct stat status = {};
  if (stat(path_.c_str(), &status) != 0 || chmod(path_.c_str(), mode) != 0) {
    throw std::runtime_error("cannot change the mode of " + path_);
  }
  before_ = status.st_mode & 07777;
}

ModeChange::~ModeChange() {
  if (chmod(path_.c_str(), before_) != 0) {
    ADD_FAILURE() << "cannot restore the mode of " << path_;
  }
}

}  // namespace zrcfg_test

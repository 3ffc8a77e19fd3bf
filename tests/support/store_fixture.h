// The fixture of every test that touches the store: an empty one, and nothing left open or locked.
#ifndef ZRCFG_TESTS_SUPPORT_STORE_FIXTURE_H_
#define ZRCFG_TESTS_SUPPORT_STORE_FIXTURE_H_

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace zrcfg_test {

// Open descriptors of this process and what they are open on.
std::map<int, std::string> open_descriptors();

// Property files below the store that somebody holds a lock on.
std::vector<std::string> locked_property_files();

// Empties /var/, which must be a private one. A test program run without scripts/with-store fails
// here before it deletes anything.
class StoreTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

 private:
  std::map<int, std::string> descriptors_;
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_SUPPORT_STORE_FIXTURE_H_

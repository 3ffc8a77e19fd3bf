// What the tests of the enumeration share: lists taken into containers, the log, a sealed store.
#ifndef ZRCFG_TESTS_ENUM_ENUM_SUPPORT_H_
#define ZRCFG_TESTS_ENUM_ENUM_SUPPORT_H_

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {

using Node = std::pair<std::string, unsigned>;  // The name and rw of a NODE_INFO.

// The content of a list, which is freed.
std::vector<std::string> take_names(SubObjName *head);
std::vector<Node> take_nodes(NODE_INFO *head);
const NODE_INFO *last_of(const NODE_INFO *head);

// The names of a list of nodes.
std::vector<std::string> names_of(const std::vector<Node> &nodes);

// An object's file with this access right and these parameters.
struct Param {
  std::string name;
  uint8_t rw = 0;
  uint8_t hide = 0;
  uint8_t device_type = 0;
};
PropertyFile object_file(uint8_t rw = 0, const std::vector<Param> &params = {});
PropertyFile hidden_file();

// The lines that the enumeration itself logs, in order; those of locks and files are left out.
std::vector<std::string> enum_log();

// Type, time of change and content of every entry of the store.
std::map<std::string, std::string> store_state();

// A URL of exactly `length` characters, of levels with one character each; the last may have two.
std::string deep_url(size_t length);

// An absolute path of the store for a URL.
std::string dir_of(const std::string &url);

// The lists that an exported call gives for a URL; the result and whether the outputs were written.
struct NameList {
  uint32_t result;
  bool written;
  std::vector<std::string> names;
};
NameList list_names(const std::string &url);

struct NodeList {
  uint32_t result;
  bool written;
  std::vector<Node> nodes;
  bool tail_is_last;  // The tail that was stored is the last node, or null when there is none.
};
NodeList list_children(const std::string &url, int timeout = 0);
NodeList list_object(const std::string &url, int timeout = 0);
NodeList list_all(const std::string &url, int recursive, int timeout = 0);

// Every line must go to the device's log under the library's name. A sealed store must be at the
// end what it was then.
class EnumTest : public StoreTest {
 protected:
  void SetUp() override;
  void TearDown() override;
  // To be called when the store is built.
  void seal();

 private:
  std::map<std::string, std::string> state_;
  bool sealed_ = false;
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_ENUM_ENUM_SUPPORT_H_

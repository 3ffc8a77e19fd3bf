// What the tests of trees, instances and export share: a store with tables, its tree, the log.
#ifndef ZRCFG_TESTS_LIFECYCLE_LIFECYCLE_SUPPORT_H_
#define ZRCFG_TESTS_LIFECYCLE_LIFECYCLE_SUPPORT_H_

#include <sys/resource.h>
#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/property_builder.h"
#include "support/store_fixture.h"
#include "support/user_rights.h"
#include "zrcfg.h"

namespace zrcfg_test {

using Lines = std::vector<std::string>;

// Every entry of the store: "dir", "link to …", "other" or "file …" with all its bytes.
using Tree = std::map<std::string, std::string>;
inline constexpr char kDirEntry[] = "dir";
Tree store_tree();
// The same without the addresses that writers of records leave in property files.
Tree tree_without_slots();
std::string file_entry(const std::string &bytes);
// The entries at and below `dir` (without a final slash), and the tree without them.
Tree subtree(const Tree &tree, const std::string &dir);
Tree without(const Tree &tree, const std::string &dir);
// The tree with a copy of `from` at `to`; both without a final slash.
Tree with_copy(const Tree &tree, const std::string &from, const std::string &to);

// What a call prints on standard output.
std::string printed(const std::function<void()> &call);

// The texts that the calls on instances promise, in order; locks, file opening and value access
// have tests of their own.
Lines lifecycle_log();

// Leaves room for `more` descriptors beside those that are open, for the length of a block.
class DescriptorLimit {
 public:
  explicit DescriptorLimit(unsigned more);
  ~DescriptorLimit();
  DescriptorLimit(const DescriptorLimit &) = delete;
  DescriptorLimit &operator=(const DescriptorLimit &) = delete;

 private:
  rlim_t before_;
  std::vector<int> fillers_;  // In the gaps between the open ones.
};

// A link of the store at `relative`.
void make_link(const std::string &target, const std::string &relative);

// A directory path of exactly `length` characters, the final slash included, of names of at most 60
// characters; and the same as a URL.
std::string path_of(size_t length);
std::string url_of(std::string dir);

// A table header: its limit, its kind, the name of its counter.
struct TableFields {
  unsigned rw = 1;
  unsigned max_instance = 3;
  unsigned key = 0;
  std::string pnoe = "Gateway/TableNumberOfEntries";
};
PropertyFile table_file(const TableFields &fields);

inline constexpr char kTable[] = "Gateway/Table/";
inline constexpr char kTableUrl[] = "Gateway.Table.";
inline constexpr char kTemplateLock[] = "Gateway/Table/0/property.conf";
inline constexpr char kParentLock[] = "Gateway/property.conf";
inline constexpr char kFixed[] = "Gateway/Fixed/";
inline constexpr char kFixedUrl[] = "Gateway.Fixed.";

// A gateway with a dynamic table (limit 3, instances 1 and 3 and a template with sub-objects) and
// a fixed one (instance 1). The counter of the dynamic table stands at 2.
class LifecycleTest : public StoreTest {
 protected:
  void SetUp() override;

  void set_table(const TableFields &fields);
  void set_fixed(const TableFields &fields);
  void set_counter(const std::string &value);
  // Takes the tree as it is for what is expected later, and forgets the log.
  void remember();

  // The tree is as remembered, but for …
  void expect_unchanged() const;
  void expect_tree(const Tree &expected) const;
  Tree with_counter(Tree tree, const std::string &value) const;

  Tree tree_;
};

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_LIFECYCLE_LIFECYCLE_SUPPORT_H_

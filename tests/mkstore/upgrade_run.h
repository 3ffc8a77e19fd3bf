// An old store in a scratch directory, what happens to it in use, and one upgrade of it.
#ifndef ZRCFG_TESTS_MKSTORE_UPGRADE_RUN_H_
#define ZRCFG_TESTS_MKSTORE_UPGRADE_RUN_H_

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/mkstore/build_run.h"

constexpr char kWritable[] = "access=\"readWrite\"";
constexpr char kNumber[] = "<unsignedInt/>";

// A parameter that clients may set.
std::string writable(const std::string &name, const std::string &syntax = "<string/>");

// The object "Root." with the counter TCount of its table "Root.T.{i}.", whose limits are XML
// attributes.
std::string table(const std::string &limits, const std::string &inside = writable("P"));

// The files below a directory with their bytes.
std::map<std::string, std::string> tree_of(const std::string &directory);

// The old store is "old" in the scratch directory, the new one "out".
class UpgradeTest : public BuildTest {
 protected:
  // Builds the elements, with the list files that were written, into "old". The lists are removed.
  void build_old(const std::string &elements) const;

  // Upgrades "old" to the elements with the list files that were written, and checks that the old
  // store stays as it is.
  RunResult upgrade(const std::string &elements,
                    const std::vector<std::string> &options = {}) const;

  // An upgrade that must succeed and report exactly these lines, and end with these totals. All
  // files of the new store have to be well formed.
  void expect_upgrade(const std::string &elements, const std::vector<std::string> &lines,
                      const std::string &totals) const;

  std::string old_file(const std::string &object) const {
    return path("old/" + object + "/property.conf");
  }
  ReadFile read_old(const std::string &object) const {
    return read_property_file(path("old/" + object));
  }

  // Replaces the line of a value of the old store; `line` has no line feed.
  void set_old(const std::string &object, const std::string &name, const std::string &line) const;

  // Changes the bytes of an old property file.
  void edit_old(const std::string &object, const std::function<void(std::string &)> &edit) const;

  // Overwrites bytes of the header, or of the record of a parameter.
  void poke_header(const std::string &object, size_t offset, const std::string &bytes) const;
  void poke_record(const std::string &object, const std::string &name, size_t offset,
                   const std::string &bytes) const;

  // Removes a directory of the old store, or copies one.
  void delete_old(const std::string &object) const;
  void copy_old(const std::string &from, const std::string &to) const;
};

#endif  // ZRCFG_TESTS_MKSTORE_UPGRADE_RUN_H_

// A scratch directory and one run of the store builder in it.
#ifndef ZRCFG_TESTS_MKSTORE_BUILD_RUN_H_
#define ZRCFG_TESTS_MKSTORE_BUILD_RUN_H_

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/mkstore/store_reader.h"

struct RunResult {
  int code = -1;
  std::string out;
  std::string err;
};

// Every test has a directory of its own, in which model.xml and the list files are written and
// the store is built under the name "out".
class BuildTest : public testing::Test {
 protected:
  BuildTest();
  ~BuildTest() override;

  std::string path(const std::string &name) const { return directory_ + "/" + name; }
  void write(const std::string &name, const std::string &content) const;

  // Writes the elements as the model "Test:1.0" of a document. The elements begin in line 3.
  void write_model(const std::string &elements, const std::string &types = "") const;

  RunResult run(const std::vector<std::string> &arguments) const;

  // Builds model.xml, with the list files that were written, into "out".
  RunResult build() const;

  // The property file of an object directory such as "Root/Table/1".
  ReadFile read(const std::string &object) const {
    return read_property_file(path("out/" + object));
  }
  std::string value(const std::string &object, const std::string &name) const {
    return find_record(read(object), name).line;
  }

  // What the directory holds, sorted, without what the test itself wrote.
  std::vector<std::string> leftovers() const;

  // Runs the builder, which must end with code 1 and this message and leave nothing behind. "@"
  // stands for the scratch directory and its slash.
  void expect_refused(const std::string &message) const;

 private:
  std::string directory_;
};

// Elements for write_model, one line each.
std::string object(const std::string &name, const std::string &inside,
                   const std::string &attributes = "access=\"readOnly\"");
std::string parameter(const std::string &name, const std::string &syntax = "<string/>",
                      const std::string &attributes = "access=\"readOnly\"");

// The letters and digits of a text, for names of test cases; everything else becomes one blank.
std::string case_title(const std::string &text);

#endif  // ZRCFG_TESTS_MKSTORE_BUILD_RUN_H_

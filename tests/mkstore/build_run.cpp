// A scratch directory and one run of the store builder in it.
#include "tests/mkstore/build_run.h"

#include <stdlib.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "tools/mkstore/command.h"

namespace fs = std::filesystem;

BuildTest::BuildTest() : directory_((fs::temp_directory_path() / "mkstore-XXXXXX").string()) {
  if (mkdtemp(directory_.data()) == nullptr) {
    ADD_FAILURE() << "no scratch directory " << directory_;
  }
}

BuildTest::~BuildTest() {
  std::error_code ignored;  // A directory that stays behind is no fault of the tested program.
  fs::remove_all(directory_, ignored);
}

void BuildTest::write(const std::string &name, const std::string &content) const {
  std::ofstream stream(path(name), std::ios::binary);
  stream << content;
  ASSERT_TRUE(stream.flush().good()) << path(name);
}

void BuildTest::write_model(const std::string &elements, const std::string &types) const {
  write("model.xml",
        "<?xml version=\"1.0\"?>\n"
        "<dm:document xmlns:dm=\"urn:broadband-forum-org:cwmp:datamodel-1-14\">" +
            types + "<model name=\"Test:1.0\">\n" + elements + "</model></dm:document>\n");
}

RunResult BuildTest::run(const std::vector<std::string> &arguments) const {
  std::ostringstream out;
  std::ostringstream err;
  RunResult result;
  result.code = zrcfg::mkstore::run_command(arguments, out, err);
  result.out = out.str();
  result.err = err.str();
  return result;
}

RunResult BuildTest::build() const {
  std::vector<std::string> arguments = {"--model", path("model.xml")};
  for (const std::string name : {"instances", "values", "attributes"}) {
    if (fs::exists(path(name))) {
      arguments.push_back("--" + name);
      arguments.push_back(path(name));
    }
  }
  arguments.push_back(path("out"));
  return run(arguments);
}

std::vector<std::string> BuildTest::leftovers() const {
  const std::set<std::string> own = {"model.xml", "instances", "values", "attributes"};
  std::vector<std::string> names;
  for (const fs::directory_entry &entry : fs::directory_iterator(directory_)) {
    if (own.count(entry.path().filename().string()) == 0) {
      names.push_back(entry.path().filename().string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

void BuildTest::expect_refused(const std::string &message) const {
  const RunResult result = build();
  std::string wanted = "zrcfg-mkstore: " + message + "\n";
  for (size_t at = wanted.find('@'); at != std::string::npos; at = wanted.find('@', at)) {
    wanted.replace(at, 1, path(""));
  }
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, wanted);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(leftovers(), std::vector<std::string>());
}

std::string object(const std::string &name, const std::string &inside,
                   const std::string &attributes) {
  return "<object name=\"" + name + "\" " + attributes + ">\n" + inside + "</object>\n";
}

std::string parameter(const std::string &name, const std::string &syntax,
                      const std::string &attributes) {
  return "<parameter name=\"" + name + "\" " + attributes + "><syntax>" + syntax +
         "</syntax></parameter>\n";
}

std::string case_title(const std::string &text) {
  std::string title;
  for (const char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
      title += c;
    } else if (!title.empty() && title.back() != ' ') {
      title += ' ';
    }
  }
  return title;
}

// The real documents: every object, parameter name and access right against another reading.
#include <stdio.h>

#include <chrono>
#include <filesystem>
#include <ostream>
#include <set>

#include "tests/mkstore/build_run.h"

namespace fs = std::filesystem;

namespace {

struct RealModel {
  const char *file;
  const char *summary;
};

void PrintTo(const RealModel &given, std::ostream *out) {
  *out << given.file;
}

class RealModelTest : public BuildTest, public testing::WithParamInterface<RealModel> {
 protected:
  std::string document() const { return std::string(ZRCFG_MODEL_DIR) + "/" + GetParam().file; }

  RunResult build_document() const { return run({"--model", document(), path("out")}); }
};

struct Entry {
  std::string path;
  std::string access;
};

std::vector<Entry> independent_reading(const std::string &document) {
  std::vector<Entry> entries;
  FILE *pipe = popen((std::string(ZRCFG_MODEL_READER) + " " + document).c_str(), "r");
  char line[1024];
  while (pipe != nullptr && fgets(line, sizeof line, pipe) != nullptr) {
    const std::string text(line);
    const size_t tab = text.find('\t');
    entries.push_back({text.substr(0, tab), text.substr(tab + 1, text.size() - tab - 2)});
  }
  EXPECT_EQ(pipe == nullptr ? -1 : pclose(pipe), 0) << "read_model.py failed";
  return entries;
}

// "A.{i}.B." gives "A/0/B/"; the part of a table's own instance marker is kept.
std::string template_directory(std::string path) {
  for (size_t at = path.find("{i}"); at != std::string::npos; at = path.find("{i}")) {
    path.replace(at, 3, "0");
  }
  for (char &c : path) {
    c = c == '.' ? '/' : c;
  }
  return path;
}

TEST_P(RealModelTest, CompilesCompletelyAndFast) {
  const auto start = std::chrono::steady_clock::now();
  const RunResult result = build_document();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(result.code, 0) << result.err;
  const std::string summary = GetParam().summary;
  EXPECT_EQ(result.out.substr(0, summary.size()), summary);
#ifndef ZRCFG_SANITIZED
  EXPECT_LT(taken.count(), 2.0);
#else
  RecordProperty("seconds", std::to_string(taken.count()));
#endif
}

TEST_P(RealModelTest, HasEveryParameterInDocumentOrder) {
  ASSERT_EQ(build_document().code, 0);
  ReadFile file;
  size_t position = 0;
  size_t compared = 0;
  for (const Entry &entry : independent_reading(document())) {
    if (entry.path.back() == '.') {
      ASSERT_EQ(position, file.records.size()) << "surplus records before " << entry.path;
      file = read(template_directory(entry.path));
      ASSERT_TRUE(file.well_formed) << entry.path;
      position = 0;
      continue;
    }
    ASSERT_LT(position, file.records.size()) << entry.path;
    const ReadRecord &record = file.records[position++];
    const size_t dot = entry.path.rfind('.');
    EXPECT_EQ(record.name, entry.path.substr(dot + 1)) << entry.path;
    EXPECT_EQ(record.rw, entry.access == "readWrite" ? 1u : 0u) << entry.path;
    EXPECT_EQ(record.key, entry.access == "readWrite" ? 15u : 0u) << entry.path;
    EXPECT_LE(record.line.size(), 255u) << entry.path;
    ++compared;
  }
  EXPECT_EQ(position, file.records.size());
  EXPECT_GT(compared, 1800u);
}

TEST_P(RealModelTest, HasEveryObjectWithItsAccessAndNoOther) {
  ASSERT_EQ(build_document().code, 0);
  std::set<std::string> templates;
  for (const Entry &entry : independent_reading(document())) {
    if (entry.path.back() != '.') {
      continue;
    }
    const std::string directory = template_directory(entry.path);
    templates.insert(directory);
    const bool table = entry.path.size() > 4 && entry.path.substr(entry.path.size() - 4) == "{i}.";
    if (!table) {
      EXPECT_EQ(read(directory).rw, 0u) << entry.path;
      continue;
    }
    const std::string header = directory.substr(0, directory.size() - 2);
    templates.insert(header);
    const ReadFile file = read(header);
    ASSERT_TRUE(file.well_formed) << entry.path;
    EXPECT_EQ(file.records.size(), 0u) << entry.path;
    EXPECT_EQ(file.rw == 1, entry.access == "readWrite") << entry.path;
    EXPECT_EQ(read(directory).rw, file.rw) << entry.path;
  }
  // Every directory is one of these, or an instance of one.
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator(path("out"))) {
    if (!entry.is_directory()) {
      if (entry.path() != path("out/regex_file")) {
        EXPECT_EQ(entry.path().filename(), "property.conf");
      }
      continue;
    }
    std::string directory;
    for (const fs::path &name : fs::relative(entry.path(), path("out"))) {
      const bool instance = name.string().find_first_not_of("0123456789") == std::string::npos;
      directory += (instance ? "0" : name.string()) + "/";
    }
    EXPECT_EQ(templates.count(directory), 1u) << directory;
  }
}

INSTANTIATE_TEST_SUITE_P(Documents, RealModelTest,
                         testing::Values(RealModel{"tr-098-1-8-0-full.xml",
                                                   "192 objects, 91 tables, 1801 parameters;"},
                                         RealModel{"tr-181-2-11-0-full.xml",
                                                   "472 objects, 225 tables, 3926 parameters;"}),
                         [](const testing::TestParamInfo<RealModel> &given) {
                           return given.index == 0 ? "InternetGatewayDevice" : "Device";
                         });

}  // namespace

// The split of an instance's URL into table and number.
#include "lifecycle/instance_url.h"

#include "tests/core/core_support.h"
#include "tests/lifecycle/lifecycle_support.h"

namespace zrcfg_test {
namespace {

struct SplitRow {
  std::string url;
  int result;
  std::string table;
  int index;
};

void PrintTo(const SplitRow &row, std::ostream *out) {
  *out << '"' << row.url << '"';
}

class InstanceUrlTest : public ::testing::TestWithParam<SplitRow> {
 protected:
  void SetUp() override { clear_log(); }
};

std::string logged(const std::string &url) {
  return "exportGetObjUrlAndIndex() url=" + url + ", Len=" + std::to_string(url.size()) + "\n";
}

TEST_P(InstanceUrlTest, SplitsAtTheLastDot) {
  const SplitRow &row = GetParam();
  GuardedBuffer table;
  int index = -77;
  EXPECT_EQ(exportGetObjUrlAndIndex(row.url.c_str(), table.data(), &index), row.result);
  EXPECT_EQ(log_texts(), Lines{logged(row.url)});
  if (row.result == 0) {
    EXPECT_EQ(table.text(), row.table);
    EXPECT_EQ(index, row.index);
  } else {
    EXPECT_TRUE(table.untouched());
    EXPECT_EQ(index, -77);
  }
  EXPECT_TRUE(table.untouched_from(256));
}

const SplitRow kRows[] = {
    {"A.3.", 0, "A.", 3},
    {"A.3", 0, "A.", 3},
    {"A.B.1.C.12.", 0, "A.B.1.C.", 12},
    {"A.1.2", 0, "A.1.", 2},
    {"A3", -1, "", 0},
    {"A.3x", 0, "A.", 3},
    {"A.3x.", 0, "A.", 3},
    {"A.10 ", 0, "A.", 10},
    {"A.1/2.", 0, "A.", 1},
    {"A/B.7", 0, "A/B.", 7},
    {".3", 0, ".", 3},
    {"..3.", 0, "..", 3},
    {"A..3", 0, "A..", 3},
    {"A.255", 0, "A.", 255},
    {"A.2147483647.", 0, "A.", 2147483647},
    {"A.2147483648.", 0, "A.", 2147483647},
    {"A.4294967297.", 0, "A.", 2147483647},
    {"A.99999999999999999999999999.", 0, "A.", 2147483647},
    {"", -1, "", 0},
    {".", -1, "", 0},
    {"..", -1, "", 0},
    {"A", -1, "", 0},
    {"A.", -1, "", 0},
    {"3", -1, "", 0},
    {"3.", -1, "", 0},
    {"A..", -1, "", 0},
    {"A.3..", -1, "", 0},
    {"A.0", -1, "", 0},
    {"A.0.", -1, "", 0},
    {"A.01", -1, "", 0},
    {"A.00.", -1, "", 0},
    {"A.-1", -1, "", 0},
    {"A.+1", -1, "", 0},
    {"A. 1", -1, "", 0},
    {"A.x3", -1, "", 0},
    {"A.WANIPConnection.", -1, "", 0},
    {"A.1.WANIPConnection", -1, "", 0},
    {"A.3.x", -1, "", 0},
    {std::string(253, 'u') + ".3", 0, std::string(253, 'u') + ".", 3},
    {std::string(254, 'u') + ".3", 0, std::string(254, 'u') + ".", 3},
    {std::string(254, 'u') + ".123456.", 0, std::string(254, 'u') + ".", 123456},
    {std::string(255, 'u') + ".3", -1, "", 0},
    {std::string(100000, 'u') + ".3.", -1, "", 0},
    {std::string(100000, 'u'), -1, "", 0},
};

INSTANTIATE_TEST_SUITE_P(Rows, InstanceUrlTest, ::testing::ValuesIn(kRows),
                         [](const auto &row) { return std::to_string(row.index); });

TEST(InstanceUrlNullTest, NullGivesMinusOneWithoutALine) {
  clear_log();
  GuardedBuffer table;
  int index = -77;
  EXPECT_EQ(exportGetObjUrlAndIndex(nullptr, table.data(), &index), -1);
  EXPECT_EQ(exportGetObjUrlAndIndex("A.3.", nullptr, &index), -1);
  EXPECT_EQ(exportGetObjUrlAndIndex("A.3.", table.data(), nullptr), -1);
  EXPECT_TRUE(table.untouched());
  EXPECT_EQ(index, -77);
  EXPECT_EQ(log_texts(), Lines());
}

TEST(InstanceUrlNullTest, CallersUrlIsNotModified) {
  const char url[] = "A.3.";
  GuardedBuffer table;
  int index = 0;
  EXPECT_EQ(exportGetObjUrlAndIndex(url, table.data(), &index), 0);
  EXPECT_STREQ(url, "A.3.");
}

}  // namespace
}  // namespace zrcfg_test

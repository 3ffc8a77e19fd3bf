// Tests of the split of a parameter path into object URL and parameter name.
#include <gmock/gmock.h>

#include <ostream>
#include <string>

#include "enum/url_split.h"
#include "tests/core/core_support.h"
#include "tests/enum/enum_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

struct Split {
  std::string path;
  std::string url;
  std::string name;
};

void PrintTo(const Split &row, std::ostream *out) {
  *out << row.path;
}

class PathSplitTest : public EnumTest {};
class SplitTest : public EnumTest, public ::testing::WithParamInterface<Split> {};

TEST_P(SplitTest, TheLastDotEndsTheUrl) {
  GuardedBuffer url;
  GuardedBuffer name;
  EXPECT_EQ(get_obj_and_param_from_url(GetParam().path.c_str(), url.data(), name.data()), 0);
  EXPECT_EQ(url.text(), GetParam().url);
  EXPECT_EQ(name.text(), GetParam().name);
  EXPECT_TRUE(url.untouched_from(256));
  EXPECT_TRUE(name.untouched_from(64)) << "a name's buffer has 64 bytes";
  EXPECT_THAT(enum_log(), ElementsAre("path=" + GetParam().path + "\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Paths, SplitTest,
    ::testing::Values(Split{"A.B.Enable", "A.B.", "Enable"}, Split{"A.B.", "A.B.", ""},
                      Split{"A.Enable", "A.", "Enable"}, Split{"A.", "A.", ""}, Split{".", ".", ""},
                      Split{".x", ".", "x"}, Split{"..x", "..", "x"},
                      Split{"A.1.B.2.C", "A.1.B.2.", "C"}, Split{"A/B.C", "A/B.", "C"},
                      Split{"A. b c", "A.", " b c"}, Split{"A.\xc3\xa4", "A.", "\xc3\xa4"}));
INSTANTIATE_TEST_SUITE_P(
    Longest, SplitTest,
    ::testing::Values(Split{std::string(254, 'u') + ".", std::string(254, 'u') + ".", ""},
                      Split{"A." + std::string(63, 'n'), "A.", std::string(63, 'n')},
                      Split{std::string(190, 'u') + "." + std::string(63, 'n'),
                            std::string(190, 'u') + ".", std::string(63, 'n')}));

struct Refusal {
  const char *path;
  const char *text;
};

TEST_F(PathSplitTest, RefusedTextsLogTheirReason) {
  for (const auto &[path, text] :
       {Refusal{"", "tempLen=0 error!\n"}, Refusal{"Enable", "error,find no dot!\n"},
        Refusal{"A/B/Enable", "error,find no dot!\n"}}) {
    GuardedBuffer url;
    GuardedBuffer name;
    clear_log();
    EXPECT_EQ(get_obj_and_param_from_url(path, url.data(), name.data()), -1);
    EXPECT_THAT(enum_log(), ElementsAre(std::string("path=") + path + "\n", text));
  }
}

TEST_F(PathSplitTest, NullGivesMinusOneWithItsText) {
  GuardedBuffer url;
  GuardedBuffer name;
  EXPECT_EQ(get_obj_and_param_from_url(nullptr, url.data(), name.data()), -1);
  EXPECT_EQ(enum_log().back(), "input param is null!\n");
  clear_log();
  EXPECT_EQ(get_obj_and_param_from_url("A.B", nullptr, name.data()), -1);
  EXPECT_THAT(enum_log(), ElementsAre("path=A.B\n", "input param is null!\n"));
  clear_log();
  EXPECT_EQ(get_obj_and_param_from_url("A.B", url.data(), nullptr), -1);
  EXPECT_THAT(enum_log(), ElementsAre("path=A.B\n", "input param is null!\n"));
  EXPECT_TRUE(url.untouched());
  EXPECT_TRUE(name.untouched());
}

TEST_F(PathSplitTest, PartsTooLongForTheirBuffersAreRefusedUntouched) {
  for (const std::string &path : {std::string(255, 'u') + ".", std::string(300, 'u') + ".x",
                                  "A." + std::string(64, 'n'), "A." + std::string(1000, 'n')}) {
    GuardedBuffer url;
    GuardedBuffer name;
    EXPECT_EQ(get_obj_and_param_from_url(path.c_str(), url.data(), name.data()), -1) << path;
    EXPECT_TRUE(url.untouched()) << path;
    EXPECT_TRUE(name.untouched()) << path;
  }
}

TEST_F(PathSplitTest, CallersTextIsNotChanged) {
  char path[] = "A.B.Enable";
  GuardedBuffer url;
  GuardedBuffer name;
  EXPECT_EQ(get_obj_and_param_from_url(path, url.data(), name.data()), 0);
  EXPECT_STREQ(path, "A.B.Enable");
}

}  // namespace
}  // namespace zrcfg_test

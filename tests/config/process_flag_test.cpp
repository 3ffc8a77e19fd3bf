// Tests of the process's mark.
#include "tests/config/config_support.h"

namespace zrcfg_test {
namespace {

class ProcessFlagTest : public StoreTest {};

TEST_F(ProcessFlagTest, BeginsUnmarkedAndStaysMarked) {
  in_own_process([] {
    EXPECT_EQ(zrcfg_get_tr069_process_flag(), 0);
    EXPECT_EQ(zrcfg_init_tr069_process_flag(), 0);
    EXPECT_EQ(zrcfg_get_tr069_process_flag(), 1);
    EXPECT_EQ(zrcfg_init_tr069_process_flag(), 0);
    EXPECT_EQ(zrcfg_get_tr069_process_flag(), 1);
    EXPECT_TRUE(log_lines().empty());
  });
}

TEST_F(ProcessFlagTest, MarksOnlyItsOwnProcess) {
  in_own_process([] { EXPECT_EQ(zrcfg_init_tr069_process_flag(), 0); });
  EXPECT_EQ(zrcfg_get_tr069_process_flag(), 0);
}

}  // namespace
}  // namespace zrcfg_test

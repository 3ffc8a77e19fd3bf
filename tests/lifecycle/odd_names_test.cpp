// Names that are almost instance numbers, copies whose paths do not fit, a template out of reach.
#include <filesystem>

#include "core/object_image.h"
#include "lifecycle/dir_tree.h"
#include "tests/lifecycle/instance_calls.h"

namespace zrcfg_test {
namespace {

class OddNamesTest : public LifecycleTest {};

TEST_F(OddNamesTest, OnlyExactNumbersUpTo255TakeAnInstancesPlace) {
  TableFields fields;
  fields.max_instance = 20;
  set_table(fields);
  for (const char *const name : {"2", "3", "4", "5", "06", "7x", "262", "8"}) {
    make_store_dir("Gateway/Table/" + std::string(name) + "/");
  }
  std::vector<uint32_t> numbers;
  for (int i = 0; i < 3; ++i) {
    uint32_t number = 0;
    EXPECT_EQ(zrcfg_addobject(kTableUrl, &number, 0), 0u);
    numbers.push_back(number);
  }
  EXPECT_EQ(numbers, (std::vector<uint32_t>{6, 7, 9}));
}

TEST_F(OddNamesTest, TreeIsNotCopiedToAPathThatIsTooLong) {
  const Tree before = store_tree();
  clear_log();
  const std::string target(400, 't');
  EXPECT_EQ(dirCopy("Gateway/Table", target.c_str()), 0);
  EXPECT_EQ(log_texts(), Lines{target + " not created!\n"});
  EXPECT_EQ(store_tree(), before);
}

TEST_F(OddNamesTest, FileIsNotCopiedIntoADirectoryWhereItsPathIsTooLong) {
  const std::string directory = std::string(140, 'd') + "/" + std::string(110, 'e');
  const std::string name(200, 'f');
  make_store_dir(directory + "/");
  write_store_file(name, "text");
  const Tree before = store_tree();
  EXPECT_EQ(fileCopy(name.c_str(), directory.c_str()), -1);
  EXPECT_EQ(store_tree(), before);
}

TEST_F(OddNamesTest, TemplateOutOfReachLeavesAnInstanceItsOwnLock) {
  const ModeChange closed("Gateway/Table/0", 0);
  const OrdinaryUser user;
  ZrcfgObject *image = nullptr;
  int lock_fd = -1;
  ASSERT_EQ(createObjByPath(&image, "Gateway/Table/1/", &lock_fd, 0, ZRCFG_LOCK_SHARED), 0u);
  EXPECT_GE(lock_fd, 0);
  destroyObj(image, lock_fd);
}

}  // namespace
}  // namespace zrcfg_test

// Random trees: every list of every object against the model that the tree was made from.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/enum/enum_support.h"
#include "tests/enum/tree_model.h"

namespace zrcfg_test {
namespace {

constexpr unsigned kDepth = 4;

class RandomTreeTest : public EnumTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  void SetUp() override {
    EnumTest::SetUp();
    if (!HasFatalFailure()) {
      std::mt19937 random(GetParam());
      root_ = random_tree(random, "Root", kDepth);
      root_.has_file = true;
      root_.file.header.hide = 0;
      root_.file.header.device_type = 0;
      zrcfg_test::store_tree("Root/", root_);
      seal();
    }
  }

  void compare(const std::string &url, const ModelObject &object, const Guard &guard) {
    SCOPED_TRACE(url);
    ++objects_;
    const std::optional<std::vector<std::string>> names = expected_names(object, guard);
    const NameList listed = list_names(url);
    EXPECT_EQ(listed.result, names ? 0u : 9u);
    EXPECT_EQ(listed.written, names.has_value());
    EXPECT_EQ(listed.names, names.value_or(std::vector<std::string>()));
    const NodeList children = list_children(url);
    EXPECT_EQ(children.result, 0u);
    EXPECT_EQ(children.nodes, expected_children(url, object));
    EXPECT_TRUE(children.tail_is_last);
    compare_whole(url, object, guard);
    for (const ModelObject &child : object.children) {
      compare(url + child.name + ".", child, guard_of_child(guard, object, child));
    }
  }

  unsigned objects_ = 0;
  ModelObject root_;

 private:
  static void compare_whole(const std::string &url, const ModelObject &object, const Guard &guard) {
    std::vector<Node> flat = expected_object(url, object);
    const NodeList own = list_object(url);
    EXPECT_EQ(own.result == 0, !flat.empty());
    EXPECT_EQ(own.nodes, flat);
    if (!flat.empty()) {
      const std::vector<Node> below = expected_children(url, object);
      flat.insert(flat.end(), below.begin(), below.end());
    }
    for (const int recursive : {0, 1}) {
      const std::vector<Node> expected = recursive != 0 ? expected_walk(url, object, guard) : flat;
      const NodeList all = list_all(url, recursive);
      EXPECT_EQ(all.result, expected.empty() ? 0xFFFFFFFFu : 0u);
      EXPECT_EQ(all.written, !expected.empty());
      EXPECT_EQ(all.nodes, expected);
    }
  }
};

TEST_P(RandomTreeTest, EveryListEqualsTheModel) {
  compare("Root.", root_, {});
  RecordProperty("objects", static_cast<int>(objects_));
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTreeTest, ::testing::Range(1u, 25u));

}  // namespace
}  // namespace zrcfg_test

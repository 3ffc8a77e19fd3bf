// Instances of fixed tables, and the test for an object.
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>

#include "tests/lifecycle/instance_calls.h"

namespace zrcfg_test {
namespace {

class StaticInstanceTest : public LifecycleTest {
 protected:
  uint32_t add(int index, int source, int timeout = 0) {
    clear_log();
    return zrcfg_addobject_static(kFixedUrl, index, source, timeout);
  }
  uint32_t del(int index, int timeout = 0) {
    clear_log();
    return zrcfg_delobject_static(kFixedUrl, index, timeout);
  }
};

Lines add_lines(int index, int source, unsigned rw) {
  return {"add static objUrl =  Gateway.Fixed. index = " + std::to_string(index) +
              " source_index = " + std::to_string(source) + "\n",
          "add static obj->ubv.boolval.rw=" + std::to_string(rw) + "\n"};
}

Lines del_lines(int index, unsigned rw) {
  return {"del static objUrl =  Gateway.Fixed. index = " + std::to_string(index) + "\n",
          "del static obj->ubv.boolval.rw=" + std::to_string(rw) + "\n"};
}

std::string refused(int index) {
  const std::string number = std::to_string(index);
  return number + " exceed max number instance or Gateway/Fixed/" + number + " is exist.\n";
}

std::string no_source(int source) {
  return "instance0_obj_path=Gateway/Fixed/" + std::to_string(source) +
         " not exist, no 0 instance,is not dynamic!\n";
}

TEST_F(StaticInstanceTest, InstanceIsACopyOfItsSourceAndNotCounted) {
  EXPECT_EQ(add(2, 1), 0u);
  EXPECT_EQ(lifecycle_log(), add_lines(2, 1, 0));
  expect_tree(with_copy(tree_, "Gateway/Fixed/1", "Gateway/Fixed/2"));
}

TEST_F(StaticInstanceTest, LimitOfTheTableDoesNotMatter) {
  for (const unsigned limit : {0u, 3u}) {
    for (const int index : {4, 255, 256, 1000000, INT_MAX}) {
      LifecycleTest::SetUp();
      TableFields fields;
      fields.rw = 0;
      fields.max_instance = limit;
      set_fixed(fields);
      EXPECT_EQ(add(index, 1), 0u) << index;
      expect_tree(with_copy(tree_, "Gateway/Fixed/1", "Gateway/Fixed/" + std::to_string(index)));
      EXPECT_EQ(del(index), 0u) << index;
      expect_unchanged();
    }
  }
}

TEST_F(StaticInstanceTest, NumberBelow1OrTakenGives4) {
  make_store_dir("Gateway/Fixed/5/");
  remember();
  for (const int index : {0, -1, INT_MIN, 1, 5}) {
    EXPECT_EQ(add(index, 1), 4u) << index;
    EXPECT_EQ(lifecycle_log(), add_lines(index, 1, 0) + Lines{refused(index)});
  }
  expect_unchanged();
}

TEST_F(StaticInstanceTest, MissingSourceGives2BeforeTheNumberIsLookedAt) {
  for (const int source : {0, 2, -1, INT_MAX, INT_MIN}) {
    for (const int index : {2, 0, 1}) {
      EXPECT_EQ(add(index, source), 2u) << source;
      EXPECT_EQ(lifecycle_log(), add_lines(index, source, 0) + Lines{no_source(source)});
    }
  }
  expect_unchanged();
}

TEST_F(StaticInstanceTest, EverySourceIsServed) {
  for (const int source : {0, -3, 77}) {
    write_property("Gateway/Fixed/" + std::to_string(source) + "/", std::to_string(source));
  }
  remember();
  for (const int source : {0, -3, 77}) {
    EXPECT_EQ(add(2, source), 0u) << source;
    expect_tree(with_copy(tree_, "Gateway/Fixed/" + std::to_string(source), "Gateway/Fixed/2"));
    EXPECT_EQ(del(2), 0u);
    expect_unchanged();
  }
}

TEST_F(StaticInstanceTest, DynamicTableGives2) {
  for (const unsigned rw : {1u, 2u, 3u}) {
    TableFields fields;
    fields.rw = rw;
    set_fixed(fields);
    EXPECT_EQ(add(2, 1), 2u);
    EXPECT_EQ(lifecycle_log(), add_lines(2, 1, rw));
    EXPECT_EQ(del(1), 2u);
    EXPECT_EQ(lifecycle_log(), del_lines(1, rw));
    expect_unchanged();
  }
}

TEST_F(StaticInstanceTest, DeletionRemovesTheInstanceAndCountsNothing) {
  EXPECT_EQ(del(1), 0u);
  EXPECT_EQ(lifecycle_log(), del_lines(1, 0));
  expect_tree(without(tree_, "Gateway/Fixed/1"));
}

TEST_F(StaticInstanceTest, DeletionHasNoRangeTest) {
  for (const int index : {0, -5, 300, INT_MIN}) {
    make_store_dir("Gateway/Fixed/" + std::to_string(index) + "/");
    EXPECT_EQ(del(index), 0u) << index;
    expect_unchanged();
  }
}

TEST_F(StaticInstanceTest, MissingInstanceGives1) {
  write_store_file("Gateway/Fixed/3", "a file");
  remember();
  for (const int index : {0, 2, 3, -1, INT_MAX, INT_MIN}) {
    EXPECT_EQ(del(index), 1u) << index;
    EXPECT_EQ(lifecycle_log(), del_lines(index, 0));
  }
  expect_unchanged();
}

TEST_F(StaticInstanceTest, TableBelowAnInstanceIsLockedByTheOuterTemplate) {
  TableFields fields;
  fields.rw = 0;
  write_property("Outer/0/", property_file({"X"}, {"x"}));
  write_property("Outer/4/Fixed/", table_file(fields));
  write_property("Outer/4/Fixed/1/", property_file({"X"}, {"x"}));
  remember();
  EXPECT_EQ(zrcfg_addobject_static("Outer.4.Fixed.", 2, 1, 0), 0u);
  EXPECT_EQ(log_count("getLockPath() path=Outer/0/ exist!\n"), 1u);
  expect_tree(with_copy(tree_, "Outer/4/Fixed/1", "Outer/4/Fixed/2"));
}

TEST_F(StaticInstanceTest, MissingTemplateDoesNotMatter) {
  ASSERT_FALSE(store_entry_exists("Gateway/Fixed/0"));
  EXPECT_EQ(add(9, 1, ZRCFG_NO_LOCK), 0u);
  EXPECT_EQ(del(9, ZRCFG_NO_LOCK), 0u);
  expect_unchanged();
}

using ObjectExistsTest = LifecycleTest;

struct Existence {
  const char *url;
  uint32_t exists;
};

TEST_F(ObjectExistsTest, DirectoryThatCanBeOpenedExists) {
  for (const Existence &row : {Existence{"Gateway.", 1},
                               {"Gateway", 1},
                               {"Gateway.Table.1.", 1},
                               {"Gateway.Table.1", 1},
                               {"Gateway.Table.0.Sub.Bare.", 1},
                               {"", 1},
                               {".", 1},
                               {"Gateway/Table/1/", 1},
                               {"Gateway.Table.2.", 0},
                               {"None.", 0},
                               {"Gateway.Table.0.blocks", 0},
                               {"Gateway.Table.0.blocks.", 0}}) {
    clear_log();
    std::string path = row.url;
    for (char &character : path) {
      character = character == '.' ? '/' : character;
    }
    EXPECT_EQ(zrcfg_isobjectexist(row.url), row.exists) << row.url;
    EXPECT_EQ(log_texts(),
              (Lines{"objUrl =  " + std::string(row.url) + "\n", "obj_path =  " + path + "\n",
                     "res =  " + std::to_string(row.exists) + "\n"}));
  }
  expect_unchanged();
}

TEST_F(ObjectExistsTest, NullGives10) {
  EXPECT_EQ(zrcfg_isobjectexist(nullptr), 10u);
  EXPECT_EQ(log_texts(), Lines{"Input parameters can't be NULL!\n"});
}

TEST_F(ObjectExistsTest, UrlOf256CharactersGives0) {
  for (const size_t length : {256u, 1000u, 100000u}) {
    clear_log();
    const std::string url(length, 'u');
    EXPECT_EQ(zrcfg_isobjectexist(url.c_str()), 0u);
    EXPECT_EQ(log_texts(), (Lines{"objUrl =  " + url + "\n",
                                  "pObjUrl len=" + std::to_string(length) + " out of range!\n"}));
  }
}

TEST_F(ObjectExistsTest, UrlOf255CharactersIsServed) {
  const std::string dir = path_of(255);
  EXPECT_EQ(zrcfg_isobjectexist(url_of(dir).c_str()), 0u);
  make_store_dir(dir);
  EXPECT_EQ(zrcfg_isobjectexist(url_of(dir).c_str()), 1u);
}

TEST_F(ObjectExistsTest, NoLockStandsInTheWay) {
  int fd = -1;
  ASSERT_EQ(zrcfg_lockurl("Gateway.Table.1.", &fd, 0, 1), 0u);
  EXPECT_EQ(zrcfg_isobjectexist("Gateway.Table.1."), 1u);
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
}

TEST_F(ObjectExistsTest, DirectoryThatMayNotBeReadDoesNotExist) {
  const ModeChange closed("Gateway/Table", 0311);
  const OrdinaryUser user;
  EXPECT_EQ(zrcfg_isobjectexist("Gateway.Table."), 0u);
  EXPECT_EQ(zrcfg_isobjectexist("Gateway.Table.1."), 1u);
}

}  // namespace
}  // namespace zrcfg_test

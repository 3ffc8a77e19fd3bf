// The export of several values.
#include <unistd.h>

#include <climits>
#include <cstring>

#include "lifecycle/export_values.h"
#include "support/lock_holder.h"
#include "tests/lifecycle/lifecycle_support.h"
#include "tests/values/values_support.h"

namespace zrcfg_test {
namespace {

constexpr uint32_t kUnchangedField = 0x5a5a5a5a;

class ExportValuesTest : public ValuesTest {
 protected:
  void SetUp() override {
    ValuesTest::SetUp();
    for (unsigned key = 0; key < 16; ++key) {
      file.add("K" + std::to_string(key), "old" + std::to_string(key)).key =
          static_cast<uint8_t>(key);
    }
    store(file);
  }
  uint32_t set(Requests &requests, int mode, int timeout = 0) {
    clear_log();
    return zrcfg_exportmultiparamval(kUrl, requests.list(), timeout, mode);
  }
  // The section with new values at some places.
  std::string section(const std::map<size_t, std::string> &changes) const {
    PropertyFile changed = file;
    for (const auto &[i, value] : changes) {
      changed.params.at(i).value = value;
    }
    return changed.value_bytes();
  }
  PropertyFile file;
};

Lines written_lines(int mode, unsigned key) {
  Lines lines;
  if (mode == 1) {
    lines.push_back("param->ubv.boolval.key=" + std::to_string(key) + "\n");
  }
  lines.push_back("write_flag=1!\n");
  for (const char *field : {"flash_rw", "noti", "inform_dbus", "namechange", "inform_tr069"}) {
    lines.push_back(std::string("pList's ") + field + "= 0\n");
  }
  return lines;
}

TEST_F(ExportValuesTest, ModeSelectsByTheBitOfTheKey) {
  for (const int mode : {1, 2, 3, 0, 4, 7, -1, INT_MAX, INT_MIN}) {
    store(file);
    Requests requests;
    std::map<size_t, std::string> changes;
    Lines lines = {"objUrl = Gateway.Device.\n"};
    for (unsigned key = 0; key < 16; ++key) {
      requests.set("K" + std::to_string(key), "new" + std::to_string(key));
      const bool selected = mode < 1 || mode > 3 || ((key >> (mode - 1)) & 1) != 0;
      if (selected) {
        changes[key] = "new" + std::to_string(key);
        for (const std::string &line : written_lines(mode, key)) {
          lines.push_back(line);
        }
        continue;
      }
      if (mode == 1) {
        lines.push_back("param->ubv.boolval.key=" + std::to_string(key) + "\n");
      }
      lines.push_back("write_flag=0!\n");
    }
    EXPECT_EQ(set(requests, mode), 0u);
    expect_section(section(changes));
    EXPECT_EQ(lifecycle_log(), lines);
    for (unsigned key = 0; key < 16; ++key) {
      const bool selected = changes.count(key) != 0;
      EXPECT_EQ(requests.node(key).changed, selected ? 1u : 0u) << mode << " " << key;
      EXPECT_EQ(requests.old_value(key), std::string(256, '\x5a'));
      EXPECT_EQ(requests.attribute_bytes(key) == std::string(4, '\x5a'), !selected);
    }
    EXPECT_TRUE(requests.inputs_kept());
  }
}

TEST_F(ExportValuesTest, FileIsRewrittenEvenWhenEverythingIsHeldBack) {
  Requests requests;
  requests.set("K0", "new").set("K6", "new");
  EXPECT_EQ(set(requests, 1), 0u);
  expect_same_bytes();
  EXPECT_FALSE(is_aged(kFile));
}

TEST_F(ExportValuesTest, UnknownNameIsSkippedAndItsNodeKept) {
  Requests requests;
  requests.set("None", "new").set("K1", "one").set("", "new");
  EXPECT_EQ(set(requests, 1), 0u);
  EXPECT_TRUE(requests.outputs_untouched(0));
  EXPECT_TRUE(requests.outputs_untouched(2));
  EXPECT_EQ(requests.node(1).changed, 1u);
  expect_section(section({{1, "one"}}));
}

TEST_F(ExportValuesTest, EqualValueCountsAsWritten) {
  Requests requests;
  requests.set("K1", "old1");
  EXPECT_EQ(set(requests, 1), 0u);
  EXPECT_EQ(requests.node(0).changed, 1u);
  expect_same_bytes();
}

TEST_F(ExportValuesTest, LastOfTwoNodesWins) {
  Requests requests;
  requests.set("K1", "a longer text").set("K1", "b").set("K2", "").set("K2", "c").set("K3", "");
  EXPECT_EQ(set(requests, 0), 0u);
  expect_section(section({{1, "b"}, {2, "c"}, {3, ""}}));
}

TEST_F(ExportValuesTest, AttributesOfAWrittenParameterAreHandedOut) {
  ParamFields &param = file.add("Full", "old");
  param.key = 4;
  param.noti = 9;
  param.flash_rw = 1;
  param.namechange = 1;
  param.inform_tr069 = 1;
  param.inform_dbus = 200;
  store(file);
  Requests requests;
  requests.set("Full", "new");
  EXPECT_EQ(set(requests, 3), 0u);
  EXPECT_EQ(lifecycle_log(),
            (Lines{"objUrl = Gateway.Device.\n", "write_flag=1!\n", "pList's flash_rw= 1\n",
                   "pList's noti= 9\n", "pList's inform_dbus= 200\n", "pList's namechange= 1\n",
                   "pList's inform_tr069= 1\n"}));
  const std::string word = requests.attribute_bytes(0);
  EXPECT_EQ(static_cast<uint8_t>(word[0]) & 0xfe, 0x9e);
  EXPECT_EQ(static_cast<uint8_t>(word[1]), 200);
}

TEST_F(ExportValuesTest, NullsGive10) {
  Requests requests;
  requests.set("K1", "new");
  EXPECT_EQ(zrcfg_exportmultiparamval(nullptr, requests.list(), 0, 0), 10u);
  EXPECT_EQ(zrcfg_exportmultiparamval(kUrl, nullptr, 0, 0), 10u);
  EXPECT_EQ(log_texts(), Lines(2, "Input parameters can't be NULL!\n"));
  EXPECT_TRUE(requests.all_outputs_untouched());
  expect_untouched();
}

TEST_F(ExportValuesTest, NullValueGives10BeforeAnythingIsFilled) {
  Requests requests;
  requests.set("K1", "new").set("K2", "new");
  requests.node(1).value = nullptr;
  EXPECT_EQ(set(requests, 0), 10u);
  EXPECT_TRUE(requests.all_outputs_untouched());
  expect_untouched();
}

TEST_F(ExportValuesTest, UrlOf256CharactersGives1) {
  Requests requests;
  requests.set("K1", "new");
  const std::string url(256, 'u');
  EXPECT_EQ(zrcfg_exportmultiparamval(url.c_str(), requests.list(), 0, 0), 1u);
  EXPECT_EQ(lifecycle_log(), (Lines{"objUrl = " + url + "\n", "pObjUrl len=256 out of range!\n"}));
  expect_untouched();
}

TEST_F(ExportValuesTest, ObjectIsLockedExclusively) {
  Requests requests;
  requests.set("K1", "new");
  const LockHolder holder(kFile, Held::kShared);
  EXPECT_EQ(set(requests, 0, 0), 9u);
  EXPECT_EQ(lifecycle_log().back(), "createObjByPath() fail ret=9!\n");
  EXPECT_EQ(set(requests, 0, 30), 9u);
  EXPECT_TRUE(requests.all_outputs_untouched());
  expect_untouched();
  EXPECT_EQ(set(requests, 0, ZRCFG_NO_LOCK), 0u);
  expect_section(section({{1, "new"}}));
}

TEST_F(ExportValuesTest, MissingObjectGives9WithALockAnd8Without) {
  Requests requests;
  requests.set("K1", "new");
  EXPECT_EQ(zrcfg_exportmultiparamval("None.", requests.list(), 0, 0), 9u);
  EXPECT_EQ(zrcfg_exportmultiparamval("None.", requests.list(), ZRCFG_NO_LOCK, 0), 8u);
  EXPECT_EQ(lifecycle_log().back(), "createObjByPath() fail ret=8!\n");
  expect_untouched();
}

TEST_F(ExportValuesTest, EmptySectionGives7UnderTheTextOfTheOpening) {
  store_section("");
  Requests requests;
  requests.set("A", "new");
  EXPECT_EQ(set(requests, 0), 7u);
  EXPECT_EQ(lifecycle_log(),
            (Lines{"objUrl = Gateway.Device.\n", "createObjByPath() fail ret=7!\n"}));
  EXPECT_TRUE(requests.all_outputs_untouched());
  expect_untouched();
}

TEST_F(ExportValuesTest, LineFeedInAnyValueGives7AndNothingIsApplied) {
  for (const char *name : {"K1", "K0", "None"}) {
    Requests requests;
    requests.set("K3", "new").set(name, "a\nb");
    EXPECT_EQ(set(requests, 1), 7u) << name;
    EXPECT_TRUE(requests.all_outputs_untouched());
    expect_untouched();
  }
}

TEST_F(ExportValuesTest, LongValuesAreCutTo255Characters) {
  const std::string longest(255, 'v');
  for (const size_t length : {255u, 256u, 300u, 100000u}) {
    store(file);
    Requests requests;
    requests.set("K1", std::string(length, 'v'));
    EXPECT_EQ(set(requests, 0), 0u) << length;
    EXPECT_EQ(requests.node(0).changed, 1u);
    expect_section(section({{1, longest}}));
  }
}

// What would be stored of a longer value must not hold a line feed either.
TEST_F(ExportValuesTest, LineFeedThatTheCutLeavesGives7) {
  for (const size_t at : {0u, 10u, 254u}) {
    std::string value(300, 'v');
    value[at] = '\n';
    Requests requests;
    requests.set("K1", value);
    EXPECT_EQ(set(requests, 0), 7u) << at;
    expect_untouched();
  }
  for (const size_t at : {255u, 299u}) {
    std::string value(300, 'v');
    value[at] = '\n';
    Requests requests;
    requests.set("K1", value);
    const uint32_t result = set(requests, 0);
    EXPECT_TRUE(result == 0 || result == 7) << result;
    expect_section(section(result == 0 ? std::map<size_t, std::string>{{1, std::string(255, 'v')}}
                                       : std::map<size_t, std::string>()));
  }
}

TEST_F(ExportValuesTest, ListOf1001NodesIsServedAndOneOf1002Gives14) {
  Requests requests;
  for (size_t i = 0; i < 1001; ++i) {
    requests.set("K" + std::to_string(i % 16), "v" + std::to_string(i));
  }
  EXPECT_EQ(set(requests, 0), 0u);
  std::map<size_t, std::string> changes;
  for (size_t i = 985; i < 1001; ++i) {
    changes[i % 16] = "v" + std::to_string(i);
  }
  expect_section(section(changes));
  store(file);
  requests.set("K1", "one too many");
  requests.node(0).changed = kUnchangedField;
  requests.node(1000).changed = kUnchangedField;
  EXPECT_EQ(set(requests, 0), 14u);
  EXPECT_EQ(lifecycle_log().back(), "createObjByPath() fail ret=14!\n");
  expect_untouched();
  EXPECT_EQ(requests.node(0).changed, 1u);
  EXPECT_EQ(requests.node(1000).changed, 1u) << "the first 1001 were handled";
  EXPECT_TRUE(requests.outputs_untouched(1001));
}

TEST_F(ExportValuesTest, FilesOfMoreThan255RecordsAreNotWritten) {
  for (const size_t count : {256u, 257u}) {
    store(numbered_file(count, 10));
    Requests requests;
    requests.set("P0", "new");
    EXPECT_EQ(set(requests, 0), 10u) << count;
    expect_untouched();
  }
}

TEST_F(ExportValuesTest, FileThatMayOnlyBeReadGives7UnderTheTextOfTheOpening) {
  Requests requests;
  requests.set("K1", "new");
  const ModeChange readable(kFile, 0444);
  {
    const OrdinaryUser user;
    EXPECT_EQ(set(requests, 0), 7u);
    EXPECT_EQ(lifecycle_log().back(), "createObjByPath() fail ret=7!\n");
  }
  expect_untouched();
}

class ExportTableTest : public ExportValuesTest {};

TEST_F(ExportTableTest, NullsGive10) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("K1", "new");
  EXPECT_EQ(export_modiMultiParamValues(nullptr, table.get(), requests.list(), 0), 10u);
  EXPECT_EQ(export_modiMultiParamValues(image.get(), nullptr, requests.list(), 0), 10u);
  EXPECT_EQ(export_modiMultiParamValues(image.get(), table.get(), nullptr, 0), 10u);
  EXPECT_EQ(log_texts(), Lines(3, "Input parameters can't be NULL\n"));
  EXPECT_TRUE(requests.all_outputs_untouched());
}

TEST_F(ExportTableTest, ChangesTheTableOnly) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("K2", "two").set("K1", "one").set("None", "x").set("K3", std::string(300, 'v'));
  EXPECT_EQ(export_modiMultiParamValues(image.get(), table.get(), requests.list(), 2), 0u);
  EXPECT_EQ(table.slot(1), "old1");
  EXPECT_EQ(table.slot(2), "two");
  EXPECT_EQ(table.slot(3), std::string(255, 'v'));
  EXPECT_EQ(table.slot(4), "old4");
  EXPECT_EQ(requests.node(0).changed, 1u);
  EXPECT_EQ(requests.node(1).changed, 0u);
  EXPECT_TRUE(requests.outputs_untouched(2));
  expect_untouched();
}

TEST_F(ExportTableTest, ValuesInTheTableAreTerminated) {
  const OpenedImage image;
  const ValueTable table(image);
  memset(table.get(), '#', size_t{5} * ZRCFG_VALUE_SIZE);
  Requests requests;
  requests.set("K3", std::string(255, 'v'));
  EXPECT_EQ(export_modiMultiParamValues(image.get(), table.get(), requests.list(), 2), 0u);
  const char *const slot = table.get() + size_t{3} * ZRCFG_VALUE_SIZE;
  EXPECT_EQ(std::string(slot, ZRCFG_VALUE_SIZE), std::string(255, 'v') + '\0');
  EXPECT_EQ(slot[ZRCFG_VALUE_SIZE], '#') << "the next slot is not touched";
}

TEST_F(ExportTableTest, ListOf1002NodesGives14AndKeepsTheFirst1001InTheTable) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  for (size_t i = 0; i < 1002; ++i) {
    requests.set(i == 1000 ? "K5" : i == 1001 ? "K6" : "K1", "new");
  }
  EXPECT_EQ(export_modiMultiParamValues(image.get(), table.get(), requests.list(), 0), 14u);
  EXPECT_EQ(table.slot(1), "new");
  EXPECT_EQ(table.slot(5), "new");
  EXPECT_EQ(table.slot(6), "old6");
  EXPECT_EQ(requests.node(1000).changed, 1u);
  EXPECT_TRUE(requests.outputs_untouched(1001));
}

TEST_F(ExportTableTest, LineFeedGives7AndKeepsItsSlot) {
  const OpenedImage image;
  const ValueTable table(image);
  Requests requests;
  requests.set("K1", "a\nb");
  EXPECT_EQ(export_modiMultiParamValues(image.get(), table.get(), requests.list(), 0), 7u);
  EXPECT_EQ(table.slot(1), "old1");
}

}  // namespace
}  // namespace zrcfg_test

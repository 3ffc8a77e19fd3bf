// Tests of the update of a list of parameters, as a call and as its building block.
#include <climits>
#include <cstring>
#include <regex>
#include <string>

#include "attr/attr_requests.h"
#include "tests/attr/attr_support.h"

namespace zrcfg_test {
namespace {

enum class Way { kCall, kStep };

std::string random_attr(unsigned seed) {
  return filled(sizeof(ParamAttr), Fill::kRandom, seed);
}

uint32_t check_of(const std::string &attr) {
  return attr_of(attr).param_check;
}

class ListUpdateTest : public AttrTest, public ::testing::WithParamInterface<Way> {
 protected:
  void store_filled(Fill fill) { store(filled_file({"A", "B", "C"}, fill, 80)); }

  static uint32_t set(AttrRequests &requests, int mode) {
    MultiAttrNode *const list = requests.list();
    clear_log();
    if (GetParam() == Way::kCall) {
      return zrcfg_setmultiparamattr(kUrl, list, mode, 0);
    }
    const OpenedImage image;
    return modiMultiParamAttr(image.get(), list, mode, 4711);
  }

  // The result is logged by the call under the name of an opening.
  static void expect_reported(uint32_t result) {
    EXPECT_EQ(log_count("createObjByPath() fail ret=" + std::to_string(result) + "!\n"),
              GetParam() == Way::kCall ? 1u : 0u);
  }
};

TEST_P(ListUpdateTest, Mode19SetsItsFieldsMaskedAndHandsTheFilterBack) {
  for (const Fill fill : kFills) {
    for (unsigned seed = 1; seed < 40; ++seed) {
      store_filled(fill);
      const std::string inputs[] = {seed == 1 ? std::string(64, '\xff') : random_attr(seed),
                                    seed == 2 ? std::string(64, '\0') : random_attr(seed + 100),
                                    random_attr(seed + 200)};
      AttrRequests requests;
      requests.add("C", inputs[0]).add("None", inputs[1]).add("A", inputs[2]);
      std::string expected = before_;
      model_multi_all(expected, record_at(2), inputs[0]);
      model_multi_all(expected, record_at(0), inputs[2]);
      EXPECT_EQ(set(requests, 19), 0u);
      expect_file(expected, "seed " + std::to_string(seed));
      const size_t records[] = {2, 0, 0};
      for (size_t i = 0; i < 3; ++i) {
        EXPECT_TRUE(requests.node_untouched(i));
        EXPECT_EQ(requests.buffer(i).substr(0, 60), inputs[i].substr(0, 60));
        EXPECT_EQ(check_of(requests.buffer(i)),
                  i == 1 ? check_of(inputs[1]) : word_at(before_, record_at(records[i]) + 116));
      }
    }
  }
}

TEST_P(ListUpdateTest, EachBitOfMode19ReachesItsFieldOnly) {
  for (const Fill fill : {Fill::kZeros, Fill::kOnes}) {
    for (size_t bit = 0; bit < sizeof(ParamAttr) * 8; ++bit) {
      store_filled(fill);
      std::string attr = filled(sizeof(ParamAttr), fill);
      attr[bit / 8] = static_cast<char>(attr[bit / 8] ^ (1 << (bit % 8)));
      std::string expected = before_;
      model_multi_all(expected, record_at(1), attr);
      AttrRequests requests;
      requests.add("B", attr);
      ASSERT_EQ(set(requests, 19), 0u);
      expect_file(expected, "bit " + std::to_string(bit));
    }
  }
}

TEST_P(ListUpdateTest, Mode20SetsNotiAndReadsOneByte) {
  for (const Fill fill : kFills) {
    store_filled(fill);
    AttrRequests requests;
    requests.add("B", std::string(1, 58)).add("None", "\x01").add("A", std::string(1, '\xf7'));
    std::string expected = before_;
    model_noti(expected, record_at(1), 10);
    model_noti(expected, record_at(0), 7);
    EXPECT_EQ(set(requests, 20), 0u);
    expect_file(expected);
    EXPECT_TRUE(requests.all_untouched());
  }
}

TEST_P(ListUpdateTest, Mode21SetsThe16Bytes) {
  for (const Fill fill : kFills) {
    store_filled(fill);
    const std::string list = filled(16, Fill::kRandom, 3);
    AttrRequests requests;
    requests.add("C", "sixteen letters!").add("B", list).add("None", list);
    std::string expected = before_;
    model_accesslist(expected, record_at(2), "sixteen letters!");
    model_accesslist(expected, record_at(1), list);
    EXPECT_EQ(set(requests, 21), 0u);
    expect_file(expected);
    EXPECT_TRUE(requests.all_untouched());
  }
}

// Mode 22 is one of the single update only.
TEST_P(ListUpdateTest, OtherModesReadNothingAndRewriteTheRecords) {
  for (const int mode : {22, 0, 16, 17, 18, 23, 24, -1, -19, INT_MAX, INT_MIN}) {
    store_filled(Fill::kRandom);
    AttrRequests requests;
    requests.add_without_buffer("B").add("A", std::string(1, '\xff'));
    EXPECT_EQ(set(requests, mode), 0u) << mode;
    expect_file(before_, std::to_string(mode));
    EXPECT_FALSE(is_aged(kFile)) << "the records are written back in mode " << mode;
    EXPECT_TRUE(requests.all_untouched());
  }
}

TEST_P(ListUpdateTest, UnknownNamesGive0AndWriteNothing) {
  for (const int mode : {19, 20, 21, 0}) {
    store_filled(Fill::kRandom);
    AttrRequests requests;
    requests.add("D", random_attr(1)).add("", random_attr(2)).add("a", random_attr(3));
    EXPECT_EQ(set(requests, mode), 0u);
    EXPECT_TRUE(requests.all_untouched());
    expect_untouched();
  }
}

TEST_P(ListUpdateTest, NodesOfOneNameAreServedInOrder) {
  store_filled(Fill::kRandom);
  const std::string first = random_attr(7);
  const std::string second = random_attr(8);
  AttrRequests requests;
  requests.add("B", first).add("A", second).add("B", second);
  std::string expected = before_;
  model_multi_all(expected, record_at(1), second);
  model_multi_all(expected, record_at(0), second);
  EXPECT_EQ(set(requests, 19), 0u);
  expect_file(expected);
  EXPECT_EQ(check_of(requests.buffer(0)), word_at(before_, record_at(1) + 116));
  EXPECT_EQ(check_of(requests.buffer(2)), word_at(before_, record_at(1) + 116));
}

TEST_P(ListUpdateTest, FirstOfTwoRecordsOfOneNameIsChanged) {
  store(filled_file({"A", "B", "B", "A", "C"}, Fill::kZeros));
  AttrRequests requests;
  std::string expected = before_;
  for (int round = 0; round < 3; ++round) {
    requests.add("B", std::string(1, 5)).add("A", std::string(1, 6));
  }
  model_noti(expected, record_at(1), 5);
  model_noti(expected, record_at(0), 6);
  EXPECT_EQ(set(requests, 20), 0u);
  expect_file(expected);
}

TEST_F(AttrTest, ListUpdateLeavesTheRecordsThatItDoesNotName) {
  store(filled_file({"A", "B", "C"}, Fill::kZeros));
  const OpenedImage image;
  ASSERT_EQ(zrcfg_setsingleparamattr_ext(kUrl, "B", 3, "5", 0), 0u);
  const std::string meanwhile = read_property(kDir);
  AttrRequests requests;
  requests.add("C", std::string(1, 6)).add("A", std::string(1, 4));
  EXPECT_EQ(modiMultiParamAttr(image.get(), requests.list(), 20, 0), 0u);
  EXPECT_EQ(read_property(kDir).substr(record_at(1), 124), meanwhile.substr(record_at(1), 124));
  std::string expected = before_;
  model_noti(expected, record_at(0), 4);
  model_noti(expected, record_at(1), 5);
  model_noti(expected, record_at(2), 6);
  expect_file(expected);
}

TEST_P(ListUpdateTest, EverySubsetOfRecordsIsWritten) {
  const std::vector<std::string> names = {"A", "B", "C", "D", "E", "F"};
  for (unsigned subset = 1; subset < 64; ++subset) {
    store(filled_file(names, Fill::kRandom, 90));
    AttrRequests requests;
    std::string expected = before_;
    for (size_t i = names.size(); i-- > 0;) {
      if ((subset >> i & 1) != 0) {
        requests.add(names[i], std::string(1, 3));
        model_noti(expected, record_at(i), 3);
      }
    }
    EXPECT_EQ(set(requests, 20), 0u);
    expect_file(expected, "subset " + std::to_string(subset));
  }
}

TEST_P(ListUpdateTest, LogTellsPreparationAndEachRecord) {
  store_filled(Fill::kRandom);
  AttrRequests requests;
  requests.add("B", "\x01").add("None", "\x01").add("A", "\x02");
  EXPECT_EQ(set(requests, 20), 0u);
  std::vector<std::string> lines = attr_log();
  if (GetParam() == Way::kCall) {
    EXPECT_EQ(lines.front(), "objUrl =  Gateway.Device.\n");
    lines.erase(lines.begin());
  }
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0], kExists);
  const std::regex param("param=-?[0-9]+ \n");
  EXPECT_TRUE(std::regex_match(lines[1], param)) << lines[1];
  EXPECT_EQ(lines[2], "param->name = B\n");
  EXPECT_TRUE(std::regex_match(lines[3], param)) << lines[3];
  EXPECT_EQ(lines[4], "param->name = A\n");
}

TEST_P(ListUpdateTest, ListOf1001NodesIsServed) {
  store_filled(Fill::kRandom);
  AttrRequests requests;
  for (size_t i = 0; i < kMostNodes - 1; ++i) {
    requests.add("A", std::string(1, static_cast<char>(i % 8)));
  }
  requests.add("C", std::string(1, 12));
  std::string expected = before_;
  model_noti(expected, record_at(0), (kMostNodes - 2) % 8);
  model_noti(expected, record_at(2), 12);
  EXPECT_EQ(set(requests, 20), 0u);
  expect_file(expected);
}

TEST_P(ListUpdateTest, ListOf1002NodesGives14WithThe1001stWritten) {
  for (const size_t more : {1u, 2u, 300u}) {
    store_filled(Fill::kRandom);
    AttrRequests requests;
    for (size_t i = 0; i < kMostNodes - 1; ++i) {
      requests.add(i % 2 == 0 ? "A" : "None", std::string(1, 5));
    }
    requests.add("C", std::string(1, 12));
    for (size_t i = 0; i < more; ++i) {
      requests.add("B", std::string(1, 9)).add("C", std::string(1, 1));
    }
    std::string expected = before_;
    model_noti(expected, record_at(0), 5);
    model_noti(expected, record_at(2), 12);
    EXPECT_EQ(set(requests, 20), 14u);
    expect_file(expected);
    expect_reported(14);
  }
}

TEST_P(ListUpdateTest, NullBufferThatTheModeNeedsGives10BeforeAnythingIsWritten) {
  for (const int mode : {19, 20, 21}) {
    for (const char *name : {"B", "None"}) {
      store_filled(Fill::kRandom);
      AttrRequests requests;
      requests.add("A", random_attr(1)).add_without_buffer(name).add("C", random_attr(2));
      EXPECT_EQ(set(requests, mode), 10u) << mode;
      EXPECT_TRUE(requests.all_untouched());
      expect_untouched();
      expect_reported(10);
    }
  }
}

TEST_P(ListUpdateTest, NullBufferAtThe1001stNodeIsSeenAndAtThe1002ndNot) {
  store_filled(Fill::kZeros);
  AttrRequests seen;
  AttrRequests unseen;
  for (size_t i = 0; i < kMostNodes - 1; ++i) {
    seen.add("A", "\x01");
    unseen.add("A", "\x01");
  }
  seen.add_without_buffer("A").add("A", "\x01");
  unseen.add("A", "\x02").add_without_buffer("A");
  EXPECT_EQ(set(seen, 20), 10u);
  expect_untouched();
  EXPECT_EQ(set(unseen, 20), 14u);
  std::string expected = before_;
  model_noti(expected, record_at(0), 2);
  expect_file(expected);
}

TEST_P(ListUpdateTest, ExactlyTheCountedRecordsAreServed) {
  std::vector<std::string> names;
  for (size_t i = 0; i < 257; ++i) {
    names.push_back("P" + std::to_string(i));
  }
  store(filled_file(names, Fill::kRandom, 91));
  AttrRequests requests;
  requests.add("P1", "\x03").add("P0", "\x03").add("P256", "\x03").add("P2", "\x03");
  requests.add("P255", "\x03").add("P0", "\x04");
  std::string expected = before_;
  model_noti(expected, record_at(0), 4);
  EXPECT_EQ(set(requests, 20), 0u);
  expect_file(expected);
  names.resize(256);
  store(filled_file(names, Fill::kRandom, 91));
  EXPECT_EQ(set(requests, 20), 0u);
  expect_untouched();
  names.resize(255);
  store(filled_file(names, Fill::kRandom, 91));
  AttrRequests all;
  expected = before_;
  for (size_t i = 0; i < names.size(); ++i) {
    all.add(names[i], std::string(1, static_cast<char>(i)));
    model_noti(expected, record_at(i), static_cast<uint32_t>(i));
  }
  EXPECT_EQ(set(all, 20), 0u);
  expect_file(expected);
}

TEST_P(ListUpdateTest, ObjectWithoutParametersGives0) {
  store(filled_file({}, Fill::kOnes));
  AttrRequests requests;
  requests.add("A", random_attr(1));
  EXPECT_EQ(set(requests, 19), 0u);
  expect_untouched();
}

TEST_P(ListUpdateTest, NullListGives10) {
  store_filled(Fill::kRandom);
  AttrRequests none;
  EXPECT_EQ(set(none, 20), 10u);
  EXPECT_EQ(log_count(kNullText), 1u);
  expect_untouched();
}

INSTANTIATE_TEST_SUITE_P(Ways, ListUpdateTest, ::testing::Values(Way::kCall, Way::kStep),
                         [](const auto &row) { return row.param == Way::kCall ? "Call" : "Step"; });

TEST(ListUpdateStepTest, NullImageGives10WithItsText) {
  AttrRequests requests;
  requests.add("A");
  clear_log();
  EXPECT_EQ(modiMultiParamAttr(nullptr, requests.list(), 20, 0), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(1, kNullText));
}

}  // namespace
}  // namespace zrcfg_test

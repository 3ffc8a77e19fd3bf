// Tests of the query of a list of parameters, as a call and as its building block.
#include <climits>
#include <string>

#include "attr/attr_requests.h"
#include "tests/attr/attr_support.h"

namespace zrcfg_test {
namespace {

constexpr char kMark = AttrRequests::kMark;

// The exported call and the step that does its work obey the same rules.
enum class Way { kCall, kStep };

class ListQueryTest : public AttrTest, public ::testing::WithParamInterface<Way> {
 protected:
  void SetUp() override {
    AttrTest::SetUp();
    if (!HasFatalFailure()) {
      store(filled_file({"A", "B", "C"}, Fill::kRandom));
    }
  }

  uint32_t query(AttrRequests &requests, int mode) {
    MultiAttrNode *const list = requests.list();
    if (GetParam() == Way::kCall) {
      clear_log();
      return zrcfg_getmultiparamattr(kUrl, list, mode, 0);
    }
    const OpenedImage image;
    return outputToMultiParamAttrList(image.get(), list, mode);
  }

  // What mode 23 makes of the word of marks.
  std::string flags_of(size_t position) const {
    const size_t at = record_at(position);
    unsigned flags = kMark & 1;  // Bit 0 stays.
    for (const AttrRow &row : attr_rows()) {
      const std::string name = row.name;
      const unsigned value = row.bits.get(before_, at);
      flags |= name == "noti"           ? value << 4
               : name == "flash_rw"     ? value << 3
               : name == "namechange"   ? value << 2
               : name == "inform_tr069" ? value << 1
                                        : 0;
    }
    return std::string(1, static_cast<char>(flags)) + before_[at + 1] + std::string(2, kMark);
  }

  // What node i of a list must hold when it names the record at a position; -1 for none.
  void expect_answer(AttrRequests &requests, size_t i, int position, int mode) {
    const std::string marks(sizeof(ParamAttr), kMark);
    std::string buffer = marks;
    if (position >= 0) {
      const size_t at = record_at(static_cast<size_t>(position));
      if (mode == 16) {
        buffer = model_attr(before_, at, marks);
      } else if (mode == 17) {
        buffer[0] = static_cast<char>(static_cast<uint8_t>(before_[at + 5]) >> 4);
      } else if (mode == 18) {
        buffer.replace(0, kAccesslistBytes, before_, at + 72, kAccesslistBytes);
      }
    }
    expect_bytes(requests.buffer(i), buffer, "buffer in mode " + std::to_string(mode));
    if (mode == 23 && position >= 0) {
      EXPECT_EQ(requests.word(i), flags_of(static_cast<size_t>(position)));
      EXPECT_TRUE(requests.rest_untouched(i));
    } else {
      EXPECT_TRUE(requests.node_untouched(i)) << "mode " << mode;
    }
  }
};

TEST_P(ListQueryTest, EachModeFillsWhatItNamesAndNothingElse) {
  for (const Fill fill : kFills) {
    for (const int mode :
         {16, 17, 18, 23, 0, 1, 15, 19, 20, 21, 22, 24, 255, -1, -16, INT_MAX, INT_MIN}) {
      store(filled_file({"A", "B", "C"}, fill, 6));
      AttrRequests requests;
      requests.add("C").add("None").add("A").add("B").add("A").add("").add("a");
      EXPECT_EQ(query(requests, mode), 0u) << mode;
      const int positions[] = {2, -1, 0, 1, 0, -1, -1};
      for (size_t i = 0; i < requests.size(); ++i) {
        expect_answer(requests, i, positions[i], mode);
      }
      expect_untouched();
    }
  }
}

TEST_P(ListQueryTest, BuffersNeedToHoldTheirModesTypeOnly) {
  AttrRequests byte;
  byte.add("B", std::string(1, kMark));
  EXPECT_EQ(query(byte, 17), 0u);
  EXPECT_EQ(static_cast<uint8_t>(byte.buffer(0)[0]),
            static_cast<uint8_t>(before_[record_at(1) + 5]) >> 4);
  AttrRequests list;
  list.add("B", std::string(16, kMark));
  EXPECT_EQ(query(list, 18), 0u);
  EXPECT_EQ(list.buffer(0), before_.substr(record_at(1) + 72, 16));
}

TEST_P(ListQueryTest, UnknownNamesGive0AndNothing) {
  for (const int mode : {16, 17, 18, 23}) {
    AttrRequests requests;
    requests.add("D").add("").add(std::string(64, 'A')).add("a");
    EXPECT_EQ(query(requests, mode), 0u);
    EXPECT_TRUE(requests.all_untouched()) << mode;
  }
}

TEST_P(ListQueryTest, FirstOfTwoRecordsOfOneNameIsServed) {
  store(filled_file({"A", "B", "A", "B", "C", "B"}, Fill::kRandom, 12));
  AttrRequests requests;
  for (const char *name : {"B", "A", "C", "B", "A", "C", "B", "A"}) {
    requests.add(name);
  }
  EXPECT_EQ(query(requests, 16), 0u);
  const int positions[] = {1, 0, 4, 1, 0, 4, 1, 0};
  for (size_t i = 0; i < requests.size(); ++i) {
    expect_answer(requests, i, positions[i], 16);
  }
}

TEST_P(ListQueryTest, NameOf64CharactersIsCompared) {
  const std::string whole(64, 'm');
  const std::string shorter(63, 'm');
  store(filled_file({whole, shorter}, Fill::kRandom, 12));
  AttrRequests requests;
  requests.add(shorter).add(whole).add(shorter).add(whole).add(shorter).add(whole);
  EXPECT_EQ(query(requests, 16), 0u);
  for (size_t i = 0; i < requests.size(); ++i) {
    expect_answer(requests, i, i % 2 == 0 ? 1 : 0, 16);
  }
}

TEST_P(ListQueryTest, ListOf1001NodesIsServed) {
  for (const int mode : {16, 17, 18, 23}) {
    AttrRequests requests;
    for (size_t i = 0; i < kMostNodes; ++i) {
      requests.add(i % 2 == 0 ? "A" : "C");
    }
    EXPECT_EQ(query(requests, mode), 0u);
    for (const size_t i : {size_t{0}, size_t{1}, size_t{499}, size_t{999}, size_t{1000}}) {
      expect_answer(requests, i, i % 2 == 0 ? 0 : 2, mode);
    }
    EXPECT_FALSE(log_contains("outputToMultiParamAttrList() fail ret=14!\n"));
  }
}

TEST_P(ListQueryTest, ListOf1002NodesGives14BehindThe1001st) {
  for (const size_t more : {1u, 2u, 500u}) {
    AttrRequests requests;
    for (size_t i = 0; i < kMostNodes + more; ++i) {
      requests.add("B");
    }
    EXPECT_EQ(query(requests, 16), 14u);
    for (size_t i = 0; i < requests.size(); ++i) {
      expect_answer(requests, i, i < kMostNodes ? 1 : -1, 16);
    }
    EXPECT_EQ(log_count("outputToMultiParamAttrList() fail ret=14!\n"),
              GetParam() == Way::kCall ? 1u : 0u);
  }
}

TEST_P(ListQueryTest, UnknownNamesCountTowardsTheLimit) {
  AttrRequests requests;
  for (size_t i = 0; i <= kMostNodes; ++i) {
    requests.add("None");
  }
  EXPECT_EQ(query(requests, 16), 14u);
  EXPECT_TRUE(requests.all_untouched());
}

TEST_P(ListQueryTest, NullBufferThatTheModeNeedsGives10BeforeAnythingIsFilled) {
  for (const int mode : {16, 17, 18}) {
    for (const char *name : {"B", "None"}) {
      AttrRequests requests;
      requests.add("A").add("C").add_without_buffer(name).add("B");
      EXPECT_EQ(query(requests, mode), 10u) << mode;
      EXPECT_TRUE(requests.all_untouched());
    }
  }
}

TEST_P(ListQueryTest, NullBufferAtThe1001stNodeIsSeenAndAtThe1002ndNot) {
  AttrRequests seen;
  AttrRequests unseen;
  for (size_t i = 0; i < kMostNodes - 1; ++i) {
    seen.add("A");
    unseen.add("A");
  }
  seen.add_without_buffer("A").add("A");
  unseen.add("A").add_without_buffer("A");
  EXPECT_EQ(query(seen, 17), 10u);
  EXPECT_TRUE(seen.all_untouched());
  EXPECT_EQ(query(unseen, 17), 14u);
  expect_answer(unseen, kMostNodes - 1, 0, 17);
}

TEST_P(ListQueryTest, NullBufferIsNoMatterWhereTheModeNeedsNone) {
  for (const int mode : {23, 0, 15, 19, 22, 24, -1}) {
    AttrRequests requests;
    requests.add_without_buffer("B").add_without_buffer("None");
    EXPECT_EQ(query(requests, mode), 0u) << mode;
    EXPECT_TRUE(requests.node_untouched(1));
    EXPECT_EQ(requests.word(0), mode == 23 ? flags_of(1) : std::string(4, kMark));
  }
}

TEST_P(ListQueryTest, NullListGives10) {
  AttrRequests none;
  EXPECT_EQ(query(none, 16), 10u);
  EXPECT_EQ(log_count(kNullText), 1u);
}

TEST_P(ListQueryTest, ExactlyTheCountedRecordsAreServed) {
  std::vector<std::string> names;
  for (size_t i = 0; i < 257; ++i) {
    names.push_back("P" + std::to_string(i));
  }
  store(filled_file(names, Fill::kRandom, 20));
  AttrRequests requests;
  for (int round = 0; round < 3; ++round) {
    requests.add("P0").add("P1").add("P256");
  }
  EXPECT_EQ(query(requests, 16), 0u);
  for (size_t i = 0; i < requests.size(); ++i) {
    expect_answer(requests, i, i % 3 == 0 ? 0 : -1, 16);
  }
  names.resize(256);
  store(filled_file(names, Fill::kRandom, 20));
  AttrRequests none;
  none.add("P0").add("P255").add("P1").add("P2").add("P0").add("P0");
  EXPECT_EQ(query(none, 16), 0u);
  EXPECT_TRUE(none.all_untouched());
  names.resize(255);
  store(filled_file(names, Fill::kRandom, 20));
  AttrRequests all;
  for (const std::string &name : names) {
    all.add(name);
  }
  EXPECT_EQ(query(all, 16), 0u);
  for (size_t i = 0; i < names.size(); ++i) {
    expect_answer(all, i, static_cast<int>(i), 16);
  }
}

INSTANTIATE_TEST_SUITE_P(Ways, ListQueryTest, ::testing::Values(Way::kCall, Way::kStep),
                         [](const auto &row) { return row.param == Way::kCall ? "Call" : "Step"; });

TEST(ListQueryStepTest, NullImageGives10WithItsText) {
  AttrRequests requests;
  requests.add("A");
  clear_log();
  EXPECT_EQ(outputToMultiParamAttrList(nullptr, requests.list(), 16), 10u);
  EXPECT_EQ(log_texts(), std::vector<std::string>(1, kNullText));
  EXPECT_TRUE(requests.all_untouched());
}

}  // namespace
}  // namespace zrcfg_test

// Tests of the way between connection index and user index, in both directions.
#include <gmock/gmock.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/wan/wan_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr uint32_t kMark = 0x5a5a5a5a;
constexpr uint32_t kIp = 1;
constexpr uint32_t kPpp = 2;
constexpr uint8_t kLimits[] = {1, 2, 3, 4, 5, 7, 8, 16, 31, 32, 100, 127, 128, 129, 200, 254, 255};

struct Triple {
  uint32_t wan;
  uint32_t con;
  uint32_t type;
};

// Result and user index of a triple; the output is marked beforehand.
std::pair<int, uint32_t> user_of(const Triple &triple) {
  const WanConIndex index = {triple.wan, triple.con, triple.type};
  uint32_t user = kMark;
  clear_log();
  const int result = zrcfg_getusrindexbywanconindex(&index, &user);
  return {result, user};
}

std::vector<uint32_t> triple_of(uint32_t user, int expected = 0) {
  WanConIndex index = {kMark, kMark, kMark};
  clear_log();
  EXPECT_EQ(zrcfg_getwanconindexbyusrindex(user, &index), expected) << user;
  return {index.wanIndex, index.conIndex, index.conType};
}

class ConnectionIndexTest : public StoreTest {};

TEST_F(ConnectionIndexTest, TableForALimitOf2) {
  write_limits(8, 2);
  const Triple table[] = {{1, 1, kIp}, {1, 2, kIp},  {1, 1, kPpp}, {1, 2, kPpp}, {2, 1, kIp},
                          {2, 2, kIp}, {2, 1, kPpp}, {2, 2, kPpp}, {3, 1, kIp}};
  for (uint32_t user = 1; user <= 9; ++user) {
    const Triple &triple = table[user - 1];
    EXPECT_EQ(user_of(triple), std::make_pair(0, user));
    EXPECT_THAT(triple_of(user), ElementsAre(triple.wan, triple.con, triple.type));
  }
}

TEST_F(ConnectionIndexTest, UserIndexesAreNumberedWithoutGapsForEveryLimit) {
  for (const uint8_t limit : kLimits) {
    write_limits(255, limit);
    uint32_t user = 0;
    for (const uint32_t wan : {1u, 2u, 3u}) {
      for (const uint32_t type : {kIp, kPpp}) {
        for (uint32_t con = 1; con <= limit; ++con) {
          ++user;
          ASSERT_EQ(user_of({wan, con, type}), std::make_pair(0, user)) << int{limit};
          ASSERT_THAT(triple_of(user), ElementsAre(wan, con, type)) << int{limit} << " " << user;
        }
      }
    }
  }
}

TEST_F(ConnectionIndexTest, LastDeviceWithinItsLimitIsServed) {
  for (const uint8_t limit : kLimits) {
    write_limits(255, limit);
    const uint32_t last = 254u * 2 * limit + 2 * limit;
    EXPECT_EQ(user_of({255, limit, kPpp}), std::make_pair(0, last));
    EXPECT_THAT(triple_of(last), ElementsAre(255, limit, kPpp));
  }
}

TEST_F(ConnectionIndexTest, WanIndexOutsideItsLimitFails) {
  write_limits(3, 2);
  struct Row {
    uint32_t wan;
    const char *line;
  };
  const Row rows[] = {{0, "wanIndex(0) exeed!\n"},
                      {4, "wanIndex(4) exeed!\n"},
                      {256, "wanIndex(256) exeed!\n"},
                      {0x7fffffff, "wanIndex(2147483647) exeed!\n"},
                      {0x80000000, "wanIndex(-2147483648) exeed!\n"},
                      {0xffffffff, "wanIndex(-1) exeed!\n"}};
  for (const Row &row : rows) {
    for (const uint32_t con : {1u, 0u, 3u}) {
      EXPECT_EQ(user_of({row.wan, con, kIp}), std::make_pair(-1, 0u));
      EXPECT_THAT(wan_log(), ElementsAre(row.line)) << "the first check decides";
    }
  }
}

TEST_F(ConnectionIndexTest, ConIndexOutsideItsLimitFails) {
  write_limits(3, 2);
  struct Row {
    uint32_t con;
    const char *line;
  };
  const Row rows[] = {{0, "conIndex(0) exeed!\n"},
                      {3, "conIndex(3) exeed!\n"},
                      {258, "conIndex(258) exeed!\n"},
                      {0xffffffff, "conIndex(-1) exeed!\n"}};
  for (const Row &row : rows) {
    for (const uint32_t type : {kIp, kPpp, 0u, 9u}) {
      EXPECT_EQ(user_of({1, row.con, type}), std::make_pair(-1, 0u));
      EXPECT_THAT(wan_log(), ElementsAre(row.line));
    }
  }
}

TEST_F(ConnectionIndexTest, UnknownKindGives0AndNoIndex) {
  write_limits(3, 2);
  for (const uint32_t type : {0u, 3u, 4u, 257u, 0x80000001u, 0xffffffffu}) {
    EXPECT_EQ(user_of({2, 2, type}), std::make_pair(0, 0u)) << type;
    EXPECT_THAT(wan_log(), ElementsAre());
  }
}

TEST_F(ConnectionIndexTest, LimitsOf0Fail) {
  write_limits(0, 2);
  EXPECT_EQ(user_of({1, 1, kIp}), std::make_pair(-1, 0u));
  EXPECT_THAT(wan_log(), ElementsAre("wanIndex(1) exeed!\n"));
  EXPECT_THAT(triple_of(1), ElementsAre(1, 1, kIp)) << "the limit of devices is not looked at";
  write_limits(3, 0);
  for (const uint32_t user : {1u, 2u, 0xffffffffu}) {
    EXPECT_THAT(triple_of(user, -1), ElementsAre(kMark, kMark, kMark));
  }
  for (const uint32_t type : {kIp, kPpp, 5u}) {
    EXPECT_EQ(user_of({1, 1, type}), std::make_pair(-1, 0u));
    EXPECT_THAT(wan_log(), ElementsAre("conIndex(1) exeed!\n"));
  }
}

TEST_F(ConnectionIndexTest, MissingLimitsFailWithTheirTexts) {
  EXPECT_EQ(user_of({1, 1, kIp}), std::make_pair(-1, 0u));
  EXPECT_THAT(wan_log(), ElementsAre("max_wan_index get failed!\n"));
  write_limit(kDevicesDir, 3);
  EXPECT_EQ(user_of({0, 0, kIp}), std::make_pair(-1, 0u));
  EXPECT_THAT(wan_log(), ElementsAre("max_con_index get failed!\n"));
  EXPECT_THAT(triple_of(1, -1), ElementsAre(kMark, kMark, kMark));
  EXPECT_THAT(wan_log(), ElementsAre("max_con_index get failed!\n"));
  write_limit(kFirstConnectionsDir, 2);
  EXPECT_EQ(user_of({1, 1, kPpp}), std::make_pair(0, 3u));
}

TEST_F(ConnectionIndexTest, WayBackNeedsNoLimitOfDevices) {
  write_limit(kFirstConnectionsDir, 2);
  EXPECT_THAT(triple_of(5), ElementsAre(2, 1, kIp));
  EXPECT_THAT(triple_of(4001), ElementsAre(1001, 1, kIp)) << "beyond any limit of devices";
}

TEST_F(ConnectionIndexTest, UserIndex0FailsWithoutAMessage) {
  write_limits(3, 2);
  EXPECT_THAT(triple_of(0, -1), ElementsAre(kMark, kMark, kMark));
  EXPECT_EQ(log_texts(), std::vector<std::string>());
}

TEST_F(ConnectionIndexTest, ArithmeticIsUnsigned) {
  for (const uint8_t limit : kLimits) {
    write_limits(255, limit);
    for (const uint32_t user : {0x7fffffffu, 0x80000000u, 0x80000001u, 0xfffffffeu, 0xffffffffu}) {
      const uint64_t place = (uint64_t{user} - 1) % (2u * limit);
      const uint64_t wan = (uint64_t{user} - 1) / (2u * limit) + 1;
      const bool ip = place < limit;
      EXPECT_THAT(triple_of(user),
                  ElementsAre(wan, ip ? place + 1 : place + 1 - limit, ip ? kIp : kPpp))
          << int{limit} << " " << user;
    }
  }
}

TEST_F(ConnectionIndexTest, NullGivesMinus1) {
  write_limits(3, 2);
  uint32_t user = kMark;
  clear_log();
  EXPECT_EQ(zrcfg_getusrindexbywanconindex(nullptr, &user), -1);
  EXPECT_THAT(wan_log(), ElementsAre("wanCCIndex is NULL!\n"));
  EXPECT_EQ(user, 0u) << "cleared before any check";
  const WanConIndex index = {1, 1, kIp};
  EXPECT_EQ(zrcfg_getusrindexbywanconindex(&index, nullptr), -1);
  EXPECT_EQ(zrcfg_getusrindexbywanconindex(nullptr, nullptr), -1);
  EXPECT_EQ(zrcfg_getwanconindexbyusrindex(1, nullptr), -1);
}

TEST_F(ConnectionIndexTest, NothingInTheStoreIsChanged) {
  write_limits(3, 2);
  std::vector<std::string> files;
  const std::vector<std::string> dirs = {kDevicesDir, kTemplateDir, kTemplateConnectionsDir};
  for (const std::string &dir : dirs) {
    files.push_back(read_property(dir));
    age_file(dir + "property.conf");
  }
  EXPECT_EQ(user_of({2, 2, kPpp}), std::make_pair(0, 8u));
  EXPECT_THAT(triple_of(8), ElementsAre(2, 2, kPpp));
  for (size_t i = 0; i < dirs.size(); ++i) {
    EXPECT_EQ(read_property(dirs[i]), files[i]);
    EXPECT_TRUE(is_aged(dirs[i] + "property.conf"));
  }
}

}  // namespace
}  // namespace zrcfg_test

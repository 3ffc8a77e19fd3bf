// Tests of the way from a URL to a connection index, and on to a user index.
#include <gmock/gmock.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/wan/wan_support.h"

namespace zrcfg_test {
namespace {

using ::testing::ElementsAre;

constexpr uint32_t kMark = 0x5a5a5a5a;
constexpr char kNoTransform[] = "xmlurl_transform failed!\n";
constexpr char kNoConnection[] = "t_wanindex get failed!\n";

struct Answer {
  int result;
  std::vector<uint32_t> words;  // wanIndex, conIndex, conType
};

Answer index_of(const char *url) {
  WanConIndex index = {kMark, kMark, kMark};
  clear_log();
  const int result = zrcfg_getwanconindexfromxmlurl(url, &index);
  return {result, {index.wanIndex, index.conIndex, index.conType}};
}

Answer index_of(const std::string &url) {
  return index_of(url.c_str());
}

std::string stack_line(const std::string &path) {
  return "instanceStack.objpathinxml=" + path + "\n";
}

const char *const kDots = "InternetGatewayDevice.WANDevice.x.WANConnectionDevice.x.";

TEST(ConnectionUrlTest, GivesSecondAndThirdNumberAndTheKind) {
  const Answer ip = index_of(connection_url("2", "IP", "3"));
  EXPECT_EQ(ip.result, 0);
  EXPECT_THAT(ip.words, ElementsAre(2, 3, 1));
  EXPECT_THAT(wan_log(), ElementsAre(stack_line(std::string(kDots) + "WANIPConnection.x.")));
  const Answer ppp = index_of(connection_url("4", "PPP", "5"));
  EXPECT_EQ(ppp.result, 0);
  EXPECT_THAT(ppp.words, ElementsAre(4, 5, 2));
  EXPECT_THAT(wan_log(), ElementsAre(stack_line(std::string(kDots) + "WANPPPConnection.x.")));
}

TEST(ConnectionUrlTest, NumberOfTheWanDeviceDoesNotMatter) {
  for (const char *device : {"1", "7", "0", "4711", "99999999999"}) {
    const Answer answer = index_of(std::string("InternetGatewayDevice.WANDevice.") + device +
                                   ".WANConnectionDevice.2.WANPPPConnection.1.");
    EXPECT_EQ(answer.result, 0);
    EXPECT_THAT(answer.words, ElementsAre(2, 1, 2));
  }
}

TEST(ConnectionUrlTest, WhatStandsBehindTheConnectionDoesNotMatter) {
  for (const char *tail : {"Stats.", "Stats", "PortMapping.", "a.b.c.d", "..", "x"}) {
    const Answer answer = index_of(connection_url("1", "IP", "2") + tail);
    EXPECT_EQ(answer.result, 0) << tail;
    EXPECT_THAT(answer.words, ElementsAre(1, 2, 1));
  }
  std::string open = connection_url("1", "IP", "2");
  open.pop_back();
  EXPECT_EQ(index_of(open).result, 0) << "without the final dot";
}

TEST(ConnectionUrlTest, NumbersAreTakenAsTheyAre) {
  const Answer answer = index_of(connection_url("0", "PPP", "4294967296"));
  EXPECT_EQ(answer.result, 0);
  EXPECT_THAT(answer.words, ElementsAre(0, 2147483647u, 2));
}

TEST(ConnectionUrlTest, OtherThanThreeNumbersFailAndTouchNothing) {
  const std::string connection = connection_url("1", "IP", "2");
  for (const std::string &url :
       {std::string(), std::string("."), std::string("InternetGatewayDevice."),
        std::string("InternetGatewayDevice.WANDevice.1."),
        std::string("InternetGatewayDevice.WANDevice.1.WANConnectionDevice.2."),
        std::string("InternetGatewayDevice.WANDevice.1.WANConnectionDevice.2.WANIPConnection."),
        connection + "PortMapping.1.", connection + "1.", connection + "1.2.3."}) {
    const Answer answer = index_of(url);
    EXPECT_EQ(answer.result, -1) << url;
    EXPECT_THAT(wan_log(), ElementsAre(kNoTransform)) << url;
    EXPECT_THAT(answer.words, ElementsAre(kMark, kMark, kMark)) << url;
  }
}

TEST(ConnectionUrlTest, NumbersBehindTheTenthComponentDoNotCount) {
  EXPECT_EQ(index_of(connection_url("1", "IP", "2") + "a.b.c.1.").result, 0);
  EXPECT_EQ(index_of(connection_url("1", "IP", "2") + "a.b.1.").result, -1);
}

TEST(ConnectionUrlTest, ThreeNumbersElsewhereFailWithTheOutputZeroed) {
  const std::string before = "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.2.";
  for (const std::string &url :
       {std::string("A.1.2.3."), before + "WANDSLLinkConfig.3.", before + "WANipConnection.3.",
        before + "WANIPConnections.3.", before + "WANIPConnection.a.3.",
        before + "WANPPPConnectio.3.", before + "WANPPPConnection3.3.",
        std::string("InternetGatewayDevice.WANDevice.1.2.WANConnectionDevice.WANIPConnection.3."),
        std::string("Device.WANDevice.1.WANConnectionDevice.2.WANIPConnection.3."),
        std::string("1.WANDevice.1.WANConnectionDevice.2.WANIPConnection.3."),
        std::string("internetgatewaydevice.WANDevice.1.WANConnectionDevice.2.WANIPConnection.3."),
        "A." + before + "WANIPConnection.3."}) {
    const Answer answer = index_of(url);
    EXPECT_EQ(answer.result, -1) << url;
    EXPECT_EQ(wan_log().size(), 2u);
    EXPECT_EQ(wan_log().back(), kNoConnection) << url;
    EXPECT_THAT(answer.words, ElementsAre(0, 0, 0)) << url;
  }
}

// Templates are compared, so that a component "x" looks like a number that was taken out.
TEST(ConnectionUrlTest, ComponentXStandsInTheTemplateAsItIs) {
  const Answer answer = index_of(connection_url("2", "IP", "x") + "3.");
  EXPECT_EQ(answer.result, 0);
  EXPECT_THAT(answer.words, ElementsAre(2, 3, 1));
  EXPECT_EQ(index_of(connection_url("x", "IP", "3")).result, -1) << "two numbers";
}

TEST(ConnectionUrlTest, EmptyComponentsDoNotMatter) {
  EXPECT_EQ(index_of("." + connection_url("1", "IP", "2")).result, 0);
  EXPECT_EQ(index_of(connection_url("1.", "IP", "2")).result, 0);
}

TEST(ConnectionUrlTest, NullGivesMinus1) {
  const Answer answer = index_of(static_cast<const char *>(nullptr));
  EXPECT_EQ(answer.result, -1);
  EXPECT_THAT(wan_log(), ElementsAre(kNoTransform));
  EXPECT_THAT(answer.words, ElementsAre(kMark, kMark, kMark));
  EXPECT_EQ(zrcfg_getwanconindexfromxmlurl("A.1.", nullptr), -1);
  EXPECT_EQ(zrcfg_getwanconindexfromxmlurl(connection_url("1", "IP", "1").c_str(), nullptr), -1);
}

class UserIndexOfUrlTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    if (!HasFatalFailure()) {
      write_limits(3, 2);
    }
  }

  // The result and the user index, which is marked beforehand.
  static std::pair<int, uint32_t> user_index(const char *url) {
    uint32_t user = kMark;
    clear_log();
    const int result = zrcfg_getusrindexfromxmlurl(url, &user);
    return {result, user};
  }
};

TEST_F(UserIndexOfUrlTest, GivesTheIndexOfTheConnection) {
  struct Row {
    const char *device;
    const char *kind;
    const char *connection;
    uint32_t user;
  };
  const Row rows[] = {{"1", "IP", "1", 1},  {"1", "IP", "2", 2},  {"1", "PPP", "1", 3},
                      {"1", "PPP", "2", 4}, {"2", "IP", "1", 5},  {"2", "IP", "2", 6},
                      {"2", "PPP", "1", 7}, {"3", "PPP", "2", 12}};
  for (const Row &row : rows) {
    const std::string url = connection_url(row.device, row.kind, row.connection);
    EXPECT_EQ(user_index(url.c_str()), std::make_pair(0, row.user)) << url;
    EXPECT_EQ(user_index((url + "Stats.").c_str()), std::make_pair(0, row.user)) << url;
  }
}

TEST_F(UserIndexOfUrlTest, AnyFailureGivesMinus1AndZero) {
  struct Row {
    std::string url;
    std::string last_line;
  };
  const Row rows[] = {{"", kNoTransform},
                      {"A.1.2.3.", kNoConnection},
                      {connection_url("1", "IP", "1") + "1.", kNoTransform},
                      {connection_url("0", "IP", "1"), "wanIndex(0) exeed!\n"},
                      {connection_url("4", "IP", "1"), "wanIndex(4) exeed!\n"},
                      {connection_url("1", "PPP", "0"), "conIndex(0) exeed!\n"},
                      {connection_url("1", "PPP", "3"), "conIndex(3) exeed!\n"}};
  for (const Row &row : rows) {
    EXPECT_EQ(user_index(row.url.c_str()), std::make_pair(-1, 0u)) << row.url;
    EXPECT_EQ(wan_log().back(), row.last_line);
  }
  EXPECT_EQ(user_index(nullptr), std::make_pair(-1, 0u));
  EXPECT_EQ(zrcfg_getusrindexfromxmlurl(rows[0].url.c_str(), nullptr), -1);
}

TEST_F(UserIndexOfUrlTest, MissingLimitsGiveMinus1AndZero) {
  const std::string url = connection_url("1", "IP", "1");
  std::string file = std::string(kTemplateConnectionsDir) + "property.conf";
  ASSERT_EQ(remove(store_path(file).c_str()), 0);
  EXPECT_EQ(user_index(url.c_str()), std::make_pair(-1, 0u));
  EXPECT_EQ(wan_log().back(), "max_con_index get failed!\n");
  file = std::string(kDevicesDir) + "property.conf";
  ASSERT_EQ(remove(store_path(file).c_str()), 0);
  EXPECT_EQ(user_index(url.c_str()), std::make_pair(-1, 0u));
  EXPECT_EQ(wan_log().back(), "max_wan_index get failed!\n");
}

}  // namespace
}  // namespace zrcfg_test

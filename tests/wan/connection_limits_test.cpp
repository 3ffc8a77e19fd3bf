// Tests of the limits of the WAN index: which object holds them, and the codes when it cannot be
// read.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "tests/support/lock_holder.h"
#include "tests/wan/wan_support.h"

namespace zrcfg_test {
namespace {

constexpr uint32_t kMark = 4711;
constexpr char kTemplateUrl[] =
    "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.0.WANIPConnection.";
constexpr char kFirstUrl[] =
    "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.";

class ConnectionLimitsTest : public StoreTest {
 protected:
  // Expects a code and, on failure, an untouched output.
  static void expect_devices(uint32_t result, uint32_t number) {
    uint32_t limit = kMark;
    EXPECT_EQ(zrcfg_GetMaxWanNum(&limit), result);
    EXPECT_EQ(limit, result == 0 ? number : kMark);
  }
  static void expect_connections(uint32_t result, uint32_t number) {
    uint32_t limit = kMark;
    EXPECT_EQ(zrcfg_GetMaxConNum(&limit), result);
    EXPECT_EQ(limit, result == 0 ? number : kMark);
  }
  static void remove_file(const std::string &dir) {
    ASSERT_EQ(remove(property_path(dir).c_str()), 0);
  }
};

TEST_F(ConnectionLimitsTest, EveryLimitIsHandedOut) {
  for (unsigned limit = 0; limit < 256; ++limit) {
    write_limits(static_cast<uint8_t>(limit), static_cast<uint8_t>(255 - limit));
    expect_devices(0, limit);
    expect_connections(0, 255 - limit);
  }
}

TEST_F(ConnectionLimitsTest, TemplatesConnectionsComeFirst) {
  write_limits(3, 5);
  write_limit(kFirstConnectionsDir, 9);
  clear_log();
  expect_connections(0, 5);
  EXPECT_TRUE(log_contains(std::string("objUrl =  ") + kTemplateUrl + "\n"));
  EXPECT_FALSE(log_contains(std::string("objUrl =  ") + kFirstUrl + "\n"));
}

TEST_F(ConnectionLimitsTest, FirstInstancesConnectionsServeWithoutATemplate) {
  write_limit(kDevicesDir, 3);
  write_limit(kFirstConnectionsDir, 9);
  clear_log();
  expect_connections(0, 9);
  EXPECT_TRUE(log_contains(std::string("objUrl =  ") + kFirstUrl + "\n"));
}

// The template's directory decides, whatever it holds.
TEST_F(ConnectionLimitsTest, TemplateThatIsADirectoryOnlyIsNoWayToTheFirstInstance) {
  write_limit(kDevicesDir, 3);
  write_limit(kFirstConnectionsDir, 9);
  make_store_dir(kTemplateDir);
  expect_connections(9, 0);
  write_limit(kTemplateDir, 77);
  expect_connections(8, 0);
  make_store_dir(kTemplateConnectionsDir);
  expect_connections(8, 0);
  write_limit(kTemplateConnectionsDir, 6);
  expect_connections(0, 6);
}

TEST_F(ConnectionLimitsTest, PppConnectionsLimitIsNotLookedAt) {
  write_limits(3, 5);
  write_limit("InternetGatewayDevice/WANDevice/1/WANConnectionDevice/0/WANPPPConnection/", 8);
  write_limit("InternetGatewayDevice/WANDevice/2/WANConnectionDevice/", 8);
  expect_connections(0, 5);
  expect_devices(0, 3);
}

TEST_F(ConnectionLimitsTest, MissingObjectsGive9) {
  expect_devices(9, 0);
  expect_connections(9, 0);
  make_store_dir(kDevicesDir);
  make_store_dir(kFirstConnectionsDir);
  expect_devices(9, 0);
  expect_connections(9, 0);
}

TEST_F(ConnectionLimitsTest, MalformedObjectsGive10) {
  write_property(kDevicesDir, std::string(3, '\0'));
  write_property(kFirstConnectionsDir, std::string(188, '\0'));
  expect_devices(10, 0);
  expect_connections(10, 0);
}

TEST_F(ConnectionLimitsTest, HiddenObjectsAreReadLikeAnyOther) {
  PropertyFile file;
  file.header.hide = 1;
  file.header.device_type = 0x40;
  file.header.max_instance = 7;
  write_property(kDevicesDir, file);
  write_property(kFirstConnectionsDir, file);
  expect_devices(0, 7);
  expect_connections(0, 7);
}

TEST_F(ConnectionLimitsTest, ReaderElsewhereDoesNotMatter) {
  write_limits(3, 5);
  const LockHolder devices(std::string(kDevicesDir) + "property.conf", Held::kShared);
  const LockHolder table(std::string(kTemplateDir) + "property.conf", Held::kShared);
  expect_devices(0, 3);
  expect_connections(0, 5);
}

// The limits wait five seconds for a writer.
TEST_F(ConnectionLimitsTest, WriterElsewhereGives9After5Seconds) {
  write_limits(3, 5);
  const LockHolder holder(std::string(kDevicesDir) + "property.conf", Held::kExclusive);
  const auto begin = std::chrono::steady_clock::now();
  expect_devices(9, 0);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(5000));
}

TEST_F(ConnectionLimitsTest, NullGivesMinus1) {
  write_limits(3, 5);
  EXPECT_EQ(zrcfg_GetMaxWanNum(nullptr), 0xffffffffu);
  EXPECT_EQ(zrcfg_GetMaxConNum(nullptr), 0xffffffffu);
}

}  // namespace
}  // namespace zrcfg_test

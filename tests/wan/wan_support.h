// What the tests of the WAN index share: the objects that hold the limits, URLs, the log.
#ifndef ZRCFG_TESTS_WAN_WAN_SUPPORT_H_
#define ZRCFG_TESTS_WAN_WAN_SUPPORT_H_

#include <string>
#include <vector>

#include "tests/core/core_support.h"

namespace zrcfg_test {

inline constexpr char kDevicesDir[] = "InternetGatewayDevice/WANDevice/1/WANConnectionDevice/";
inline constexpr char kTemplateDir[] = "InternetGatewayDevice/WANDevice/1/WANConnectionDevice/0/";
inline constexpr char kTemplateConnectionsDir[] =
    "InternetGatewayDevice/WANDevice/1/WANConnectionDevice/0/WANIPConnection/";
inline constexpr char kFirstConnectionsDir[] =
    "InternetGatewayDevice/WANDevice/1/WANConnectionDevice/1/WANIPConnection/";

// Writes an object with this limit of instances and one parameter.
void write_limit(const std::string &dir, uint8_t limit);
// The two limits, that of connections in the template instance.
void write_limits(uint8_t devices, uint8_t connections);

// "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.<device>.WAN<kind>Connection.<connection>."
std::string connection_url(const std::string &device, const std::string &kind,
                           const std::string &connection);

// The logged lines of the WAN calls, without those of reading the limits.
std::vector<std::string> wan_log();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_WAN_WAN_SUPPORT_H_

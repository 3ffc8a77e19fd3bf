// What the tests of the WAN index share: the objects that hold the limits, URLs, the log.
#include "tests/wan/wan_support.h"

#include <algorithm>

namespace zrcfg_test {

void write_limit(const std::string &dir, uint8_t limit) {
  PropertyFile file = property_file({"A"}, {"value"});
  file.header.max_instance = limit;
  write_property(dir, file);
}

void write_limits(uint8_t devices, uint8_t connections) {
  write_limit(kDevicesDir, devices);
  write_limit(kTemplateDir, 77);
  write_limit(kTemplateConnectionsDir, connections);
}

std::string connection_url(const std::string &device, const std::string &kind,
                           const std::string &connection) {
  return "InternetGatewayDevice.WANDevice.1.WANConnectionDevice." + device + ".WAN" + kind +
         "Connection." + connection + ".";
}

std::vector<std::string> wan_log() {
  static const std::string beginnings[] = {"xmlurl_transform", "instanceStack.", "t_wanindex",
                                           "wanCCIndex",       "max_wan_index",  "max_con_index",
                                           "wanIndex(",        "conIndex("};
  std::vector<std::string> lines;
  for (const std::string &line : log_texts()) {
    if (std::any_of(std::begin(beginnings), std::end(beginnings), [&](const std::string &text) {
          return line.compare(0, text.size(), text) == 0;
        })) {
      lines.push_back(line);
    }
  }
  return lines;
}

}  // namespace zrcfg_test

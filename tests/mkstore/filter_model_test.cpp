// The filters of whole documents: initial values, and values that the documents permit or forbid.
#include <stdio.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <sstream>

#include "include/zrcfg.h"
#include "support/store_fixture.h"
#include "tests/mkstore/filter_document.h"
#include "tests/mkstore/filter_reader.h"
#include "tools/mkstore/command.h"

namespace fs = std::filesystem;

namespace {

constexpr int kTimeout = 3000;

// "A.{i}.B." gives "A/0/B", the template.
std::string template_directory(std::string path) {
  for (size_t at = path.find("{i}"); at != std::string::npos; at = path.find("{i}")) {
    path.replace(at, 3, "0");
  }
  path.pop_back();
  for (char &c : path) {
    c = c == '.' ? '/' : c;
  }
  return path;
}

struct Line {
  std::string object;  // As documented.
  std::string name;
  bool permitted = false;
  std::string value;
};

// What another reading of the document says about values.
std::vector<Line> independent_reading(const std::string &document) {
  std::vector<Line> lines;
  FILE *pipe = popen((std::string(ZRCFG_FACET_READER) + " " + document).c_str(), "r");
  char buffer[4096];
  while (pipe != nullptr && fgets(buffer, sizeof buffer, pipe) != nullptr) {
    const std::string text(buffer);
    const size_t tab = text.find('\t');
    const size_t dot = text.rfind('.', tab);
    lines.push_back({text.substr(0, dot + 1), text.substr(dot + 1, tab - dot - 1),
                     text[tab + 1] == 'A', text.substr(tab + 3, text.size() - tab - 4)});
  }
  EXPECT_EQ(pipe == nullptr ? -1 : pclose(pipe), 0) << "read_facets.py failed";
  return lines;
}

using FilterModelTest = FilterDocumentTest;

TEST_P(FilterModelTest, FiltersAgreeWithAnotherReading) {
  ASSERT_EQ(build_document().code, 0);
  const std::vector<std::string> filters = read_filters(path("out/regex_file"));
  std::map<std::string, ReadFile> files;
  size_t permitted = 0;
  size_t forbidden = 0;
  for (const Line &line : independent_reading(GetParam().arguments.at(1))) {
    const auto [found, fresh] = files.try_emplace(line.object);
    if (fresh) {
      found->second = read(template_directory(line.object));
      ASSERT_TRUE(found->second.well_formed) << line.object;
    }
    const uint32_t number = find_record(found->second, line.name).param_check;
    ASSERT_LE(number, filters.size());
    const std::string filter = number == 0 ? "" : filters[number - 1];
    EXPECT_EQ(filter_matches(filter, line.value), line.permitted)
        << line.object << line.name << " \"" << line.value << "\" by " << filter;
    ++(line.permitted ? permitted : forbidden);
  }
  EXPECT_GT(permitted, 1000u);
  EXPECT_GT(forbidden, 2000u);
}

// The library's own check in the store itself.
class FilterStoreTest : public zrcfg_test::StoreTest,
                        public testing::WithParamInterface<FilterDocument> {
 protected:
  void build_store() const {
    const fs::path scratch = "/var/scratch";
    fs::create_directory(scratch);
    std::ostringstream out;
    std::ostringstream err;
    std::vector<std::string> arguments = GetParam().arguments;
    arguments.push_back((scratch / "store").string());
    ASSERT_EQ(zrcfg::mkstore::run_command(arguments, out, err), 0) << err.str();
    for (const fs::directory_entry &entry : fs::directory_iterator(scratch / "store")) {
      fs::rename(entry.path(), fs::path("/var") / entry.path().filename());
    }
    fs::remove_all(scratch);
  }
};

TEST_P(FilterStoreTest, EveryInitialValuePassesItsFilter) {
  build_store();
  size_t checked = 0;
  for (const fs::directory_entry &entry : fs::recursive_directory_iterator("/var")) {
    if (!entry.is_directory()) {
      continue;
    }
    const ReadFile file = read_property_file(entry.path().string());
    ASSERT_TRUE(file.well_formed) << entry.path();
    std::string url = fs::relative(entry.path(), "/var").string() + "/";
    std::replace(url.begin(), url.end(), '/', '.');
    for (const ReadRecord &record : file.records) {
      const std::string value = record.line == "\r" ? "" : record.line;
      EXPECT_EQ(zrcfg_paramvalue_check(url.c_str(), record.name.c_str(), value.c_str(), kTimeout),
                0)
          << url << record.name << " \"" << value << "\"";
      ++checked;
    }
  }
  EXPECT_GT(checked, 700u);
}

struct Check {
  const char *url;
  const char *name;
  const char *value;
  bool permitted;
};

#ifdef ZRCFG_MODEL_DIR
constexpr char kGateway[] = "InternetGatewayDevice.";
const Check kChecks[] = {
    {"InternetGatewayDevice.DeviceInfo.", "ManufacturerOUI", "00A0C9", true},
    {"InternetGatewayDevice.DeviceInfo.", "ManufacturerOUI", "00a0c9", false},
    {"InternetGatewayDevice.DeviceInfo.", "ManufacturerOUI", "00A0C90", false},
    {"InternetGatewayDevice.ManagementServer.", "PeriodicInformEnable", "true", true},
    {"InternetGatewayDevice.ManagementServer.", "PeriodicInformEnable", "maybe", false},
    {"InternetGatewayDevice.ManagementServer.", "PeriodicInformInterval", "1", true},
    {"InternetGatewayDevice.ManagementServer.", "PeriodicInformInterval", "4294967295", true},
    {"InternetGatewayDevice.ManagementServer.", "PeriodicInformInterval", "0", false},
    {"InternetGatewayDevice.ManagementServer.", "PeriodicInformInterval", "4294967296", false},
    {"InternetGatewayDevice.UserInterface.", "WarrantyDate", "2024-02-29T00:00:00Z", true},
    {"InternetGatewayDevice.UserInterface.", "WarrantyDate", "2023-02-29T00:00:00Z", false},
    {"InternetGatewayDevice.LANDevice.0.LANHostConfigManagement.", "MACAddress", "", true},
    {"InternetGatewayDevice.LANDevice.0.LANHostConfigManagement.", "MACAddress",
     "00:11:22:aa:BB:cc", true},
    {"InternetGatewayDevice.LANDevice.0.LANHostConfigManagement.", "MACAddress",
     "00-11-22-aa-BB-cc", false},
    {"InternetGatewayDevice.LANDevice.0.WLANConfiguration.0.", "Channel", "255", true},
    {"InternetGatewayDevice.LANDevice.0.WLANConfiguration.0.", "Channel", "256", false},
    {"InternetGatewayDevice.LANDevice.0.WLANConfiguration.0.", "BeaconType", "BasicandWPA", true},
    {"InternetGatewayDevice.LANDevice.0.WLANConfiguration.0.", "BeaconType", "Basicand", false},
    {"InternetGatewayDevice.LANDevice.0.WLANConfiguration.0.", "SSID",
     "12345678901234567890123456789012", true},
    {"InternetGatewayDevice.LANDevice.0.WLANConfiguration.0.", "SSID",
     "123456789012345678901234567890123", false},
    {"InternetGatewayDevice.WANDevice.0.WANDSLInterfaceConfig.", "UpstreamNoiseMargin",
     "-2147483648", true},
    {"InternetGatewayDevice.WANDevice.0.WANDSLInterfaceConfig.", "UpstreamNoiseMargin",
     "-2147483649", false},
    {"Device.", "RootDataModelVersion", "2.11", true},
    {"Device.", "RootDataModelVersion", "3.0", false},
    {"Device.WiFi.Radio.0.", "RegulatoryDomain", "DE ", true},
    {"Device.WiFi.Radio.0.", "RegulatoryDomain", "DE", false},
    {"Device.WiFi.Radio.0.", "MCS", "31", true},
    {"Device.WiFi.Radio.0.", "MCS", "32", false},
    {"Device.WiFi.Radio.0.", "SupportedStandards", "a,b, ac", true},
    {"Device.WiFi.Radio.0.", "SupportedStandards", "a,b,x", false},
    {"Device.WiFi.Radio.0.", "SupportedStandards", "a,b,", false},
    {"Device.WiFi.AccessPoint.0.Security.", "WEPKey", "0123456789", true},
    {"Device.WiFi.AccessPoint.0.Security.", "WEPKey", "0123456789ab", false},
    {"Device.WiFi.AccessPoint.0.Accounting.", "InterimInterval", "60", true},
    {"Device.WiFi.AccessPoint.0.Accounting.", "InterimInterval", "59", false},
    {"Device.Cellular.Interface.0.", "IMEI", "123456789012345", true},
    {"Device.Cellular.Interface.0.", "IMEI", "12345678901234", false},
    {"Device.DHCPv4.Client.0.", "IPAddress", "192.168.1.1", true},
    {"Device.DHCPv4.Client.0.", "IPAddress", "192.168.1.256", false},
    {"Device.IP.Interface.0.Stats.", "BytesSent", "18446744073709551615", true},
    {"Device.IP.Interface.0.Stats.", "BytesSent", "-1", false},
    {"Device.UPnP.Discovery.RootDevice.0.", "UUID", "01234567-89ab-cdef-0123-456789ABCDEF", true},
    {"Device.UPnP.Discovery.RootDevice.0.", "UUID", "01234567-89ab-cdef-0123-456789ABCDE", false}};
#else
constexpr char kGateway[] = "InternetGatewayDevice.";
const Check kChecks[] = {
    {"InternetGatewayDevice.DeviceInfo.", "ManufacturerOUI", "00005E", true},
    {"InternetGatewayDevice.DeviceInfo.", "ManufacturerOUI", "00005e", false},
    {"InternetGatewayDevice.DeviceInfo.", "DeviceStatus", "Up", true},
    {"InternetGatewayDevice.DeviceInfo.", "DeviceStatus", "up", false},
    {"InternetGatewayDevice.DeviceInfo.", "UpTime", "4294967295", true},
    {"InternetGatewayDevice.DeviceInfo.", "UpTime", "4294967296", false},
    {"InternetGatewayDevice.DeviceInfo.", "FirstUseDate", "2024-02-29T00:00:00Z", true},
    {"InternetGatewayDevice.DeviceInfo.", "FirstUseDate", "2024-02-30T00:00:00Z", false},
    {"InternetGatewayDevice.LANDevice.1.WLANConfiguration.1.", "BSSID", "00:00:5E:00:53:01", true},
    {"InternetGatewayDevice.LANDevice.1.WLANConfiguration.1.", "BSSID", "00:00:5E:00:53", false}};
#endif

TEST_P(FilterStoreTest, CheckedValuesArePermittedOrForbidden) {
  build_store();
  size_t checked = 0;
  for (const Check &check : kChecks) {
    const std::string url = check.url;
    if ((GetParam().title == "Device") == (url.compare(0, sizeof kGateway - 1, kGateway) == 0)) {
      continue;  // Of the other document.
    }
    EXPECT_EQ(zrcfg_paramvalue_check(check.url, check.name, check.value, kTimeout),
              check.permitted ? 0 : 7)
        << check.url << check.name << " \"" << check.value << "\"";
    ++checked;
  }
  EXPECT_GE(checked, 10u);
}

INSTANTIATE_TEST_SUITE_P(Documents, FilterModelTest, testing::ValuesIn(filter_documents()),
                         filter_document_title);
INSTANTIATE_TEST_SUITE_P(Documents, FilterStoreTest, testing::ValuesIn(filter_documents()),
                         filter_document_title);

}  // namespace

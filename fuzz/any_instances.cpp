// Creating, copying and deleting instances where one file of the tree holds any bytes.
#include "fuzz/any_instances.h"

#include <iterator>

#include "fuzz/any_object.h"
#include "fuzz/check.h"
#include "fuzz/result_lists.h"
#include "fuzz/store_file.h"
#include "lifecycle/entry_counter.h"
#include "tests/support/property_builder.h"
#include "zrcfg.h"

namespace zrcfg_fuzz {
namespace {

constexpr int kTry = 0;
constexpr int kNumber = 7;
constexpr char kNumberUrl[] = "7.";
constexpr int kCopyNumber = 9;
constexpr uint8_t kLimit = 12;

std::string well_formed_table(const char *counter) {
  zrcfg_test::PropertyFile file = zrcfg_test::property_file({}, {});
  file.header.rw = 1;
  file.header.max_instance = kLimit;
  file.header.pnoe = counter;
  return file.bytes();
}

// A table with its template and its parent, each a file of the store.
class Table {
 public:
  Table(const std::string &parent, const std::string &table)
      : url_(to_url(parent + table)),
        dir_(parent + table),
        parent_(parent),
        header_(dir_),
        template_(dir_ + "0/") {}

  void write(const std::string &parent, const std::string &header, const std::string &pattern) {
    parent_.write(parent);
    header_.write(header);
    template_.write(pattern);
  }

  size_t make_calls();

 private:
  static std::string to_url(std::string dir) {
    for (char &c : dir) {
      c = c == '/' ? '.' : c;
    }
    return dir;
  }
  void remove_instances() const;

  std::string url_;
  std::string dir_;
  StoreFile parent_;
  StoreFile header_;
  StoreFile template_;
};

void Table::remove_instances() const {
  for (const int number : {1, kNumber, kCopyNumber}) {
    remove_flat_dir(dir_ + std::to_string(number) + "/");
  }
}

size_t Table::make_calls() {
  const char *const url = url_.c_str();
  const std::string instance = url_ + kNumberUrl;
  uint32_t number = 0;
  uint8_t flag = 0;
  set_under_way("the calls on instances");
  const uint32_t results[] = {
      zrcfg_addobject(url, &number, kTry),
      zrcfg_addobject_with_index(url, kNumber, kTry),
      zrcfg_delobject(url, kNumber, kTry),
      zrcfg_exportaddobject(instance.c_str(), ZRCFG_NO_LOCK, 0, &flag),
      zrcfg_exportdelobject(instance.c_str(), kTry, 0, &flag),
      zrcfg_exportaddobject(instance.c_str(), ZRCFG_NO_LOCK, 1, &flag),
      zrcfg_addobject_static(url, kCopyNumber, 0, kTry),
      zrcfg_delobject_static(url, kCopyNumber, kTry),
      zrcfg_delobject(url, number == 0 ? kNumber : static_cast<int>(number), kTry),
      modifyParentNodeNumOfEntry(dir_.c_str(), "Top/Count", 0, kTry),
      modifyParentNodeNumOfEntry(dir_.c_str(), "Top/Count", 1, kTry),
  };
  size_t count = 0;
  for (const uint32_t result : results) {
    require(result <= ZRCFG_E_REMOVE || result == ZRCFG_E_FAILED,
            "a result that is not documented");
    ++count;
  }
  NODE_INFO *head = nullptr;
  require(zrcfg_allnode_get(url, 1, &head, kTry) == 0 || head == nullptr,
          "a walk failed and stored a list");
  look_at_and_free(head);
  require(header_.is_free() && template_.is_free() && parent_.is_free(), "a lock is left");
  remove_instances();
  return count + 1;
}

constexpr char kDevices[] = "InternetGatewayDevice/WANDevice/1/WANConnectionDevice/";
constexpr char kConnection[] =
    "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.2.WANPPPConnection.1.";

// The numbering of WAN connections, which reads the limits of two tables.
size_t make_wan_calls(const std::string &bytes) {
  static StoreFile devices(kDevices);
  static StoreFile connections(std::string(kDevices) + "1/WANIPConnection/");
  devices.write(bytes);
  connections.write(bytes);
  set_under_way("the calls on WAN connections");
  uint32_t number = 0;
  WanConIndex index = {1, 1, 1};
  const uint32_t limits[] = {zrcfg_GetMaxWanNum(&number), zrcfg_GetMaxConNum(&number)};
  const int numberings[] = {zrcfg_getusrindexbywanconindex(&index, &number),
                            zrcfg_getusrindexfromxmlurl(kConnection, &number),
                            zrcfg_getwanconindexbyusrindex(7, &index),
                            zrcfg_getwanconindexfromxmlurl(kConnection, &index)};
  for (const uint32_t result : limits) {
    require(result <= ZRCFG_E_REMOVE, "a result that is not documented");
  }
  for (const int result : numberings) {
    require(result == 0 || result == -1, "neither a number nor -1");
  }
  require(devices.holds(bytes) && connections.holds(bytes), "the file is not as it was");
  return std::size(limits) + std::size(numberings);
}

}  // namespace

std::string well_formed_parent() {
  return zrcfg_test::property_file({"Name", "Count"}, {"top", "0"}).bytes();
}

std::string well_formed_template() {
  return zrcfg_test::property_file({"Name", "Other"}, {"new", ""}).bytes();
}

size_t make_instance_calls(const std::string &bytes) {
  static Table any_header("OfHeader/", "Table/");
  static Table any_template("OfTemplate/", "Table/");
  static Table any_parent("OfParent/", "Table/");
  any_header.write(well_formed_parent(), bytes, well_formed_template());
  any_template.write(well_formed_parent(), well_formed_table("Top/Count"), bytes);
  any_parent.write(bytes, well_formed_table("Top/Count"), well_formed_template());
  return any_header.make_calls() + any_template.make_calls() + any_parent.make_calls() +
         make_wan_calls(bytes);
}

const std::vector<const char *> &instance_call_names() {
  static const std::vector<const char *> names = {"zrcfg_addobject",
                                                  "zrcfg_addobject_with_index",
                                                  "zrcfg_delobject",
                                                  "zrcfg_exportaddobject",
                                                  "zrcfg_exportdelobject",
                                                  "zrcfg_addobject_static",
                                                  "zrcfg_delobject_static",
                                                  "modifyParentNodeNumOfEntry",
                                                  "zrcfg_allnode_get",
                                                  "zrcfg_GetMaxWanNum",
                                                  "zrcfg_GetMaxConNum",
                                                  "zrcfg_getusrindexbywanconindex",
                                                  "zrcfg_getusrindexfromxmlurl",
                                                  "zrcfg_getwanconindexbyusrindex",
                                                  "zrcfg_getwanconindexfromxmlurl"};
  return names;
}

}  // namespace zrcfg_fuzz

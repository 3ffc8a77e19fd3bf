// The store that the uses of the exported symbols need, and their arguments.
#include <string.h>

#include <string>

#include "tests/package/every_call.h"
#include "tests/support/property_builder.h"

namespace zrcfg_test {
namespace {

PropertyFile object_file(uint8_t rw, uint8_t limit) {
  PropertyFile file = property_file({"A", "TabNumberOfEntries"}, {"one", "1"});
  file.header.rw = rw;
  file.header.max_instance = limit;
  file.header.pnoe = "Top/TabNumberOfEntries";
  file.params[0].noti = 3;
  return file;
}

}  // namespace

void write_every_call_store() {
  write_property("Top/", object_file(0, 0));
  write_property("Top/Tab/", object_file(1, 5));
  write_property("Top/Tab/0/", object_file(0, 0));
  write_property("Top/Tab/1/", object_file(0, 0));
  write_property("Top/Fix/", object_file(0, 5));
  write_property("Top/Fix/1/", object_file(0, 0));
  const std::string devices = "InternetGatewayDevice/WANDevice/1/WANConnectionDevice/";
  write_property(devices, object_file(1, 4));
  write_property(devices + "1/WANIPConnection/", object_file(1, 2));
}

Things::Things() {
  int lock_fd = -1;
  EXPECT_EQ(createObjByPath(&image, "Top/Tab/1/", &lock_fd, 0, ZRCFG_NO_LOCK), 0u);
  strcpy(value_node.name, "A");
  value_node.value = value;
  strcpy(attr_node.name, "A");
  attr_node.pAttr = &attr;
}

Things::~Things() {
  destroyObj(image, -1);
  free(table);
}

void PrintTo(const EveryCall &call, std::ostream *out) {
  *out << call.name;
}

std::vector<EveryCall> every_call() {
  std::vector<EveryCall> all = interface_calls();
  const std::vector<EveryCall> &blocks = building_block_calls();
  all.insert(all.end(), blocks.begin(), blocks.end());
  return all;
}

}  // namespace zrcfg_test

// A small store that every input finds as it was.
#include "fuzz/small_store.h"

#include "fuzz/store_file.h"
#include "tests/support/property_builder.h"

namespace zrcfg_fuzz {
namespace {

constexpr uint8_t kLimit = 6;

std::string instance_file(const char *name) {
  zrcfg_test::PropertyFile file =
      zrcfg_test::property_file({"Name", "Level", "Text"}, {name, "1", ""});
  for (zrcfg_test::ParamFields &param : file.params) {
    param.rw = 1;
  }
  file.params[1].param_check = 1;
  file.params[2].key = 2;
  return file.bytes();
}

std::string table_file(uint8_t rw, const char *counter) {
  zrcfg_test::PropertyFile file = zrcfg_test::property_file({}, {});
  file.header.rw = rw;
  file.header.key = 1;
  file.header.max_instance = kLimit;
  file.header.pnoe = counter;
  return file.bytes();
}

}  // namespace

void reset_small_store() {
  static const std::string top =
      zrcfg_test::property_file({"Name", "Level", "TabNumberOfEntries"}, {"top", "3", "2"}).bytes();
  static const std::string dynamic_table = table_file(1, "Top/TabNumberOfEntries");
  static const std::string fixed_table = table_file(0, "");
  static const std::string instance = instance_file("instance");
  empty_store();
  for (const char *dir : {"Top/Tab/0/", "Top/Tab/1/", "Top/Tab/2/", "Top/Fix/1/", "Top/Fix/3/"}) {
    zrcfg_test::write_property(dir, instance);
  }
  zrcfg_test::write_property("Top/Tab/", dynamic_table);
  zrcfg_test::write_property("Top/Fix/", fixed_table);
  zrcfg_test::write_property("Top/", top);
  zrcfg_test::write_store_file("regex_file",
                               "config filter 'filter1'\n\toption value '^[0-9]{1,3}$'\n");
}

}  // namespace zrcfg_fuzz

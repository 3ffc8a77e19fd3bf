// Target: the input is a property file in an otherwise well-formed store; the command line reports
// what is wrong, repairs what it can, and shows the rest.
#include <string>

#include "fuzz/check.h"
#include "fuzz/small_store.h"
#include "fuzz/store_file.h"
#include "fuzz/target.h"
#include "fuzz/tool_command.h"
#include "tools/zrcfg/command.h"

namespace {

using zrcfg_fuzz::run_tool;

constexpr int kExitRepaired = 3;

// As the file of an instance, and as the table's own.
constexpr const char *kPlaces[] = {"Top/Tab/1/", "Top/Tab/"};

void check_with(const char *place, const std::string &bytes) {
  zrcfg_fuzz::reset_small_store();
  zrcfg_fuzz::StoreFile(place).write(bytes);
  const int found = run_tool({"check"});
  zrcfg_fuzz::require(zrcfg_fuzz::StoreFile(place).holds(bytes), "a check has changed the file");
  const int repaired = run_tool({"check", "--repair"});
  const int again = run_tool({"check"});
  zrcfg_fuzz::require((found == 0) == (repaired == 0), "a repair finds something else to repair");
  zrcfg_fuzz::require(repaired != kExitRepaired || again == 0, "something repaired is still wrong");
  // Of a damaged store these show what there is, or refuse.
  (void)run_tool({"dump", "Top.Tab.1."});
  (void)run_tool({"tree", "Top."});
  (void)run_tool({"export", "Top."});
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  zrcfg_fuzz::require_private_store();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  zrcfg_fuzz::set_under_way("check");
  const std::string bytes(reinterpret_cast<const char *>(data), size);
  const int descriptor = zrcfg_fuzz::lowest_free_descriptor();
  for (const char *const place : kPlaces) {
    check_with(place, bytes);
  }
  zrcfg_fuzz::require(zrcfg_fuzz::lowest_free_descriptor() == descriptor,
                      "a descriptor is left open");
  return 0;
}

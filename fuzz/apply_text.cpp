// Target: the input is a configuration text for the command line's "apply".
#include <string>

#include "fuzz/check.h"
#include "fuzz/small_store.h"
#include "fuzz/store_file.h"
#include "fuzz/target.h"
#include "fuzz/tool_command.h"
#include "tools/zrcfg/command.h"

namespace {

using zrcfg_tool::kExitOk;

constexpr char kFile[] = "/var/any_text";

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  zrcfg_fuzz::require_private_store();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string text(reinterpret_cast<const char *>(data), size);
  zrcfg_fuzz::set_under_way("apply");
  zrcfg_fuzz::reset_small_store();
  zrcfg_fuzz::StoreFile("", "any_text").write(text);
  const int descriptor = zrcfg_fuzz::lowest_free_descriptor();
  const int tried = zrcfg_fuzz::run_tool({"apply", "--dry-run", "--verbose", kFile});
  const int applied = zrcfg_fuzz::run_tool({"apply", "--verbose", kFile});
  zrcfg_fuzz::require((tried == kExitOk) == (applied == kExitOk),
                      "what the dry run says is not what happens");
  // Either answer will do.
  (void)zrcfg_fuzz::run_tool({"apply", "--exact", "Top.Tab.", kFile});
  zrcfg_fuzz::require(zrcfg_fuzz::lowest_free_descriptor() == descriptor,
                      "a descriptor is left open");
  return 0;
}

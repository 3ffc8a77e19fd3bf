// Target: the input is a script for the command line's "batch": commands, one a line. Commands that
// could reach other programs and other files than the store's are left out.
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <string>

#include "fuzz/check.h"
#include "fuzz/small_store.h"
#include "fuzz/store_file.h"
#include "fuzz/target.h"
#include "tools/zrcfg/script.h"
#include "tools/zrcfg/standard_input.h"

namespace {

// Each line costs a command; many of the same show nothing new.
constexpr size_t kMostLines = 40;
constexpr int kHighestExit = 3;  // A check that has repaired everything.

// Whether a word could name a file outside of the current directory, which is the store's root, or
// a command that runs programs or does not end by itself.
bool reaches_out(std::string line, zrcfg_tool::WordList &words) {
  if (!words.split(line.data(), line.size())) {
    return false;
  }
  return std::any_of(words.values, words.values + words.count, [](const char *word) {
    return strchr(word, '/') != nullptr || strcmp(word, "lock") == 0 || strcmp(word, "watch") == 0;
  });
}

void run_one(const std::string &line, size_t number, zrcfg_tool::WordList &words) {
  if (reaches_out(line, words)) {
    return;
  }
  const std::unique_ptr<char[]> copy(new char[line.size() + 1]);
  memcpy(copy.get(), line.c_str(), line.size() + 1);
  const int code = zrcfg_tool::run_line(copy.get(), line.size(), number, words,
                                        zrcfg_tool::script_defaults(zrcfg_tool::Options()));
  zrcfg_fuzz::require(code >= zrcfg_tool::kExitOk && code <= kHighestExit,
                      "an exit code that is not documented");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  zrcfg_fuzz::require_private_store();
  zrcfg_fuzz::require(chdir("/var") == 0 && freopen("/dev/null", "r", stdin) != nullptr,
                      "no place to run in");
  zrcfg_tool::reserve_standard_input();
  (void)zrcfg_tool::begin_script();  // The first one of a process is always granted.
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  zrcfg_fuzz::set_under_way("batch");
  zrcfg_fuzz::reset_small_store();
  const std::string text(reinterpret_cast<const char *>(data), size);
  const int descriptor = zrcfg_fuzz::lowest_free_descriptor();
  {
    zrcfg_tool::WordList words;
    size_t at = 0;
    for (size_t number = 1; at < text.size() && number <= kMostLines; ++number) {
      const size_t end = std::min(text.find('\n', at), text.size());
      run_one(text.substr(at, end - at), number, words);
      at = end + 1;
    }
  }
  zrcfg_fuzz::require(zrcfg_fuzz::lowest_free_descriptor() == descriptor,
                      "a descriptor is left open");
  return 0;
}

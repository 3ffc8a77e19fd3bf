// Target: the input is a data model document for the store builder; further parts, each behind a
// line "%instances", "%values" or "%attributes", are the list files of that name.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/check.h"
#include "fuzz/store_file.h"
#include "fuzz/target.h"
#include "tools/mkstore/command.h"

namespace {

using zrcfg_fuzz::require;

constexpr char kOutput[] = "/var/out";

// The parts by name; the document's name is "model".
std::map<std::string, std::string> split_input(const std::string &input) {
  std::map<std::string, std::string> parts;
  std::string part = "model";
  std::istringstream lines(input);
  for (std::string line; std::getline(lines, line);) {
    if (line == "%instances" || line == "%values" || line == "%attributes") {
      part = line.substr(1);
    } else {
      parts[part] += line + "\n";
    }
  }
  return parts;
}

size_t files_below(const std::string &folder) {
  size_t count = 0;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
    count += entry.is_regular_file() ? 1 : 0;
  }
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
  zrcfg_fuzz::require_private_store();
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  std::vector<std::string> arguments;
  for (const auto &[name, text] :
       split_input(std::string(reinterpret_cast<const char *>(data), size))) {
    const std::string file = "/var/any." + name;
    std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
    arguments.push_back("--" + name);
    arguments.push_back(file);
  }
  arguments.emplace_back("--verbose");
  arguments.emplace_back(kOutput);
  std::ostringstream out;
  std::ostringstream err;
  zrcfg_fuzz::set_under_way("building a store");
  const int code = zrcfg::mkstore::run_command(arguments, out, err);
  const bool built = std::filesystem::exists(kOutput);
  require(built == (code == zrcfg::mkstore::kExitDone), "a store without success");
  require(built ? files_below(kOutput) > 0 : !err.str().empty(), "neither a store nor a reason");
  zrcfg_fuzz::empty_store();
  return 0;
}

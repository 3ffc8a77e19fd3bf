// The command line of zrcfg-mkstore.
#ifndef ZRCFG_TOOLS_MKSTORE_COMMAND_H_
#define ZRCFG_TOOLS_MKSTORE_COMMAND_H_

#include <iosfwd>
#include <string>
#include <vector>

namespace zrcfg::mkstore {

inline constexpr int kExitDone = 0;
inline constexpr int kExitRefused = 1;  // Bad input, or the output could not be written.
inline constexpr int kExitUsage = 2;

// Runs the program. `arguments` has no program name; the summary goes to `out`, messages to `err`.
int run_command(const std::vector<std::string> &arguments, std::ostream &out, std::ostream &err);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_COMMAND_H_

// What an upgrade tells the user: a line for each thing that does not outlive it, and totals.
#ifndef ZRCFG_TOOLS_MKSTORE_UPGRADE_REPORT_H_
#define ZRCFG_TOOLS_MKSTORE_UPGRADE_REPORT_H_

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace zrcfg::mkstore {

// What became of something, the first word of its line (docs/store-builder.md).
enum class Outcome : size_t {
  kDropped,  // The new model has no place for it.
  kRefused,  // The new model has a place, but does not permit it.
  kDamaged,  // The old store's file cannot be read, so its object starts afresh.
  kAdded,    // The new model demands it. Nothing is lost by that.
};
inline constexpr size_t kOutcomes = 4;

struct UpgradeReport {
  std::vector<std::string> lines;
  std::array<size_t, kOutcomes> counts{};
  size_t objects = 0;  // Directories whose content was carried over, instances among them.
  size_t instances = 0;
  size_t values = 0;
};

// Adds the line "OUTCOME KIND PATH: REASON".
void report(UpgradeReport &upgrade, Outcome outcome, const char *kind, const std::string &path,
            const std::string &reason);

// How many things were lost on the way.
size_t losses(const UpgradeReport &upgrade);

// The line of totals.
std::string upgrade_summary(const UpgradeReport &upgrade);

// Bytes of an old store as text on one line: \xHH for control characters, a backslash in front of
// quotes and backslashes.
std::string printable(const std::string &bytes);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_UPGRADE_REPORT_H_

// What an upgrade tells the user: a line for each thing that does not outlive it, and totals.
#include "tools/mkstore/upgrade_report.h"

namespace zrcfg::mkstore {

namespace {

constexpr const char *kWords[kOutcomes] = {"dropped", "refused", "damaged", "added"};

size_t count_of(const UpgradeReport &upgrade, Outcome outcome) {
  return upgrade.counts[static_cast<size_t>(outcome)];
}

bool is_control(char c) {
  return static_cast<unsigned char>(c) < ' ' || c == '\x7F';
}

}  // namespace

void report(UpgradeReport &upgrade, Outcome outcome, const char *kind, const std::string &path,
            const std::string &reason) {
  const auto index = static_cast<size_t>(outcome);
  ++upgrade.counts[index];
  upgrade.lines.push_back(std::string(kWords[index]) + " " + kind + " " + printable(path) + ": " +
                          reason);
}

size_t losses(const UpgradeReport &upgrade) {
  return count_of(upgrade, Outcome::kDropped) + count_of(upgrade, Outcome::kRefused) +
         count_of(upgrade, Outcome::kDamaged);
}

std::string upgrade_summary(const UpgradeReport &upgrade) {
  std::string text = "carried over: " + std::to_string(upgrade.objects) + " objects, " +
                     std::to_string(upgrade.instances) + " instances, " +
                     std::to_string(upgrade.values) + " values;";
  for (size_t i = 0; i < kOutcomes; ++i) {
    text += (i == 0 ? " " : ", ") + std::to_string(upgrade.counts[i]) + " " + kWords[i];
  }
  return text;
}

std::string printable(const std::string &bytes) {
  constexpr char kHexDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (is_control(c)) {
      text += "\\x";
      text += kHexDigits[byte / 16];
      text += kHexDigits[byte % 16];
      continue;
    }
    text += c == '"' || c == '\\' ? "\\" : "";
    text += c;
  }
  return text;
}

}  // namespace zrcfg::mkstore

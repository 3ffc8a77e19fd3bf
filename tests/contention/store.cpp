// The store that the workers share, and the values that they leave in it.
#include "tests/contention/store.h"

#include <inttypes.h>
#include <stdio.h>

#include "tests/contention/board.h"
#include "tests/support/property_builder.h"

namespace contention {
namespace {

constexpr uint8_t kLimit = 200;
constexpr uint64_t kLengths = 180;  // Fill characters of a value, at most.

}  // namespace

void make_store(unsigned workers) {
  zrcfg_test::PropertyFile table = zrcfg_test::property_file({}, {});
  table.header.rw = 1;
  table.header.max_instance = kLimit;
  table.header.pnoe = std::string("Top/") + kCounter;
  zrcfg_test::write_property("Top/", zrcfg_test::property_file({"Name", kCounter}, {"top", "0"}));
  zrcfg_test::write_property("Top/Dynamic/", table);
  zrcfg_test::write_property("Top/Dynamic/0/",
                             zrcfg_test::property_file({kOwner, "Text"}, {"nobody", ""}));
  zrcfg_test::write_property("Top/Values/", table);
  for (unsigned instance = 0; instance <= kInstances; ++instance) {
    zrcfg_test::PropertyFile file;
    for (unsigned worker = 0; worker < workers; ++worker) {
      file.add(value_name(worker), instance == 0 ? "" : value_text(worker, instance - 1, 0));
    }
    zrcfg_test::write_property("Top/Values/" + std::to_string(instance) + "/", file);
  }
}

std::string value_url(unsigned instance) {
  return "Top.Values." + std::to_string(instance + 1) + ".";
}

std::string value_name(unsigned worker) {
  return "Worker" + std::to_string(worker);
}

std::string value_text(unsigned worker, unsigned instance, uint64_t sequence) {
  const size_t length = static_cast<size_t>(sequence * 37 % kLengths);
  const char letter = static_cast<char>('a' + sequence % 26);
  return std::to_string(worker) + ":" + std::to_string(instance) + ":" + std::to_string(sequence) +
         ":" + std::string(length, letter) + ".";
}

int64_t sequence_of(const std::string &text, unsigned worker, unsigned instance) {
  unsigned its_worker = 0;
  unsigned its_instance = 0;
  uint64_t sequence = 0;
  if (sscanf(text.c_str(), "%u:%u:%" SCNu64 ":", &its_worker, &its_instance, &sequence) != 3 ||
      text != value_text(worker, instance, sequence)) {
    return -1;
  }
  return static_cast<int64_t>(sequence);
}

}  // namespace contention

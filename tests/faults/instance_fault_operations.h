// The calls on instances and the export, put under faults on the store with tables.
#ifndef ZRCFG_TESTS_FAULTS_INSTANCE_FAULT_OPERATIONS_H_
#define ZRCFG_TESTS_FAULTS_INSTANCE_FAULT_OPERATIONS_H_

#include <stdint.h>

#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace zrcfg_test {

enum class Effect { kCreates, kDeletes, kReplaces, kWrites };

struct InstanceOperation {
  const char *name;
  Effect effect;
  std::string instance;         // The directory that it works on; empty for values.
  bool counts;                  // Changes the parent's counter.
  std::set<uint32_t> failures;  // The codes that it may fail with.
  uint32_t (*run)();
};

inline void PrintTo(const InstanceOperation &operation, std::ostream *out) {
  *out << operation.name;
}

const std::vector<InstanceOperation> &instance_operations();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_FAULTS_INSTANCE_FAULT_OPERATIONS_H_

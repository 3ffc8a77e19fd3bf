// The calls on several values, to be put under faults beside those on one.
#ifndef ZRCFG_TESTS_FAULTS_BULK_FAULT_OPERATIONS_H_
#define ZRCFG_TESTS_FAULTS_BULK_FAULT_OPERATIONS_H_

#include <vector>

#include "tests/faults/fault_operations.h"

namespace zrcfg_test {

std::vector<Operation> bulk_operations();

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_FAULTS_BULK_FAULT_OPERATIONS_H_

// What each exported call may return, and may have written to its outputs, when the system fails.
#ifndef ZRCFG_TESTS_FAULTS_DOCUMENTED_FAILURES_H_
#define ZRCFG_TESTS_FAULTS_DOCUMENTED_FAILURES_H_

#include <set>
#include <string>

namespace zrcfg_test {

struct DocumentedFailure {
  std::set<long long> results;  // Beside that of success.
  std::set<std::string> outputs;
};

// By exported name; a call that is not in the table asks nothing of the system that could fail.
const DocumentedFailure &documented_failure(const std::string &symbol);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_FAULTS_DOCUMENTED_FAILURES_H_

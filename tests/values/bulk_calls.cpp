// The calls on several values as one table, for the rules that all of them follow.
#include "tests/values/bulk_calls.h"

#include <cstdlib>

#include "tests/values/values_support.h"

namespace zrcfg_test {
namespace {

BulkOutcome get_multi(const char *url, int timeout) {
  Requests requests;
  requests.get("A");
  const int result = zrcfg_getmultiparamval(url, requests.list(), timeout);
  return {result, requests.got(0) == "untouched" && requests.all_outputs_untouched()};
}

BulkOutcome set_multi(const char *url, int timeout) {
  Requests requests;
  requests.set("A", kWritten);
  const int result = zrcfg_setmultiparamval(url, requests.list(), timeout);
  return {result, requests.all_outputs_untouched()};
}

BulkOutcome set_multi_check(const char *url, int timeout) {
  Requests requests;
  requests.set("A", kWritten);
  const int result = zrcfg_setmultiparamval_check(url, requests.list(), timeout);
  return {result, requests.all_outputs_untouched()};
}

BulkOutcome roll_back(const char *url, int timeout) {
  Requests requests;
  requests.filled("A", kWritten, 1, 9003);
  return {zrcfg_setmultiparamval_ext(url, requests.list(), timeout), true};
}

BulkOutcome get_all(const char *url, int timeout) {
  ParamValueListNode mark = {};
  ParamValueListNode *head = &mark;
  ParamValueListNode *tail = &mark;
  const int result = zrcfg_getallparamval(url, &head, &tail, timeout);
  const bool untouched = head == &mark && tail == &mark;
  while (result == 0 && head != nullptr) {
    ParamValueListNode *const next = head->next;
    free(head);
    head = next;
  }
  return {result, untouched};
}

BulkOutcome check(const char *url, int timeout) {
  return {zrcfg_paramvalue_check(url, "A", kWritten, timeout), true};
}

BulkOutcome set_single_check(const char *url, int timeout) {
  char changed = 77;
  GuardedBuffer old;
  const int result = zrcfg_setsingleparamval_ext_get_old_value_check(url, "A", kWritten, timeout,
                                                                     &changed, old.data());
  return {result, old.untouched() && changed == 77};
}

constexpr char kNullRead[] = "Input parameters can't be NULL\n";
constexpr char kNullWrite[] = "Input parameters can't be NULL!\n";

std::vector<BulkCall> calls_that(bool write) {
  std::vector<BulkCall> chosen;
  for (const BulkCall &call : bulk_calls()) {
    if (call.writes == write) {
      chosen.push_back(call);
    }
  }
  return chosen;
}

}  // namespace

void PrintTo(const BulkCall &call, std::ostream *out) {
  *out << call.name;
}

const std::vector<BulkCall> &bulk_calls() {
  static const std::vector<BulkCall> calls = {
      {"GetMulti", false, get_multi, "", "objUrl =  URL\n", 7},
      {"SetMulti", true, set_multi, kNullWrite, "objUrl = URL\n", 7},
      {"SetMultiCheck", true, set_multi_check, kNullWrite, "objUrl = URL\n", 7},
      {"RollBack", true, roll_back, kNullWrite, "objUrl = URL\n", 7},
      {"GetAll", false, get_all, kNullRead, "objUrl =  URL\n", 15},
      {"Check", false, check, kNullRead, "objUrl =  URL, param name = A\n", 0},
      {"SetSingleCheck", true, set_single_check, kNullWrite, "", 10},
  };
  return calls;
}

std::vector<BulkCall> writing_calls() {
  return calls_that(true);
}

std::vector<BulkCall> reading_calls() {
  return calls_that(false);
}

}  // namespace zrcfg_test

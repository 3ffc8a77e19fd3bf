// The calls on several values, to be put under faults beside those on one.
#include "tests/faults/bulk_fault_operations.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <string.h>

#include "tests/support/property_builder.h"
#include "values/bulk_values.h"
#include "values/checked_single_value.h"
#include "values/value_list.h"
#include "values/value_table.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr char kUrl[] = "A.B.3.";
constexpr int kTimeout = 0;
constexpr char kLonger[] = "a value that is a good deal longer than the one that it replaces";
constexpr char kShort[] = "a short value of now";
constexpr char kFirstOld[] = "the first value";
constexpr char kSecondOld[] = "a second value, somewhat longer";
constexpr uint32_t kSomeFault = 9003;

// Three nodes of one list with room for a value each.
struct ThreeNodes {
  ParamValueEntry nodes[3];
  char values[3][256];
  uint32_t faults[3];

  ThreeNodes(const char *first, const char *second, const char *third) {
    memset(static_cast<void *>(nodes), 0, sizeof nodes);
    memset(values, 0, sizeof values);
    const char *const names[3] = {"First", "Second", "Third"};
    const char *const texts[3] = {first, second, third};
    for (int i = 0; i < 3; ++i) {
      strcpy(nodes[i].name, names[i]);
      strcpy(values[i], texts[i]);
      nodes[i].value = values[i];
      faults[i] = 0;
      nodes[i].fault = &faults[i];
      nodes[i].next = i < 2 ? &nodes[i + 1] : nullptr;
    }
  }
};

// An open object for the steps, without a lock.
class OpenImage {
 public:
  OpenImage() { EXPECT_EQ(createObjByPath(&image_, kObjectDir, &fd_, 0, -2), 0u); }
  ~OpenImage() { destroyObj(image_, fd_); }
  OpenImage(const OpenImage &) = delete;
  OpenImage &operator=(const OpenImage &) = delete;
  ZrcfgObject *get() const { return image_; }

 private:
  ZrcfgObject *image_ = nullptr;
  int fd_ = -1;
};

void finish(Outcome &outcome, CallWatch &watch, int result) {
  watch.stop();
  outcome.result = static_cast<uint32_t>(result);
  outcome.hits = watch.faults_hit();
  outcome.calls = watch.describe();
}

std::string section(const std::string &first, const std::string &second, const std::string &third) {
  return first + "\n" + second + "\n" + third + "\n";
}

Outcome run_get_multi(const std::vector<Fault> &faults) {
  Outcome outcome;
  ThreeNodes list(kUntouched, kUntouched, kUntouched);
  CallWatch watch(faults, true);
  const int result = zrcfg_getmultiparamval(kUrl, list.nodes, kTimeout);
  finish(outcome, watch, result);
  outcome.output = std::string(list.values[0]) + "|" + list.values[1] + "|" + list.values[2];
  if (outcome.output == "untouched|untouched|untouched") {
    outcome.output = kUntouched;
  }
  return outcome;
}

using SetCall = int (*)(const char *, ParamValueEntry *, int);

template <SetCall Set>
Outcome run_set_multi(const std::vector<Fault> &faults, const char *first, const char *second) {
  Outcome outcome;
  outcome.output = kUntouched;
  ThreeNodes list(first, second, "");
  CallWatch watch(faults, true);
  const int result = Set(kUrl, list.nodes, kTimeout);
  finish(outcome, watch, result);
  if (result == 0) {
    EXPECT_STREQ(list.nodes[0].old_value, kFirstOld);
    EXPECT_STREQ(list.nodes[1].old_value, kSecondOld);
    EXPECT_EQ(list.nodes[0].changed, 1u);
    EXPECT_EQ(list.nodes[2].changed, 0u);
  }
  return outcome;
}

Outcome run_set_multi_longer(const std::vector<Fault> &faults) {
  return run_set_multi<zrcfg_setmultiparamval>(faults, kLonger, kSecondOld);
}

Outcome run_set_multi_shorter(const std::vector<Fault> &faults) {
  return run_set_multi<zrcfg_setmultiparamval>(faults, kShort, "");
}

Outcome run_set_multi_check(const std::vector<Fault> &faults) {
  return run_set_multi<zrcfg_setmultiparamval_check>(faults, kShort, kLonger);
}

Outcome run_roll_back(const std::vector<Fault> &faults) {
  Outcome outcome;
  outcome.output = kUntouched;
  ThreeNodes list("x", "x", "x");
  for (int i = 0; i < 2; ++i) {
    strcpy(list.nodes[i].old_value, i == 0 ? kShort : kLonger);
    list.nodes[i].changed = 1;
    list.faults[i] = kSomeFault;
  }
  CallWatch watch(faults, true);
  const int result = zrcfg_setmultiparamval_ext(kUrl, list.nodes, kTimeout);
  finish(outcome, watch, result);
  return outcome;
}

// Frees the list and puts it into the outcome.
void take_list(Outcome &outcome, ParamValueListNode *head) {
  std::string text;
  while (head != nullptr) {
    text += std::string(head->url) + "=" + head->value + "|";
    ParamValueListNode *const next = head->next;
    free(head);
    head = next;
  }
  outcome.output = text;
}

template <typename List>
Outcome run_list(const std::vector<Fault> &faults, List list) {
  Outcome outcome;
  outcome.output = kUntouched;
  ParamValueListNode mark = {};
  ParamValueListNode *head = &mark;
  ParamValueListNode *tail = &mark;
  CallWatch watch(faults, true);
  const int result = list(&head, &tail);
  finish(outcome, watch, result);
  EXPECT_EQ(head == &mark, result != 0);
  EXPECT_EQ(tail == &mark, result != 0);
  if (result == 0) {
    take_list(outcome, head);
  }
  return outcome;
}

Outcome run_get_all(const std::vector<Fault> &faults) {
  return run_list(faults, [](ParamValueListNode **head, ParamValueListNode **tail) {
    return zrcfg_getallparamval(kUrl, head, tail, kTimeout);
  });
}

Outcome run_list_step(const std::vector<Fault> &faults) {
  const OpenImage image;
  return run_list(faults, [&image](ParamValueListNode **head, ParamValueListNode **tail) {
    return constructParamValueList(kUrl, image.get(), head, tail);
  });
}

Outcome run_check(const std::vector<Fault> &faults) {
  Outcome outcome;
  outcome.output = kUntouched;
  CallWatch watch(faults, true);
  const int result = zrcfg_paramvalue_check(kUrl, "First", kShort, kTimeout);
  finish(outcome, watch, result);
  return outcome;
}

Outcome run_set_single_check(const std::vector<Fault> &faults) {
  Outcome outcome;
  char changed = 0x5A;
  char old_value[256] = {};
  strcpy(old_value, kUntouched);
  CallWatch watch(faults, true);
  const int result = zrcfg_setsingleparamval_ext_get_old_value_check(kUrl, "Second", kShort,
                                                                     kTimeout, &changed, old_value);
  finish(outcome, watch, result);
  outcome.output = old_value;
  outcome.changed = changed == 0x5A ? -1 : changed;
  return outcome;
}

Outcome run_table_step(const std::vector<Fault> &faults) {
  const OpenImage image;
  Outcome outcome;
  outcome.output = kUntouched;
  char mark = 0;
  char *table = &mark;
  CallWatch watch(faults, true);
  const int result = constructParamValues(image.get(), &table);
  finish(outcome, watch, result);
  if (result == 0) {
    outcome.output = std::string(table) + "|" + (table + 256) + "|" + (table + 512);
    free(table);
  } else {
    EXPECT_EQ(table, &mark);
  }
  return outcome;
}

Outcome run_table_write_step(const std::vector<Fault> &faults) {
  const OpenImage image;
  Outcome outcome;
  outcome.output = kUntouched;
  char table[3 * 256] = {};
  strcpy(table, kShort);
  strcpy(table + 256, kShort);
  CallWatch watch(faults, true);
  const int result = setParamValuesToMem(image.get(), table);
  finish(outcome, watch, result);
  return outcome;
}

}  // namespace

std::vector<Operation> bulk_operations() {
  const std::string old = old_values();
  const std::string all = std::string(kFirstOld) + "|" + kSecondOld + "|";
  const std::string listed = std::string(kUrl) + "First=" + kFirstOld + "|" + kUrl +
                             "Second=" + kSecondOld + "|" + kUrl + "Third=|";
  const std::set<uint32_t> call = {7, 8, 9, 10, 15};
  const std::set<uint32_t> step = {7, 10, 15};
  const std::set<uint32_t> memory = {10, 15};
  return {
      {"GetMulti", call, memory, all, false, false, old, run_get_multi},
      {"SetMultiLonger", call, memory, kUntouched, false, false, section(kLonger, kSecondOld, "\r"),
       run_set_multi_longer},
      {"SetMultiShorter", call, memory, kUntouched, false, false, section(kShort, "\r", "\r"),
       run_set_multi_shorter},
      {"SetMultiCheck", call, memory, kUntouched, false, false, section(kShort, kLonger, "\r"),
       run_set_multi_check},
      {"RollBack", call, memory, kUntouched, false, false, section(kShort, kLonger, "\r"),
       run_roll_back},
      {"GetAll", call, memory, listed, false, false, old, run_get_all},
      {"Check", {8, 9, 10}, {10}, kUntouched, false, false, old, run_check},
      {"SetSingleCheck", call, memory, kSecondOld, true, true, section(kFirstOld, kShort, "\r"),
       run_set_single_check},
      {"TableStep", step, {15}, all, false, false, old, run_table_step},
      {"TableWriteStep",
       step,
       {15},
       kUntouched,
       false,
       false,
       section(kShort, kShort, "\r"),
       run_table_write_step},
      {"ListStep", step, {15}, listed, false, false, old, run_list_step},
  };
}

}  // namespace zrcfg_test

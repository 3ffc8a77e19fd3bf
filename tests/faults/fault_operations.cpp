// The calls that are put under faults, run on one known store, and what may be seen afterwards.
#include "tests/faults/fault_operations.h"

#include <gtest/gtest.h>
#include <string.h>

#include "core/single_value.h"
#include "lock/object_lock.h"
#include "tests/faults/bulk_fault_operations.h"
#include "tests/support/lock_holder.h"
#include "tests/support/property_builder.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

constexpr char kUrl[] = "A.B.3.";
constexpr char kFirst[] = "the first value";
constexpr char kSecond[] = "a second value, somewhat longer";
constexpr char kLonger[] = "a value that is a good deal longer than the one that it replaces";
constexpr uint8_t kNoFlag = 0x5A;
constexpr int kTimeout = 0;

PropertyFile store_file() {
  return property_file({"First", "Second", "Third"}, {kFirst, kSecond, ""});
}

std::string section(const std::string &first, const std::string &second) {
  return first + "\n" + second + "\n\r\n";
}

int flag_of(uint8_t changed) {
  return changed == kNoFlag ? -1 : changed;
}

void finish(Outcome &outcome, CallWatch &watch) {
  watch.stop();
  outcome.hits = watch.faults_hit();
  outcome.calls = watch.describe();
}

template <const char *Name>
Outcome run_get(const std::vector<Fault> &faults) {
  Outcome outcome;
  char value[256] = {};
  strcpy(value, kUntouched);
  CallWatch watch(faults, true);
  outcome.result = zrcfg_getsingleparamval(kUrl, Name, value, kTimeout);
  finish(outcome, watch);
  outcome.output = value;
  return outcome;
}

constexpr char kFirstName[] = "First";
constexpr char kSecondName[] = "Second";
constexpr char kThirdName[] = "Third";

Outcome run_set(const std::vector<Fault> &faults) {
  Outcome outcome;
  outcome.output = kUntouched;
  CallWatch watch(faults, true);
  outcome.result = zrcfg_setsingleparamval(kUrl, "First", kLonger, kTimeout);
  finish(outcome, watch);
  return outcome;
}

Outcome run_set_ext(const std::vector<Fault> &faults) {
  Outcome outcome;
  outcome.output = kUntouched;
  uint8_t changed = kNoFlag;
  CallWatch watch(faults, true);
  outcome.result = zrcfg_setsingleparamval_ext(kUrl, "First", "", kTimeout, &changed);
  finish(outcome, watch);
  outcome.changed = flag_of(changed);
  return outcome;
}

Outcome run_set_old_value(const std::vector<Fault> &faults) {
  Outcome outcome;
  char old_value[256] = {};
  strcpy(old_value, kUntouched);
  uint8_t changed = kNoFlag;
  CallWatch watch(faults, true);
  outcome.result = zrcfg_setsingleparamval_ext_get_old_value(kUrl, "Second", "short", kTimeout,
                                                             &changed, old_value);
  finish(outcome, watch);
  outcome.output = old_value;
  outcome.changed = flag_of(changed);
  return outcome;
}

// An open object for the workers, without a lock.
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

Outcome run_get_worker(const std::vector<Fault> &faults) {
  const OpenImage image;
  Outcome outcome;
  char value[256] = {};
  strcpy(value, kUntouched);
  CallWatch watch(faults, true);
  outcome.result = getSingleParamValueByParamName(image.get(), "Second", value);
  finish(outcome, watch);
  outcome.output = value;
  return outcome;
}

Outcome run_set_worker(const std::vector<Fault> &faults) {
  const OpenImage image;
  Outcome outcome;
  outcome.output = kUntouched;
  uint8_t changed = kNoFlag;
  CallWatch watch(faults, true);
  outcome.result = setSingleParamValueByParamName(image.get(), "Second", "short", &changed);
  finish(outcome, watch);
  outcome.changed = flag_of(changed);
  return outcome;
}

Outcome run_set_old_value_worker(const std::vector<Fault> &faults) {
  const OpenImage image;
  Outcome outcome;
  char old_value[256] = {};
  strcpy(old_value, kUntouched);
  uint8_t changed = kNoFlag;
  CallWatch watch(faults, true);
  outcome.result =
      set_single_param_value_by_param_name(image.get(), "Second", kLonger, &changed, old_value);
  finish(outcome, watch);
  outcome.output = old_value;
  outcome.changed = flag_of(changed);
  return outcome;
}

Outcome run_open(const std::vector<Fault> &faults, int timeout) {
  Outcome outcome;
  outcome.output = kUntouched;
  int sentinel = 0;
  ZrcfgObject *image = &sentinel;
  int fd = -1;
  CallWatch watch(faults, true);
  outcome.result = createObjByPath(&image, kObjectDir, &fd, 1, timeout);
  finish(outcome, watch);
  if (outcome.result != 0) {
    outcome.image_kept = image == &sentinel;
    outcome.lock_fd = fd;
    return outcome;
  }
  EXPECT_EQ(static_cast<const uint8_t *>(image)[4], 3) << "param_num";
  EXPECT_EQ(memcmp(static_cast<const char *>(image) + 184 + 124 + 8, "Second", 7), 0);
  EXPECT_EQ(fd == -1, timeout == -2);
  EXPECT_EQ(destroyObj(image, fd), 0u);
  return outcome;
}

Outcome run_create(const std::vector<Fault> &faults) {
  return run_open(faults, kTimeout);
}

Outcome run_create_without_lock(const std::vector<Fault> &faults) {
  return run_open(faults, -2);
}

Outcome run_destroy(const std::vector<Fault> &faults) {
  Outcome outcome;
  outcome.output = kUntouched;
  ZrcfgObject *image = nullptr;
  int fd = -1;
  EXPECT_EQ(createObjByPath(&image, kObjectDir, &fd, 1, kTimeout), 0u);
  CallWatch watch(faults, true);
  outcome.result = destroyObj(image, fd);
  finish(outcome, watch);
  return outcome;
}

Outcome run_lock_url(const std::vector<Fault> &faults) {
  Outcome outcome;
  outcome.output = kUntouched;
  int fd = -7;
  CallWatch watch(faults, true);
  outcome.result = zrcfg_lockurl(kUrl, &fd, 30, 1);
  finish(outcome, watch);
  if (outcome.result != 0) {
    outcome.lock_fd = fd;
    return outcome;
  }
  EXPECT_FALSE(shared_lockable(std::string(kTemplateDir) + "property.conf"));
  EXPECT_EQ(zrcfg_releaselock(fd), 0);
  return outcome;
}

Outcome run_is_lock(const std::vector<Fault> &faults) {
  Outcome outcome;
  outcome.output = kUntouched;
  CallWatch watch(faults, true);
  outcome.result = zrcfg_islock(kUrl);
  finish(outcome, watch);
  return outcome;
}

Outcome run_exists(const std::vector<Fault> &faults) {
  Outcome outcome;
  outcome.output = kUntouched;
  CallWatch watch(faults, true);
  outcome.result = CheckObjExist(kUrl);
  finish(outcome, watch);
  return outcome;
}

std::vector<Operation> make_operations() {
  const std::string old = old_values();
  const std::set<uint32_t> read = {7, 8, 9, 10};
  const std::set<uint32_t> write = {7, 8, 9, 10, 15};
  const std::set<uint32_t> open = {8, 9, 10};
  const std::set<uint32_t> write_worker = {7, 10, 15};
  const std::set<uint32_t> write_memory = {10, 15};
  return {
      {"GetFirst", read, {10}, kFirst, false, false, old, run_get<kFirstName>},
      {"GetSecond", read, {10}, kSecond, false, false, old, run_get<kSecondName>},
      {"GetThird", read, {10}, "", false, false, old, run_get<kThirdName>},
      {"Set", write, write_memory, kUntouched, false, false, section(kLonger, kSecond), run_set},
      {"SetExt", write, write_memory, kUntouched, false, true, section("\r", kSecond), run_set_ext},
      {"SetOldValue", write, write_memory, kSecond, true, true, section(kFirst, "short"),
       run_set_old_value},
      {"GetWorker", {7, 10}, {10}, kSecond, false, false, old, run_get_worker},
      {"SetWorker", write_worker, write_memory, kUntouched, false, true, section(kFirst, "short"),
       run_set_worker},
      {"SetOldValueWorker", write_worker, write_memory, kSecond, true, true,
       section(kFirst, kLonger), run_set_old_value_worker},
      {"Create", open, {10}, kUntouched, false, false, old, run_create},
      {"CreateWithoutLock", open, {10}, kUntouched, false, false, old, run_create_without_lock},
      {"Destroy", {}, {}, kUntouched, false, false, old, run_destroy},
      {"LockUrl", {0xFFFFFFFFu}, {}, kUntouched, false, false, old, run_lock_url},
      {"IsLock", {1}, {}, kUntouched, false, false, old, run_is_lock},
      {"CheckObjExist", {1}, {}, kUntouched, false, false, old, run_exists},
  };
}

void expect_sound_flag(const Outcome &outcome) {
  if (outcome.result == 0) {
    EXPECT_EQ(outcome.changed, 1);
    return;
  }
  if (outcome.result == 8 || outcome.result == 9) {
    EXPECT_EQ(outcome.changed, -1) << "the object was not opened";
    return;
  }
  EXPECT_NE(outcome.changed, 0);
}

}  // namespace

const std::vector<Operation> &operations() {
  static const std::vector<Operation> all = [] {
    std::vector<Operation> every = make_operations();
    const std::vector<Operation> bulk = bulk_operations();
    every.insert(every.end(), bulk.begin(), bulk.end());
    return every;
  }();
  return all;
}

void write_fault_store() {
  write_property(kTemplateDir, property_file({"First"}, {"template"}));
  write_property(kObjectDir, store_file());
}

std::string old_file_bytes() {
  return store_file().bytes();
}

std::string old_values() {
  return section(kFirst, kSecond);
}

void expect_sound(const Operation &operation, const Outcome &outcome) {
  const std::string old_bytes = old_file_bytes();
  const std::string head = old_bytes.substr(0, old_bytes.size() - old_values().size());
  const bool ok = outcome.result == 0;
  EXPECT_EQ(read_property(kObjectDir), ok ? head + operation.new_values : old_bytes);
  EXPECT_TRUE(ok || operation.failures.count(outcome.result) != 0) << "result " << outcome.result;
  if (ok || !operation.raw_output_on_failure) {
    EXPECT_EQ(outcome.output, ok ? operation.expected_output : kUntouched);
  } else {
    EXPECT_TRUE(outcome.output == kUntouched || outcome.output == operation.expected_output)
        << outcome.output;
  }
  if (operation.has_changed_flag) {
    expect_sound_flag(outcome);
  }
  EXPECT_EQ(outcome.lock_fd, -1);
  EXPECT_TRUE(outcome.image_kept);
  for (const char *dir : {kObjectDir, kTemplateDir}) {
    EXPECT_TRUE(exclusively_lockable(std::string(dir) + "property.conf")) << dir;
  }
}

}  // namespace zrcfg_test

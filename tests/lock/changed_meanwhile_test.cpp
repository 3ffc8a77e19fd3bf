// Calls that waited for the lock of an object which is deleted, or made anew, meanwhile.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <functional>
#include <ostream>
#include <string>
#include <thread>

#include "tests/support/lock_holder.h"
#include "tests/support/log_capture.h"
#include "tests/support/property_builder.h"
#include "tests/support/store_fixture.h"
#include "zrcfg.h"

namespace zrcfg_test {
namespace {

namespace fs = std::filesystem;

constexpr char kDir[] = "Gateway/Device/";
constexpr char kUrl[] = "Gateway.Device.";
constexpr char kFile[] = "Gateway/Device/property.conf";

ParamValueEntry request(char *value) {
  ParamValueEntry entry = {};
  strcpy(entry.name, "Name");
  entry.value = value;
  return entry;
}

enum class Sets { kNothing, kValue, kAttribute };

// A call on the object. What it reads becomes `seen`, the value that it sets is "new".
struct Call {
  const char *name;
  std::function<int(int timeout, std::string &seen)> run;
  Sets sets = Sets::kNothing;
};

void PrintTo(const Call &call, std::ostream *out) {
  *out << call.name;
}

const Call kCalls[] = {
    {"Get",
     [](int timeout, std::string &seen) {
       char value[ZRCFG_VALUE_SIZE] = "";
       const uint32_t result = zrcfg_getsingleparamval(kUrl, "Name", value, timeout);
       seen = value;
       return static_cast<int>(result);
     }},
    {"MultiGet",
     [](int timeout, std::string &seen) {
       char value[ZRCFG_VALUE_SIZE] = "";
       ParamValueEntry list = request(value);
       const int result = zrcfg_getmultiparamval(kUrl, &list, timeout);
       seen = value;
       return result;
     }},
    {"GetAttribute",
     [](int timeout, std::string &) {
       ParamAttr attr;
       return static_cast<int>(zrcfg_getsingleparamattr(kUrl, "Name", &attr, timeout));
     }},
    {"Set",
     [](int timeout, std::string &) {
       return static_cast<int>(zrcfg_setsingleparamval(kUrl, "Name", "new", timeout));
     },
     Sets::kValue},
    {"MultiSet",
     [](int timeout, std::string &) {
       char value[] = "new";
       ParamValueEntry list = request(value);
       return zrcfg_setmultiparamval(kUrl, &list, timeout);
     },
     Sets::kValue},
    {"SetAttribute",
     [](int timeout, std::string &) {
       return static_cast<int>(zrcfg_setsingleparamattr_ext(kUrl, "Name", 4, "1", timeout));
     },
     Sets::kAttribute},
    {"SetObjectAttribute",
     [](int timeout, std::string &) {
       return static_cast<int>(zrcfg_setsingleobjattr_ext(kUrl, 2, "1", timeout));
     },
     Sets::kAttribute},
};

class ChangedMeanwhileTest : public StoreTest, public ::testing::WithParamInterface<Call> {
 protected:
  // Runs the call against another process's lock; `change` happens before that is released.
  int run_waiting(int timeout, const std::function<void()> &change) {
    write_property(kDir, property_file({"Name"}, {"old"}));
    clear_log();
    LockHolder holder(kFile, Held::kExclusive);
    std::thread other([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      change();
      holder.release();
    });
    seen_.clear();
    const int result = GetParam().run(timeout, seen_);
    other.join();
    return result;
  }

  std::string seen_;
};

void delete_object() {
  fs::remove_all(store_path(kDir));
}

TEST_P(ChangedMeanwhileTest, DeletedObjectGives8AndStaysAway) {
  for (const int timeout : {ZRCFG_WAIT_FOREVER, 3000}) {
    EXPECT_EQ(run_waiting(timeout, delete_object), 8) << timeout;
    EXPECT_EQ(seen_, "");
    EXPECT_EQ(log_count("getPropertyFile() fail!\n"), 1u);
    EXPECT_FALSE(fs::exists(store_path(kDir)));
  }
}

TEST_P(ChangedMeanwhileTest, ObjectMadeAnewIsTheOneThatCounts) {
  const PropertyFile fresh = property_file({"Other", "Name"}, {"1", "fresh"});
  for (const int timeout : {ZRCFG_WAIT_FOREVER, 3000}) {
    EXPECT_EQ(run_waiting(timeout,
                          [&] {
                            delete_object();
                            write_property(kDir, fresh);
                          }),
              0)
        << timeout;
    EXPECT_TRUE(seen_.empty() || seen_ == "fresh") << seen_;
    const std::string head = fresh.head_bytes();
    const std::string bytes = read_property(kDir);
    EXPECT_EQ(bytes.substr(head.size()),
              GetParam().sets == Sets::kValue ? "1\nnew\n" : "1\nfresh\n");
    EXPECT_EQ(bytes.substr(0, head.size()) != head, GetParam().sets == Sets::kAttribute);
  }
}

INSTANTIATE_TEST_SUITE_P(Calls, ChangedMeanwhileTest, ::testing::ValuesIn(kCalls),
                         [](const auto &row) { return std::string(row.param.name); });

}  // namespace
}  // namespace zrcfg_test

// Every exported symbol with one use of it, for the test that none is missing.
#ifndef ZRCFG_TESTS_PACKAGE_EVERY_CALL_H_
#define ZRCFG_TESTS_PACKAGE_EVERY_CALL_H_

#include <gtest/gtest.h>
#include <stdint.h>

#include <optional>
#include <ostream>
#include <type_traits>
#include <vector>

#include "zrcfg.h"

namespace zrcfg_test {

// Arguments and outputs for one call, and the image of object Top/Tab/1/, opened without a lock.
struct Things {
  ZrcfgObject *image = nullptr;
  char text[512] = "";
  char old_value[256] = "";
  char value[256] = "new";
  char *table = nullptr;  // Freed at the end.
  int fd = -1;
  int number = 77;
  uint32_t word = 77;
  uint32_t words[9] = {};
  uint8_t flag = 77;
  ParamAttr attr = {};
  ParamAttrChange change = {};
  ObjAttr object = {};
  ParamValueEntry value_node = {};  // Parameter A with `value`.
  MultiAttrNode attr_node = {};     // Parameter A with `attr`.
  WanConIndex index = {1, 1, 1};
  std::optional<long long> result;  // Of the symbol's call, where it has one.

  Things();
  ~Things();
  Things(const Things &) = delete;
  Things &operator=(const Things &) = delete;
};

struct EveryCall {
  const char *name;
  void (*use)(Things &things);
};

void PrintTo(const EveryCall &call, std::ostream *out);

const std::vector<EveryCall> &interface_calls();
const std::vector<EveryCall> &building_block_calls();
std::vector<EveryCall> every_call();

// The store that the uses need.
void write_every_call_store();

// A function that notes what it returns.
template <typename Result, typename... Arguments>
struct NotedCall {
  Things &things;
  Result (*function)(Arguments...);

  Result operator()(Arguments... arguments) const {
    if constexpr (std::is_integral_v<Result>) {
      const Result result = function(arguments...);
      things.result = static_cast<long long>(result);
      return result;
    } else {
      return function(arguments...);
    }
  }
};

template <typename Result, typename... Arguments>
NotedCall<Result, Arguments...> noted(Things &things, Result (*function)(Arguments...)) {
  return {things, function};
}

template <typename Other>
Other *noted(Things &, Other *symbol) {
  return symbol;
}

// A row of the tables: the statements use the symbol as `call`; one that does not is a warning.
#define ZRCFG_TEST_USE(symbol, ...)                        \
  {                                                        \
#symbol, [](Things &t) {                                 \
      (void)t;                                               \
      const auto call = noted(t, &symbol);                   \
      __VA_ARGS__                                            \
    } \
  }
// The same for a call with these arguments and result.
#define ZRCFG_TEST_CALL(symbol, expected, ...) \
  ZRCFG_TEST_USE(                              \
      symbol, EXPECT_EQ(call(__VA_ARGS__), static_cast<decltype(call(__VA_ARGS__))>(expected));)

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_PACKAGE_EVERY_CALL_H_

// No changing call is missing from docs/crash.md, and the others change nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "tests/crash/changing_calls.h"
#include "tests/crash/crash_document.h"
#include "tests/package/every_call.h"
#include "tests/support/libc_hooks.h"

namespace zrcfg_test {
namespace {

std::set<std::string> quoted_names(const std::string &text) {
  std::set<std::string> names;
  for (size_t begin = text.find('`'); begin != std::string::npos; begin = text.find('`', begin)) {
    const size_t end = text.find('`', begin + 1);
    names.insert(text.substr(begin + 1, end - begin - 1));
    begin = end + 1;
  }
  return names;
}

// The exported name of a call, without what tells two uses apart.
std::string symbol_of(const ChangingCall &call) {
  const std::string name = call.name;
  return name.substr(0, name.find(' '));
}

TEST(CrashDocumentTest, NamesTheChangingCallsOfEachGroup) {
  std::map<std::string, std::set<std::string>> expected;
  for (const ChangingCall &call : changing_calls()) {
    if (call.group != group::kLongerValues) {
      expected[call.group].insert(symbol_of(call));
    }
  }
  std::map<std::string, std::set<std::string>> documented;
  for (const auto &row : document_table("Calls")) {
    documented[row[0]] = quoted_names(row[1]);
  }
  EXPECT_EQ(documented, expected);
}

class EverySymbolTest : public StoreTest {};

TEST_F(EverySymbolTest, ChangesTheStoreOnlyWhereTheDocumentSaysSo) {
  // The logger's file is no part of the store, and these two may create by the caller's wish.
  const std::set<std::string> aside = {"init_zrcfg_logger", "zrcfg_logger", "FOPEN", "OPEN"};
  std::set<std::string> changing;
  for (const ChangingCall &call : changing_calls()) {
    changing.insert(symbol_of(call));
  }
  for (const EveryCall &call : every_call()) {
    if (changing.count(call.name) != 0 || aside.count(call.name) != 0) {
      continue;
    }
    StoreTest::SetUp();
    write_every_call_store();
    Things things;

    CallWatch watch;
    call.use(things);
    watch.stop();
    EXPECT_EQ(watch.count(Call::kChange), 0u) << call.name << "\n" << watch.describe();
  }
}

}  // namespace
}  // namespace zrcfg_test

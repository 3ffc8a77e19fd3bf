// Every exported call with every kind of libc call failing in turn, once and for ever: documented
// results, untouched outputs, old or new files, nothing left open.
#include <errno.h>
#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "tests/faults/documented_failures.h"
#include "tests/lifecycle/lifecycle_support.h"
#include "tests/package/every_call.h"
#include "tests/support/libc_hooks.h"

namespace zrcfg_test {
namespace {

constexpr unsigned kMostPlaces = 150;
// The instance that is made where the number 2 cannot be asked for.
constexpr char kOtherInstance[] = "Top/Tab/3";
constexpr char kFilters[] = "config f 'filter5'\n\toption value '^new$'\n";

// Uses that go further than one of each symbol does: into the pattern file, and to a roll-back.
std::vector<EveryCall> further_uses() {
  return {
    ZRCFG_TEST_USE(zrcfg_uci_get_config,
                   EXPECT_EQ(call("/var/regex_file", "filter5", t.text, 256), 0);
                   EXPECT_STREQ(t.text, "^new$");),
        ZRCFG_TEST_CALL(check_param_value_valid_regex, 0, 5, "new"),
        ZRCFG_TEST_CALL(zrcfg_paramvalue_check, 0, "Filtered.", "A", "new", 0),
        ZRCFG_TEST_USE(zrcfg_setsingleparamval_ext_get_old_value_check, char changed = 0;
                       EXPECT_EQ(call("Filtered.", "A", t.value, 0, &changed, t.old_value), 0);),
        ZRCFG_TEST_USE(zrcfg_setmultiparamval_check,
                       EXPECT_EQ(call("Filtered.", &t.value_node, 0), 0);),
        ZRCFG_TEST_USE(zrcfg_setmultiparamval_ext, uint32_t fault = 7; t.value_node.fault = &fault;
                       t.value_node.changed = 1; strcpy(t.value_node.old_value, "before");
                       EXPECT_EQ(call("Filtered.", &t.value_node, 0), 0);),
  };
}

// The logger is apart: it runs programs, and has tests of its own.
std::vector<EveryCall> watched_uses() {
  std::vector<EveryCall> uses;
  for (const std::vector<EveryCall> &part : {every_call(), further_uses()}) {
    for (const EveryCall &use : part) {
      if (strstr(use.name, "_logger") == nullptr && strstr(use.name, "zrcfg_log_") == nullptr &&
          strcmp(use.name, "zrcfg_mut") != 0) {
        uses.push_back(use);
      }
    }
  }
  return uses;
}

// The outputs that are no more as they were before the call.
std::set<std::string> written_outputs(const Things &t) {
  const ParamAttr no_attr = {};
  const ObjAttr no_object = {};
  const std::pair<const char *, bool> all[] = {
      {"text", t.text[0] != '\0'},
      {"old_value", t.old_value[0] != '\0'},
      {"value", strcmp(t.value, "new") != 0},
      {"table", t.table != nullptr},
      {"fd", t.fd != -1},
      {"number", t.number != 77},
      {"word", t.word != 77},
      {"words", t.words[0] != 0 || t.words[1] != 0},
      {"flag", t.flag != 77},
      {"attr", memcmp(&t.attr, &no_attr, sizeof no_attr) != 0},
      {"object", memcmp(&t.object, &no_object, sizeof no_object) != 0},
      {"node", t.value_node.changed != 0 || t.value_node.old_value[0] != '\0'},
      {"index", t.index.wanIndex != 1 || t.index.conIndex != 1 || t.index.conType != 1},
  };
  std::set<std::string> written;
  for (const auto &[name, differs] : all) {
    if (differs) {
      written.insert(name);
    }
  }
  return written;
}

struct Observed {
  std::optional<long long> result;
  std::set<std::string> outputs;
  std::string complaint;  // What the use found wrong.
  unsigned hits = 0;
  bool may_have_changed = false;
  std::unique_ptr<CallWatch> watch;  // For messages.
};

Observed observe(const EveryCall &use, const std::vector<Fault> &faults) {
  Observed seen;
  Things things;
  testing::TestPartResultArray complaints;
  {
    const testing::ScopedFakeTestPartResultReporter reporter(
        testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &complaints);
    seen.watch = std::make_unique<CallWatch>(faults, true);
    use.use(things);
    seen.watch->stop();
    seen.hits = seen.watch->faults_hit();
    seen.may_have_changed = seen.watch->count(Call::kChange) > 0;
  }
  seen.result = things.result;
  seen.outputs = written_outputs(things);
  seen.complaint = complaints.size() > 0 ? complaints.GetTestPartResult(0).message() : "";
  return seen;
}

// Whether an entry is a beginning of the known one, or that with gaps.
bool is_part(const std::string &known, const std::string &entry) {
  return entry.size() <= known.size() &&
         std::equal(entry.begin(), entry.end(), known.begin(),
                    [](char byte, char meant) { return byte == meant || byte == '\0'; });
}

class EveryCallFaultTest : public StoreTest {
 protected:
  static void write_store() {
    write_every_call_store();
    PropertyFile filtered = property_file({"A", "B"}, {"before", "other"});
    filtered.params[0].param_check = 5;
    write_property("Filtered/", filtered);
    write_store_file("regex_file", kFilters);
  }
  void start() {
    StoreTest::SetUp();
    write_store();
  }

  // Entries are old or new; what the call makes or removes may be there in part.
  void expect_known_store() const {
    const Tree found = tree_without_slots();
    for (const auto &[path, entry] : found) {
      const bool other = after_.count(kOtherInstance) == 0 &&
                         path.compare(0, sizeof kOtherInstance - 1, kOtherInstance) == 0;
      const std::string meant = other ? "Top/Tab/2" + path.substr(sizeof kOtherInstance - 1) : path;
      const auto old_entry = before_.find(path);
      const auto new_entry = after_.find(meant);
      const bool is_old = old_entry != before_.end() && entry == old_entry->second;
      const bool is_new = new_entry != after_.end() &&
                          (old_entry == before_.end() ? is_part(new_entry->second, entry)
                                                      : entry == new_entry->second);
      EXPECT_TRUE(is_old || is_new) << path;
    }
    for (const auto &[path, entry] : before_) {
      EXPECT_TRUE(found.count(path) == 1 || after_.count(path) == 0) << path << " is gone";
    }
  }

  // Applies the faults to a use and checks what must hold. Returns whether one was hit.
  bool expect_sound(const EveryCall &use, const std::vector<Fault> &faults, bool is_harmless) {
    const Observed seen = observe(use, faults);
    ++runs_;
    EXPECT_EQ(open_descriptors(), descriptors_);
    if (seen.may_have_changed) {
      expect_known_store();
      start();
    }
    const DocumentedFailure &documented = documented_failure(use.name);
    if (seen.result.has_value() && seen.result != clean_.result) {
      EXPECT_EQ(documented.results.count(*seen.result), 1u) << "result " << *seen.result;
      EXPECT_FALSE(is_harmless);
      for (const std::string &output : seen.outputs) {
        EXPECT_TRUE(documented.outputs.count(output) == 1) << output << " is written";
      }
    }
    if (seen.hits == 0 || is_harmless) {
      EXPECT_EQ(seen.complaint, "");
    }
    if (HasFailure()) {
      ADD_FAILURE() << use.name << "\n" << seen.complaint << "\n" << seen.watch->describe();
    }
    return seen.hits > 0;
  }

  // Puts the fault at the first, second, … call of its kind of every use.
  template <typename MakeFault>
  void sweep(const std::vector<Call> &kinds, bool is_harmless, MakeFault make_fault) {
    for (const EveryCall &use : watched_uses()) {
      start();
      before_ = tree_without_slots();
      descriptors_ = open_descriptors();
      clean_ = observe(use, {});
      after_ = tree_without_slots();
      // A kind that the call does not use as long as all goes well cannot be hit alone.
      std::vector<Call> used;
      std::copy_if(kinds.begin(), kinds.end(), std::back_inserter(used),
                   [&](Call kind) { return clean_.watch->count(kind) > 0; });
      EXPECT_EQ(clean_.complaint, "") << use.name;
      start();
      for (const Call kind : used) {
        bool hit = true;
        for (unsigned nth = 1; hit && !HasFailure(); ++nth) {
          ASSERT_LT(nth, kMostPlaces) << use.name << " never ends";
          SCOPED_TRACE(std::string(call_name(kind)) + " " + std::to_string(nth));
          hit = expect_sound(use, {make_fault(kind, nth)}, is_harmless);
          places_ += hit ? 1 : 0;
        }
      }
    }
    EXPECT_GT(places_, 0u);
    RecordProperty("runs", static_cast<int>(runs_));
    RecordProperty("places", static_cast<int>(places_));
  }

  std::map<int, std::string> descriptors_;
  Tree before_;
  Tree after_;
  Observed clean_;
  unsigned runs_ = 0;
  unsigned places_ = 0;
};

const std::vector<Call> kEveryKind = {
    Call::kOpen,  Call::kClose,   Call::kRead,    Call::kWrite,   Call::kSeek,  Call::kTruncate,
    Call::kLock,  Call::kAccess,  Call::kStat,    Call::kOpenDir, Call::kFopen, Call::kCloseDir,
    Call::kOther, Call::kReadDir, Call::kRegcomp, Call::kAllocate};

// The copy of a template reports nothing of its writes; the counter does.
TEST_F(EveryCallFaultTest, InstanceThatCannotBeCountedIsTakenBack) {
  unsigned refused = 0;
  for (const EveryCall &use : watched_uses()) {
    const std::string name = use.name;
    const bool adds = name == "zrcfg_addobject" || name == "zrcfg_addobject_with_index" ||
                      name == "zrcfg_exportaddobject";
    for (unsigned nth = 1; adds && nth < kMostPlaces; ++nth) {
      start();
      before_ = tree_without_slots();
      const Observed seen = observe(use, {fail_once(Call::kWrite, nth, ENOSPC)});
      if (seen.hits == 0) {
        break;
      }
      if (seen.result == 7) {
        EXPECT_EQ(tree_without_slots(), before_) << name;
        ++refused;
      }
    }
  }
  EXPECT_EQ(refused, 3u);
}

// What can fail because the medium is full or must not be written.
const std::vector<Call> kWritingKinds = {Call::kOpen,     Call::kClose, Call::kWrite,
                                         Call::kTruncate, Call::kFopen, Call::kOther};

struct Error {
  const char *name;
  int number;
  const std::vector<Call> &kinds;
};

void PrintTo(const Error &error, std::ostream *out) {
  *out << error.name;
}

class ErrorTest : public EveryCallFaultTest, public ::testing::WithParamInterface<Error> {};

TEST_P(ErrorTest, GivesDocumentedResultsOnce) {
  sweep(GetParam().kinds, false,
        [](Call kind, unsigned nth) { return fail_once(kind, nth, GetParam().number); });
}

TEST_P(ErrorTest, GivesDocumentedResultsForEver) {
  sweep(GetParam().kinds, false,
        [](Call kind, unsigned nth) { return fail_for_ever(kind, nth, GetParam().number); });
}

INSTANTIATE_TEST_SUITE_P(
    Errors, ErrorTest,
    ::testing::Values(Error{"EIO", EIO, kEveryKind}, Error{"EMFILE", EMFILE, kEveryKind},
                      Error{"ENOMEM", ENOMEM, kEveryKind}, Error{"ENOSPC", ENOSPC, kWritingKinds},
                      Error{"EDQUOT", EDQUOT, kWritingKinds}, Error{"EROFS", EROFS, kWritingKinds}),
    [](const auto &row) { return row.param.name; });

class InterruptionTest : public EveryCallFaultTest,
                         public ::testing::WithParamInterface<unsigned> {};

TEST_P(InterruptionTest, IsHarmlessInTransfers) {
  sweep({Call::kRead, Call::kWrite, Call::kTruncate}, true,
        [](Call kind, unsigned nth) { return fail_times(kind, nth, GetParam(), EINTR); });
}

TEST_P(InterruptionTest, ElsewhereGivesDocumentedResults) {
  sweep(kEveryKind, false,
        [](Call kind, unsigned nth) { return fail_times(kind, nth, GetParam(), EINTR); });
}

INSTANTIATE_TEST_SUITE_P(Times, InterruptionTest, ::testing::Values(1u, 5u));

class ShortTransferTest : public EveryCallFaultTest,
                          public ::testing::WithParamInterface<unsigned> {};

TEST_P(ShortTransferTest, GivesDocumentedResults) {
  for (const size_t limit : {size_t{0}, size_t{100}}) {
    sweep({Call::kRead, Call::kWrite}, false,
          [&](Call kind, unsigned nth) { return cut_short(kind, nth, GetParam(), limit); });
  }
}

INSTANTIATE_TEST_SUITE_P(Times, ShortTransferTest, ::testing::Values(1u, 5u, kForEver));

}  // namespace
}  // namespace zrcfg_test

// What callers see of an interrupted change, and how it is mended.
#ifndef ZRCFG_TESTS_CRASH_STATE_CHECKS_H_
#define ZRCFG_TESTS_CRASH_STATE_CHECKS_H_

#include <string>

#include "tests/crash/changing_calls.h"

namespace zrcfg_test {

// The values and attributes that reading calls give out in that state.
void expect_readers_see(const ChangingCall &call, const std::string &state, const Tree &before,
                        const Tree &after);

// Changes of other values, objects and instances succeed.
void expect_others_unhurt();

// Does what the document says (`mender` is that cell), and looks for the store to be whole.
void expect_mended(const ChangingCall &call, const std::string &state, const std::string &mender,
                   const Tree &after);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_CRASH_STATE_CHECKS_H_

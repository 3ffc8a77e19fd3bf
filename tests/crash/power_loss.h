// What may be on the medium when the power fails in a change of which nothing was synced.
#ifndef ZRCFG_TESTS_CRASH_POWER_LOSS_H_
#define ZRCFG_TESTS_CRASH_POWER_LOSS_H_

#include <vector>

#include "tests/crash/changing_calls.h"

namespace zrcfg_test {

// The trees that may be found, given those in front of each change and at the end. Names reach the
// medium in order, as with a journal; the bytes of files and their sizes do at any time, each page
// on its own: what is missing is the page as it was before, or zeros where there was none, or the
// end of the file.
std::vector<Tree> possible_losses(const ChangingCall &call, const std::vector<Tree> &stages);

// Puts a tree of directories and files in the place of the store.
void write_tree(const Tree &tree);

}  // namespace zrcfg_test

#endif  // ZRCFG_TESTS_CRASH_POWER_LOSS_H_

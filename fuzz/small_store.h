// A small store that every input finds as it was: an object, a table with a template and instances,
// a fixed table, filters.
#ifndef ZRCFG_FUZZ_SMALL_STORE_H_
#define ZRCFG_FUZZ_SMALL_STORE_H_

namespace zrcfg_fuzz {

// Top. has Name, Level and TabNumberOfEntries, Top.Tab. the instances 1 and 2, Top.Fix. the
// instances 1 and 3; each instance has Name, Level and Text.
void reset_small_store();

}  // namespace zrcfg_fuzz

#endif  // ZRCFG_FUZZ_SMALL_STORE_H_

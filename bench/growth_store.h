// Stores of any size, written file by file.
#ifndef ZRCFG_BENCH_GROWTH_STORE_H_
#define ZRCFG_BENCH_GROWTH_STORE_H_

#include <string>

namespace bench {

struct GrowthSize {
  unsigned groups = 1;       // Single objects "Gate.GroupN.", each with a table "Port".
  unsigned instances = 16;   // Of each table.
  unsigned parameters = 12;  // Of each instance.
};

// Replaces what is below /var with a store of that size. Returns its objects, templates left out.
unsigned make_growth_store(const GrowthSize &size);

std::string growth_table(unsigned group);  // "Gate.Group1.Port."
std::string growth_parameter(unsigned i);

}  // namespace bench

#endif  // ZRCFG_BENCH_GROWTH_STORE_H_

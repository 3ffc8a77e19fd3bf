// Which directories a store gets: headers, templates and instances, in the order of their making.
#ifndef ZRCFG_TOOLS_MKSTORE_STORE_PLAN_H_
#define ZRCFG_TOOLS_MKSTORE_STORE_PLAN_H_

#include <string>
#include <vector>

#include "tools/mkstore/model.h"
#include "tools/mkstore/settings.h"

namespace zrcfg::mkstore {

// A value that the plan decides: how many instances a table has, by position of its counter.
using Counters = std::map<size_t, size_t>;

// One directory of the store. Parents stand before their children.
struct Placement {
  Address address;
  bool table_header = false;
  std::string url;
  Counters counters;
};

// Expands the model. Throws BuildError when the files ask for what cannot be.
std::vector<Placement> plan_store(const Model &model, const Settings &settings);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_STORE_PLAN_H_

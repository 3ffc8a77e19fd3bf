// Which directories a store gets: headers, templates and instances, in the order of their making.
#ifndef ZRCFG_TOOLS_MKSTORE_STORE_PLAN_H_
#define ZRCFG_TOOLS_MKSTORE_STORE_PLAN_H_

#include <map>
#include <set>
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

// By table header, the instances of tables that an old store has. They take the place of those that
// the model and the instances file ask for.
using KeptInstances = std::map<Address, std::set<uint8_t>>;

// Expands the model. Throws BuildError when the files ask for what cannot be.
std::vector<Placement> plan_store(const Model &model, const Settings &settings);

// The same with the tables of an old store. Lines of the values and attributes files about
// instances that it does not have are passed over.
std::vector<Placement> plan_upgraded_store(const Model &model, const Settings &settings,
                                           const KeptInstances &kept);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_STORE_PLAN_H_

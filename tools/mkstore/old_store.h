// The store that an upgrade starts from: what it has of the new model's objects.
#ifndef ZRCFG_TOOLS_MKSTORE_OLD_STORE_H_
#define ZRCFG_TOOLS_MKSTORE_OLD_STORE_H_

#include <set>
#include <string>

#include "tools/mkstore/model.h"
#include "tools/mkstore/settings.h"
#include "tools/mkstore/store_plan.h"
#include "tools/mkstore/upgrade_report.h"

namespace zrcfg::mkstore {

// An old store's root directory, which is only read.
struct OldStore {
  // Throws BuildError when there is no store, or when OUTDIR lies in it or around it.
  OldStore(const std::string &path, const std::string &output);
  ~OldStore();
  OldStore(const OldStore &) = delete;
  OldStore &operator=(const OldStore &) = delete;

  std::string path;
  int root = -1;
};

// What of the new store has a counterpart in the old one.
struct KeptObjects {
  KeptInstances instances;
  std::set<Address> objects;
  std::set<Address> with_numbers;  // Single objects with instances below: former tables, likely.
};

// Compares the old store's directories with the model. Reports those that have no place in it, and
// the instances that the model demands in addition. Templates always are the new model's. Throws
// BuildError when they have nothing in common.
KeptObjects find_kept_objects(const OldStore &store, const Model &model, const Settings &settings,
                              UpgradeReport &upgrade);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_OLD_STORE_H_

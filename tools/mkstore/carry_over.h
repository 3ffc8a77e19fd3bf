// Puts the values and attributes of an old object into its new content.
#ifndef ZRCFG_TOOLS_MKSTORE_CARRY_OVER_H_
#define ZRCFG_TOOLS_MKSTORE_CARRY_OVER_H_

#include "tools/mkstore/filter_table.h"
#include "tools/mkstore/old_store.h"
#include "tools/mkstore/property_writer.h"

namespace zrcfg::mkstore {

// What stays the same for all objects of an upgrade.
struct Upgrade {
  const OldStore &store;
  const KeptObjects &kept;
  const Model &model;
  const FilterTable &filters;
  UpgradeReport &report;
};

// Reads the old file of the placement, if there is one, and lets its values and attributes replace
// the new ones. What cannot be taken over is reported and stays as the new model has it.
void carry_over(Upgrade &upgrade, const Placement &placement, ObjectContent &content);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_CARRY_OVER_H_

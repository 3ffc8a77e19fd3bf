// What leads from the store to a snapshot, step by step.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_RESTORE_STEPS_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_RESTORE_STEPS_H_

#include "tools/zrcfg/snapshot/object_set.h"

namespace zrcfg_tool {

enum class StepKind {
  kWrite,    // An object that both have.
  kCreate,   // An instance that the store lacks, with all below it.
  kRemove,   // An instance that the snapshot lacks, with all below it.
  kForeign,  // An object of one of them that is no instance: the models differ, or it was lost.
};

// The objects `first` to `end` of a set.
struct ObjectRange {
  size_t first;
  size_t end;

  bool empty() const { return first == end; }
};

struct RestoreStep {
  StepKind kind;
  ObjectUrl url;
  ObjectRange wanted;  // In the snapshot.
  ObjectRange now;     // In the store.
};

// Yields the steps in the order of the tree.
class RestoreSteps {
 public:
  RestoreSteps(const ObjectSet &wanted, const ObjectSet &now, const char *scope)
      : wanted_(wanted), now_(now), scope_(scope) {}

  bool next(RestoreStep &step);

 private:
  void take_instance(RestoreStep &step);

  const ObjectSet &wanted_;
  const ObjectSet &now_;
  const char *scope_;
  size_t wanted_at_ = 0;
  size_t now_at_ = 0;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_RESTORE_STEPS_H_

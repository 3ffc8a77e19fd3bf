// Bringing a store to the state of a snapshot.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_RESTORE_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_RESTORE_H_

#include "tools/zrcfg/options.h"
#include "tools/zrcfg/snapshot/restore_steps.h"
#include "tools/zrcfg/snapshot/store_copy.h"
#include "tools/zrcfg/store_view.h"

namespace zrcfg_tool {

class Restore {
 public:
  explicit Restore(const Options &options) : options_(options) {}

  // Reads a snapshot file and checks all of it.
  bool load(const char *name);
  // Reads the store and checks that it is of the snapshot's model; reports each difference. Nothing
  // is changed. Both return false after a report.
  bool check();
  // Prints what would be changed.
  void print_changes() const;
  // Makes the changes and prints how many; reports what could not be done. Whether all was.
  bool run();

 private:
  struct Counts {
    size_t written = 0;
    size_t equal = 0;
    size_t created = 0;
    size_t removed = 0;
    size_t failed = 0;
  };

  bool has_any_root() const;
  bool has_lost_file(const RestoreStep &step) const;
  bool check_object(const RestoreStep &step) const;
  bool check_instance(const RestoreStep &step);
  bool check_copied_object(size_t wanted);
  bool write_object(const RestoreStep &step);
  bool write_lost_file(const RestoreStep &step);
  void remove_leftovers() const;
  bool set_outer_counter() const;
  RestoreSteps steps() const { return {wanted_, now_.objects(), scope_.text}; }

  const Options &options_;
  ObjectUrl scope_ = {};
  ObjectSet wanted_;
  StoreRoot root_;
  StoreCopy now_;
  StoreView view_;
  Counts counts_;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_RESTORE_H_

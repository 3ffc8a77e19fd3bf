// A copy of a store's objects, each read under its own lock.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_STORE_COPY_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_STORE_COPY_H_

#include "tools/zrcfg/snapshot/object_file.h"
#include "tools/zrcfg/snapshot/object_set.h"

namespace zrcfg_tool {

// What is asked of the property files that are copied.
enum class Accepted {
  kComplete,    // Well-formed ones, and no object without one.
  kWellFormed,  // Well-formed ones.
  kAny,
};

// How a copy fits together.
enum class Moment {
  kOne,      // Between the last two passes nothing had changed: it is one state of the store.
  kSeveral,  // The objects stayed the same, but the values of some kept changing.
};

class StoreCopy {
 public:
  // Reads the object `scope` ("" for all) and those below it, over and over until two passes find
  // the same, but no more than a few times. Reports and returns false when something cannot be read
  // or the objects themselves keep changing. A directory of the root without a property file is
  // looked into only when `known` has it.
  bool read(const StoreRoot &root, const char *scope, int timeout, Accepted accepted,
            const ObjectSet *known = nullptr);

  const ObjectSet &objects() const { return passes_[last_]; }
  Moment moment() const { return moment_; }
  // Paths below the root of what can be no object since its name has a dot, each terminated.
  const Bytes &dotted() const { return dotted_; }

 private:
  bool read_pass(const StoreRoot &root, const char *scope, int timeout, Accepted accepted,
                 const ObjectSet *known, ObjectSet &objects);

  ObjectSet passes_[2];
  int last_ = 0;
  Moment moment_ = Moment::kOne;
  Bytes dotted_;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_STORE_COPY_H_

// The store as a configuration text would leave it, before anything is changed.
#ifndef ZRCFG_TOOLS_ZRCFG_STORE_VIEW_H_
#define ZRCFG_TOOLS_ZRCFG_STORE_VIEW_H_

#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/text_set.h"
#include "zrcfg.h"

namespace zrcfg_tool {

// What a URL comes to in the view.
enum class ViewResult {
  kThere,    // It exists, or will as a copy.
  kMissing,  // It does not, or has been deleted.
  kHeld,     // It lies in an instance whose creation the mode holds back.
};

// Instances that are created stand for the objects that they are copied from.
class StoreView {
 public:
  // Finds the object of the real store that has, or will be copied to, what is at `url`.
  ViewResult resolve(const char *url, ObjectUrl &real) const;

  // The same without looking whether that object exists.
  ViewResult locate(const char *url, ObjectUrl &real) const;

  // The instance that new instances of a table of the real store are copied from: the template, or
  // in a fixed table without one the lowest instance that is not deleted; -1 for none.
  int source_instance(const char *table_url) const;

  // Each false without memory, which is reported.
  bool create_instance(const char *url);
  bool delete_instance(const char *url);
  // Deletes one that a created instance has brought along from its source.
  bool delete_copy(const char *url);
  bool hold_instance(const char *url);

 private:
  bool append_source(ObjectUrl &real) const;

  TextSet created_;
  TextSet deleted_;  // Of the real store, so before anything is copied.
  TextSet deleted_copies_;
  TextSet held_;
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_STORE_VIEW_H_

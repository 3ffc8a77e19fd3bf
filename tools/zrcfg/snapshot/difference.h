// What differs between two states of an object, and how it is printed.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_DIFFERENCE_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_DIFFERENCE_H_

#include "tools/zrcfg/snapshot/property_view.h"

namespace zrcfg_tool {

enum class Change {
  kChanged,    // The value of a parameter.
  kAttribute,  // Of a parameter, or of an object.
  kAdded,      // An object, or a parameter with its value.
  kRemoved,    // Likewise.
  kOrder,      // The parameters of an object stand in another order.
};

struct Difference {
  Change change;
  const char *url;        // Of the object.
  const char *parameter;  // Its name; null for the object itself.
  const char *attribute;  // For kAttribute.
  const char *before;     // The old text; null where there is none.
  const char *after;      // The new one; likewise.
};

// Takes differences one by one; false ends the comparison.
struct DifferenceSink {
  bool (*take)(const Difference &difference, void *context);
  void *context;

  bool operator()(const Difference &difference) const { return take(difference, context); }
};

// What is looked at: of a configuration text there are values only.
enum class Compared { kAll, kValues };

// Hands out what leads from one state of the object to the other: attributes of the object,
// parameters that are gone, then the others in their new order. Reserved bytes do not count. Each
// call returns false when the sink did.
bool compare_objects(const char *url, const PropertyView &before, const PropertyView &after,
                     Compared compared, const DifferenceSink &sink);
// An object, then its parameters.
bool tell_added(const char *url, const PropertyView &object, const DifferenceSink &sink);
bool tell_removed(const char *url, const PropertyView &object, const DifferenceSink &sink);

// Prints a difference as a line of text, or as a JSON object on a line.
void print_difference(const Difference &difference, bool json);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_DIFFERENCE_H_

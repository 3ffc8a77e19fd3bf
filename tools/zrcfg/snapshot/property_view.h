// A well-formed property file that lies in memory, through core's own definition of its bytes.
#ifndef ZRCFG_TOOLS_ZRCFG_SNAPSHOT_PROPERTY_VIEW_H_
#define ZRCFG_TOOLS_ZRCFG_SNAPSHOT_PROPERTY_VIEW_H_

#include <stddef.h>
#include <stdint.h>

#include "core/property_file.h"
#include "core/value_section.h"

namespace zrcfg_tool {

// Points into the bytes that it was made from.
struct PropertyView {
  const zrcfg::ObjectHeader *header = nullptr;
  const zrcfg::ParamRecord *records = nullptr;
  uint32_t count = 0;
  zrcfg::ValueSection section = {};
};

// Takes a file's bytes apart, behind which a byte has to follow. Returns what is wrong with the
// file, in words; null when it is well formed.
const char *view_property_file(char *bytes, size_t size, PropertyView &view);

// The same for header and records only, whatever stands behind them. Whether they are there.
bool view_structure(const char *bytes, size_t size, PropertyView &view);

// Whether two objects are of one model: the same parameters in the same order, and the same fields
// of the header that no call of the library sets.
bool same_model(const PropertyView &a, const PropertyView &b);

// A name or a text of a fixed field, terminated in any case.
struct FieldText {
  char text[zrcfg::kNameSize + 1];

  template <size_t kSize>
  explicit FieldText(const char (&field)[kSize]) {
    static_assert(kSize < sizeof text);
    copy(field, kSize);
  }

 private:
  void copy(const char *field, size_t size);
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_SNAPSHOT_PROPERTY_VIEW_H_

// The value section of an image that is already open: read anew, and written back.
#ifndef ZRCFG_CORE_FRESH_SECTION_H_
#define ZRCFG_CORE_FRESH_SECTION_H_

#include <stdint.h>

#include "core/object_image.h"
#include "core/value_section.h"

namespace zrcfg {

// The property file of an image, opened and read anew for a work step that is called on its own.
struct FreshSection {
  PropertyFd file;
  LoadedObject loaded;

  FreshSection() = default;
  ~FreshSection();
  FreshSection(const FreshSection &) = delete;
  FreshSection &operator=(const FreshSection &) = delete;

  // 0; 7 the file cannot be opened; 10 it is malformed; 15 no memory.
  uint32_t load(const ObjectImage &image, Access access);
};

// Writes an assembled section in the place of the old one. `file` is opened anew when it does not
// permit writing. 0; 7 the file cannot be opened or written; 10 it has more than 255 records, of
// which the section would hold too few.
uint32_t store_section(const ObjectImage &image, PropertyFd &file, const ValueSection &old_section,
                       const SectionBuilder &section);

}  // namespace zrcfg

#endif  // ZRCFG_CORE_FRESH_SECTION_H_

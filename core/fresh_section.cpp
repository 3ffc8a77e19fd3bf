// The value section of an image that is already open: read anew, and written back.
#include "core/fresh_section.h"

#include "core/property_file.h"
#include "core/trace.h"

namespace zrcfg {
namespace {

struct PropertyPath {
  char text[kFilePathSize];

  explicit PropertyPath(const ObjectImage &image) {
    // Fits: the image was opened through the same join.
    (void)join_path(text, sizeof text, image_dir_path(image), kPropertyFileName);
  }
};

uint32_t unable_to_open(const PropertyPath &path) {
  ZRCFG_TRACE("unable to open %s file\n", path.text);
  return ZRCFG_E_FILE;
}

}  // namespace

FreshSection::~FreshSection() {
  file.close();
  free_image(loaded.image);
}

uint32_t FreshSection::load(const ObjectImage &image, Access access) {
  const PropertyPath path(image);
  if (!file.open(path.text, access)) {
    return unable_to_open(path);
  }
  return load_object(file.fd, "", loaded);
}

uint32_t store_section(const ObjectImage &image, PropertyFd &file, const ValueSection &old_section,
                       const SectionBuilder &section) {
  if (stored_record_count(image) > kMaxServedRecords) {
    ZRCFG_TRACE("more than %u records, value not set!\n", kMaxServedRecords);
    return ZRCFG_E_ARGUMENT;
  }
  if (!file.writable) {
    const PropertyPath path(image);
    file.close();
    if (!file.open(path.text, Access::kWrite) || !file.writable) {
      return unable_to_open(path);
    }
  }
  const bool written = rewrite_section(file.fd, old_section, section.text(), section.size());
  return written ? ZRCFG_OK : ZRCFG_E_FILE;
}

}  // namespace zrcfg

// Reading and writing the value of one parameter by its name.
#include "core/single_value.h"

#include <string.h>

#include "core/export.h"
#include "core/fresh_section.h"
#include "core/property_file.h"
#include "core/trace.h"
#include "core/value_section.h"

namespace zrcfg {
namespace {

// The new value section while it is assembled, and what the walk found out.
struct Assembly {
  SectionBuilder section;
  bool found;
  bool changed;
};

// Notes the stored line of the wanted record. False when it equals the new value.
bool differs_from_stored(const ValueWrite &write, const ValueLine &line) {
  const TerminatedLine terminated(line);
  ZRCFG_TRACE("Find the param! param name=%s! pRead=%s value_struct=%s\n", write.name, line.text,
              write.value);
  if (write.old_value != nullptr) {
    strncpy(write.old_value, line.text, kMaxValueLength);  // Pads, and ends without terminator.
  }
  if (!line.equals(write.value, strlen(write.value))) {
    return true;
  }
  ZRCFG_TRACE("Same value,don't write!\n");
  return false;
}

// Walks records and lines in step and builds the section that holds the new value.
uint32_t assemble(ObjectImage &image, const ValueSection &old_section, const ValueWrite &write,
                  Assembly &assembly) {
  if (!assembly.section.ok()) {
    ZRCFG_TRACE("pWriteBuf malloc failed!\n");
    return ZRCFG_E_MEMORY;
  }
  ValueLines lines(old_section);
  ValueLine line = lines.next();
  const RecordRange served = records(image);
  const bool has_record = stored_record_count(image) > 0;
  if (!has_record || !line.exists()) {
    ZRCFG_TRACE("param=%x pRead=%x err!\n", trace_address(has_record ? served.begin() : nullptr),
                trace_address(line.text));
    return ZRCFG_E_ARGUMENT;
  }
  const size_t name_length = strlen(write.name);
  const size_t value_length = strlen(write.value);
  uint32_t left = stored_record_count(image);
  for (const ParamRecord &record : served) {
    bool fits;
    if (has_name(record, write.name, name_length)) {
      assembly.found = true;
      if (!differs_from_stored(write, line)) {
        assembly.changed = false;
        return ZRCFG_OK;
      }
      fits = assembly.section.append(write.value, value_length);
    } else {
      fits = assembly.section.append(line.text, line.length);
    }
    if (!fits) {
      return ZRCFG_E_MEMORY;
    }
    line = lines.next();
    --left;
    if (left == 0 || !line.exists()) {
      ZRCFG_TRACE("read finish!\n");
      break;
    }
  }
  return assembly.found ? ZRCFG_OK : ZRCFG_E_NO_PARAMETER;
}

void report_changed(const ValueWrite &write, bool changed) {
  if (write.changed != nullptr) {
    *write.changed = changed ? 1 : 0;
  }
}

// The write on a section that was just read from `file`.
uint32_t write_into(ObjectImage &image, PropertyFd &file, const ValueSection &old_section,
                    const ValueWrite &write) {
  report_changed(write, true);
  // The old lines, one of them perhaps without its line feed, and the new value's: a damaged file
  // may have the name in each of its records.
  const size_t new_line = strlen(write.value) + 2;
  const size_t needed = old_section.size + 1 + image.header.param_num * new_line;
  Assembly assembly = {SectionBuilder(image.header.param_num, needed), false, true};
  uint32_t result = assemble(image, old_section, write, assembly);
  if (result == ZRCFG_OK && assembly.changed) {
    result = store_section(image, file, old_section, assembly.section);
  }
  report_changed(write, assembly.changed);
  return result;
}

uint32_t read_from(ObjectImage &image, const ValueSection &section, const char *name, char *value) {
  const size_t name_length = strlen(name);
  ValueLines lines(section);
  int i = 0;
  for (const ParamRecord &record : records(image)) {
    const ValueLine line = lines.next();
    if (!line.exists()) {
      ZRCFG_TRACE("i=%d err!\n", i);
      return ZRCFG_E_ARGUMENT;
    }
    if (has_name(record, name, name_length)) {
      ZRCFG_TRACE("Find the param!param name=%s!\n", name);
      line.copy_value(value);
      return ZRCFG_OK;
    }
    ++i;
  }
  return ZRCFG_OK;
}

// Reads the section of an image anew, for a work step that is called on its own.
uint32_t load_fresh(FreshSection &fresh, const ObjectImage &image, Access access) {
  const uint32_t result = fresh.load(image, access);
  if (result == ZRCFG_E_MEMORY) {
    ZRCFG_TRACE("pBuf malloc failed!\n");
    return ZRCFG_E_ARGUMENT;
  }
  return result;
}

uint32_t write_on_its_own(ZrcfgObject *object, const ValueWrite &write) {
  ObjectImage &image = *static_cast<ObjectImage *>(object);
  report_changed(write, true);
  uint32_t result = check_storable(write);
  if (result != ZRCFG_OK) {
    return result;
  }
  FreshSection fresh;
  result = load_fresh(fresh, image, Access::kWrite);
  if (result != ZRCFG_OK) {
    return result;
  }
  return write_into(image, fresh.file, fresh.loaded.section, write);
}

}  // namespace

uint32_t read_value(OpenObject &object, const char *name, char *value) {
  return read_from(*object.loaded.image, object.loaded.section, name, value);
}

uint32_t write_value(OpenObject &object, const ValueWrite &write) {
  return write_into(*object.loaded.image, object.file, object.loaded.section, write);
}

uint32_t check_storable(const ValueWrite &write) {
  const size_t length = strlen(write.value);
  if (length > kMaxValueLength) {
    return ZRCFG_E_MEMORY;
  }
  return is_single_line(write.name, write.value, length) ? ZRCFG_OK : ZRCFG_E_FILE;
}

bool value_length_ok(const char *name, const char *value) {
  const size_t length = strlen(value);
  if (length <= kMaxValueLength) {
    return true;
  }
  ZRCFG_TRACE("param(%s) value lenth(%d) is out of range, not set to mem!\n", name,
              static_cast<int>(length));
  return false;
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT uint32_t getSingleParamValueByParamName(ZrcfgObject *image, const char *name,
                                                     char *value) {
  if (image == nullptr || name == nullptr || value == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  ObjectImage &object = *static_cast<ObjectImage *>(image);
  FreshSection fresh;
  const uint32_t result = load_fresh(fresh, object, Access::kRead);
  return result == ZRCFG_OK ? read_from(object, fresh.loaded.section, name, value) : result;
}

ZRCFG_EXPORT uint32_t setSingleParamValueByParamName(ZrcfgObject *image, const char *name,
                                                     const char *value, uint8_t *changed) {
  if (image == nullptr || name == nullptr || value == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  return write_on_its_own(image, {name, value, changed, nullptr});
}

ZRCFG_EXPORT uint32_t set_single_param_value_by_param_name(ZrcfgObject *image, const char *name,
                                                           const char *value, uint8_t *changed,
                                                           char *oldValue) {
  if (image == nullptr || name == nullptr || value == nullptr || oldValue == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  return write_on_its_own(image, {name, value, changed, oldValue});
}

}  // extern "C"

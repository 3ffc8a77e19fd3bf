// The value table: all values of an object in slots of 256 bytes, on which the bulk calls work.
#include "values/value_table.h"

#include <stdlib.h>
#include <string.h>

#include "core/export.h"
#include "core/fresh_section.h"
#include "core/refuse_null.h"
#include "core/trace.h"
#include "core/value_section.h"

namespace zrcfg {
namespace {

void fill_slot(uint32_t i, const ValueLine &line, char *slot) {
  const TerminatedLine terminated(line);
  ZRCFG_TRACE("i=%d,ptr=%s\n", static_cast<int>(i), line.text);
  line.copy_value(slot);
}

size_t table_size(const ObjectImage &image) {
  const uint32_t count = image.header.param_num;
  return (count > 0 ? count : 1) * kValueSlotSize;
}

// Fills a table that was just allocated and hands it over in `*table`, or frees it. What lies
// behind the texts stays as it is.
uint32_t fill_table(const ObjectImage &image, const ValueSection &section, char *slots,
                    char **table) {
  const uint32_t count = image.header.param_num;
  if (slots == nullptr) {
    ZRCFG_TRACE("pValue is NULL\n");
    return ZRCFG_E_MEMORY;
  }
  ValueLines lines(section);
  ValueLine line = lines.next();
  if (!line.exists()) {
    free(slots);
    ZRCFG_TRACE("pValue is error\n");
    return ZRCFG_E_FILE;
  }
  for (uint32_t i = 0; i < count; ++i) {
    char *const slot = slots + i * kValueSlotSize;
    if (line.exists()) {
      fill_slot(i, line, slot);
      line = lines.next();
    } else {
      slot[0] = '\0';
    }
  }
  *table = slots;
  return ZRCFG_OK;
}

// The texts of a table measured: how long each is, and what they take as lines.
struct TableMeasure {
  uint8_t lengths[kMaxServedRecords];
  size_t section_size = 0;

  TableMeasure(const char *table, uint32_t count) {
    for (uint32_t i = 0; i < count; ++i) {
      const size_t length = strnlen(table + i * kValueSlotSize, kMaxValueLength);
      lengths[i] = static_cast<uint8_t>(length);
      section_size += (length > 0 ? length : 1) + 1;
    }
  }
};

// Assembles the section: a line for every record, whatever the table holds.
uint32_t assemble(ObjectImage &image, const char *table, const TableMeasure &measure,
                  SectionBuilder &section) {
  if (!section.ok()) {
    ZRCFG_TRACE("pWriteBuf malloc failed\n");
    return ZRCFG_E_MEMORY;
  }
  uint32_t i = 0;
  for (const ParamRecord &record : records(image)) {
    const char *const slot = table + i * kValueSlotSize;
    // NOLINTNEXTLINE(clang-analyzer-core.uninitialized.Assign): measured for as many records.
    const size_t length = measure.lengths[i];
    if (memchr(slot, '\n', length) != nullptr) {
      (void)is_single_line(FieldName(record.name).text, slot, length);  // Logs it.
      return ZRCFG_E_FILE;
    }
    if (!section.append(slot, length)) {
      return ZRCFG_E_MEMORY;
    }
    ++i;
  }
  return ZRCFG_OK;
}

uint32_t store_table(ObjectImage &image, PropertyFd &file, const ValueSection &old_section,
                     const char *table) {
  const TableMeasure measure(table, image.header.param_num);
  SectionBuilder section(image.header.param_num, measure.section_size);
  const uint32_t result = assemble(image, table, measure, section);
  return result == ZRCFG_OK ? store_section(image, file, old_section, section) : result;
}

}  // namespace

uint32_t build_value_table(OpenObject &object, char **table) {
  const ObjectImage &image = *object.loaded.image;
  char *const slots = static_cast<char *>(malloc(table_size(image)));
  return fill_table(image, object.loaded.section, slots, table);
}

uint32_t store_value_table(OpenObject &object, const char *table) {
  return store_table(*object.loaded.image, object.file, object.loaded.section, table);
}

}  // namespace zrcfg

using namespace zrcfg;

extern "C" {

ZRCFG_EXPORT int constructParamValues(ZrcfgObject *image, char **pValue) {
  if (image == nullptr || pValue == nullptr) {
    return ZRCFG_E_ARGUMENT;
  }
  const ObjectImage &object = *static_cast<ObjectImage *>(image);
  FreshSection fresh;
  uint32_t result = fresh.load(object, Access::kRead);
  if (result == ZRCFG_E_MEMORY) {
    ZRCFG_TRACE("pBuf is NULL\n");
  }
  if (result == ZRCFG_OK) {
    char *const slots = static_cast<char *>(calloc(1, table_size(object)));
    result = fill_table(object, fresh.loaded.section, slots, pValue);
  }
  return static_cast<int>(result);
}

ZRCFG_EXPORT int setParamValuesToMem(ZrcfgObject *image, char *pValue) {
  if (image == nullptr || pValue == nullptr) {
    return static_cast<int>(refuse_null(NullText::kPlain));
  }
  ObjectImage &object = *static_cast<ObjectImage *>(image);
  FreshSection fresh;
  uint32_t result = fresh.load(object, Access::kWrite);
  if (result == ZRCFG_E_MEMORY) {
    ZRCFG_TRACE("pWriteBuf malloc failed\n");
  }
  if (result == ZRCFG_OK) {
    result = store_table(object, fresh.file, fresh.loaded.section, pValue);
  }
  return static_cast<int>(result);
}

}  // extern "C"

// What differs between two states of an object.
#include "tools/zrcfg/snapshot/difference.h"

#include <inttypes.h>
#include <stdio.h>
#include <string.h>

namespace zrcfg_tool {
namespace {

using zrcfg::BitField;
using zrcfg::ObjectHeader;
using zrcfg::ParamRecord;

struct NamedField {
  const char *name;
  BitField bits;
};

// Named as the commands attr and object name them.
namespace of_header {
using namespace zrcfg::header_field;
constexpr NamedField kFields[] = {
    {"flag0", kFlag0},   {"hide", kHide},
    {"rw", kRw},         {"level3", kLevel3},
    {"key", kKey},       {"max_instance", kMaxInstance},
    {"level7", kLevel7}, {"device_type", kDeviceType},
    {"flag8", kFlag8},   {"flag9", kFlag9},
    {"flag11", kFlag11},
};
}  // namespace of_header

namespace of_record {
using namespace zrcfg::record_field;
constexpr NamedField kFields[] = {
    {"flash_rw", kFlashRw},
    {"hide", kHide},
    {"rw", kRw},
    {"noti", kNoti},
    {"namechange", kNamechange},
    {"noti_rw", kNotiRw},
    {"inform_dbus", kInformDbus},
    {"key", kKey},
    {"encryt", kEncryt},
    {"device_type", kDeviceType},
    {"type", kType},
    {"flash_encryt", kFlashEncryt},
    {"inform_tr069", kInformTr069},
};
}  // namespace of_record

// One comparison: the object and where its differences go.
struct Comparison {
  const char *url;
  const DifferenceSink &sink;

  bool attribute(const char *parameter, const char *name, const char *before,
                 const char *after) const {
    return strcmp(before, after) == 0 ||
           sink({Change::kAttribute, url, parameter, name, before, after});
  }

  bool number(const char *parameter, const char *name, uint32_t before, uint32_t after) const {
    char texts[2][16];
    (void)snprintf(texts[0], sizeof texts[0], "%" PRIu32, before);  // Fits.
    (void)snprintf(texts[1], sizeof texts[1], "%" PRIu32, after);
    return attribute(parameter, name, texts[0], texts[1]);
  }

  template <typename Struct, size_t kCount>
  bool fields(const char *parameter, const NamedField (&fields)[kCount], const Struct &before,
              const Struct &after) const {
    for (const NamedField &field : fields) {
      if (!number(parameter, field.name, field.bits.get(before), field.bits.get(after))) {
        return false;
      }
    }
    return true;
  }
};

bool compare_headers(const Comparison &comparison, const ObjectHeader &before,
                     const ObjectHeader &after) {
  return comparison.fields(nullptr, of_header::kFields, before, after) &&
         comparison.attribute(nullptr, "pnoe", FieldText(before.pnoe).text,
                              FieldText(after.pnoe).text) &&
         comparison.attribute(nullptr, "devfunc", FieldText(before.devfunc).text,
                              FieldText(after.devfunc).text) &&
         comparison.attribute(nullptr, "extra_text", FieldText(before.extra_text).text,
                              FieldText(after.extra_text).text);
}

bool compare_records(const Comparison &comparison, const char *name, const ParamRecord &before,
                     const ParamRecord &after) {
  return comparison.fields(name, of_record::kFields, before, after) &&
         comparison.attribute(name, "accesslist", FieldText(before.accesslist).text,
                              FieldText(after.accesslist).text) &&
         comparison.attribute(name, "area", FieldText(before.area).text,
                              FieldText(after.area).text) &&
         comparison.number(name, "param_check", before.param_check.get(), after.param_check.get());
}

// The values of a well-formed object by the position of their records.
class Values {
 public:
  // cppcheck-suppress uninitMemberVar ; a buffer, filled before each use
  explicit Values(const PropertyView &view) {
    zrcfg::ValueLines lines(view.section);
    for (uint32_t i = 0; i < view.count; ++i) {
      lines_[i] = lines.next();
    }
  }
  // Valid until the next call.
  const char *at(uint32_t position) {
    lines_[position].copy_value(text_);
    return text_;
  }

 private:
  zrcfg::ValueLine lines_[zrcfg::kMaxServedRecords];
  char text_[zrcfg::kValueSlotSize];
};

constexpr uint32_t kNone = UINT32_MAX;

// The record of that name, looked for from where it stands in an equal object.
uint32_t find_record(const PropertyView &view, const ParamRecord &like, uint32_t expected) {
  if (expected < view.count &&
      strncmp(view.records[expected].name, like.name, sizeof like.name) == 0) {
    return expected;
  }
  for (uint32_t i = 0; i < view.count; ++i) {
    if (strncmp(view.records[i].name, like.name, sizeof like.name) == 0) {
      return i;
    }
  }
  return kNone;
}

bool tell_missing(const Comparison &comparison, const PropertyView &before,
                  const PropertyView &after) {
  Values values(before);
  for (uint32_t i = 0; i < before.count; ++i) {
    const FieldText name(before.records[i].name);
    if (find_record(after, before.records[i], i) == kNone &&
        !comparison.sink(
            {Change::kRemoved, comparison.url, name.text, nullptr, values.at(i), nullptr})) {
      return false;
    }
  }
  return true;
}

bool compare_parameters(const Comparison &comparison, const PropertyView &before,
                        const PropertyView &after, Compared compared) {
  Values old_values(before);
  Values new_values(after);
  uint32_t last = 0;
  bool in_order = true;
  for (uint32_t i = 0; i < after.count; ++i) {
    const FieldText name(after.records[i].name);
    const char *const value = new_values.at(i);
    const uint32_t at = find_record(before, after.records[i], i);
    if (at == kNone) {
      if (!comparison.sink({Change::kAdded, comparison.url, name.text, nullptr, nullptr, value})) {
        return false;
      }
      continue;
    }
    in_order = in_order && at >= last;
    last = at;
    const char *const old_value = old_values.at(at);
    if (strcmp(old_value, value) != 0 && !comparison.sink({Change::kChanged, comparison.url,
                                                           name.text, nullptr, old_value, value})) {
      return false;
    }
    if (compared == Compared::kAll &&
        !compare_records(comparison, name.text, before.records[at], after.records[i])) {
      return false;
    }
  }
  return in_order || compared == Compared::kValues ||
         comparison.sink({Change::kOrder, comparison.url, nullptr, nullptr, nullptr, nullptr});
}

}  // namespace

bool compare_objects(const char *url, const PropertyView &before, const PropertyView &after,
                     Compared compared, const DifferenceSink &sink) {
  const Comparison comparison = {url, sink};
  return (compared == Compared::kValues ||
          compare_headers(comparison, *before.header, *after.header)) &&
         tell_missing(comparison, before, after) &&
         compare_parameters(comparison, before, after, compared);
}

bool tell_added(const char *url, const PropertyView &object, const DifferenceSink &sink) {
  if (!sink({Change::kAdded, url, nullptr, nullptr, nullptr, nullptr})) {
    return false;
  }
  Values values(object);
  for (uint32_t i = 0; i < object.count; ++i) {
    if (!sink({Change::kAdded, url, FieldText(object.records[i].name).text, nullptr, nullptr,
               values.at(i)})) {
      return false;
    }
  }
  return true;
}

bool tell_removed(const char *url, const PropertyView &object, const DifferenceSink &sink) {
  if (!sink({Change::kRemoved, url, nullptr, nullptr, nullptr, nullptr})) {
    return false;
  }
  Values values(object);
  for (uint32_t i = 0; i < object.count; ++i) {
    if (!sink({Change::kRemoved, url, FieldText(object.records[i].name).text, nullptr, values.at(i),
               nullptr})) {
      return false;
    }
  }
  return true;
}

}  // namespace zrcfg_tool

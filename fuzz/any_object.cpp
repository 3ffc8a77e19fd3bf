// All calls on one property file of any bytes, with the rules that each of them has to keep.
#include "fuzz/any_object.h"

#include <string.h>

#include "core/property_file.h"
#include "fuzz/any_instances.h"
#include "fuzz/check.h"
#include "fuzz/store_file.h"
#include "zrcfg.h"

namespace zrcfg_fuzz {
namespace {

constexpr char kUrl[] = "Top.Any.";
constexpr char kDir[] = "Top/Any/";

bool is_documented(int64_t result) {
  return (result >= ZRCFG_OK && result <= ZRCFG_E_REMOVE) || result == -1 ||
         result == int64_t{ZRCFG_E_FAILED};
}

uint32_t length_word(const std::string &bytes) {
  zrcfg::BigEndian32 word;
  if (bytes.size() < sizeof word) {
    return 0;
  }
  memcpy(&word, bytes.data(), sizeof word);
  return word.get();
}

std::string name_of_record(const std::string &bytes, size_t record) {
  const size_t at = sizeof(zrcfg::BigEndian32) + sizeof(zrcfg::ObjectHeader) +
                    record * sizeof(zrcfg::ParamRecord) + offsetof(zrcfg::ParamRecord, name);
  if (at >= bytes.size()) {
    return "Name";
  }
  const std::string field = bytes.substr(at, zrcfg::kNameSize);
  return field.substr(0, field.find('\0'));
}

void make_call(const AnyCall &call, const AnyObject &object, const std::string &bytes,
               StoreFile &file) {
  set_under_way(call.name);
  const int64_t result = call.run(object);
  require(is_documented(result), "a result that is not documented");
  if (call.effect == Effect::kWritesAttributes ||
      (call.effect == Effect::kWritesValues && result == 0)) {
    file.write(bytes);
  } else {
    require(file.holds(bytes), "the file is not as it was");
  }
}

}  // namespace

AnyObject any_object(const std::string &bytes) {
  const uint32_t length = length_word(bytes);
  const size_t records = length < sizeof(zrcfg::ObjectHeader)
                             ? 0
                             : (length - sizeof(zrcfg::ObjectHeader)) / sizeof(zrcfg::ParamRecord);
  const size_t served = records % 256;
  return {kUrl, kDir, name_of_record(bytes, 0), name_of_record(bytes, served == 0 ? 0 : served - 1),
          records};
}

size_t make_every_call(const std::string &bytes) {
  static StoreFile top("Top/");
  static StoreFile filters("", "regex_file");
  static StoreFile below("Top/Any/Below/");
  static StoreFile file(kDir);
  static const bool made = [] {
    top.write(well_formed_parent());
    below.write(well_formed_template());
    filters.write("config filter 'filter1'\n\toption value '^[a-z0-9]*$'\n");
    make_instance_calls(well_formed_parent());  // Opens its files, which then stay open.
    return true;
  }();
  require(made, "no store");
  const AnyObject object = any_object(bytes);
  const int descriptor = lowest_free_descriptor();
  file.write(bytes);
  size_t count = 0;
  for (const auto *calls : {&any_tree_calls(), &any_value_calls(), &any_attribute_calls()}) {
    for (const AnyCall &call : *calls) {
      make_call(call, object, bytes, file);
    }
    count += calls->size();
  }
  require(file.is_free(), "a lock is left");
  count += make_instance_calls(bytes);
  require(lowest_free_descriptor() == descriptor, "a descriptor is left open");
  return count;
}

}  // namespace zrcfg_fuzz

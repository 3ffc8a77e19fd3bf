// Puts the values and attributes of an old object into its new content.
#include "tools/mkstore/carry_over.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "tools/mkstore/build_error.h"
#include "tools/mkstore/ere_match.h"
#include "tools/mkstore/value_check.h"
#include "tools/store/stored_object.h"

namespace zrcfg::mkstore {

namespace {

using zrcfg_store::FileState;
using zrcfg_store::StoredObject;

struct OldParameter {
  std::string name;
  ParamRecord record;
  std::string value;
};

// Damage that leaves open which value belongs to which parameter. Bytes behind the last value, a
// last line that is not ended and values that are too long leave no doubt.
constexpr unsigned kDoubtful = zrcfg_store::kShortFile | zrcfg_store::kPartialRecord |
                               zrcfg_store::kTooManyRecords | zrcfg_store::kMissingLines |
                               zrcfg_store::kEmptyLine | zrcfg_store::kZeroByte;

std::string state_text(const StoredObject &object) {
  switch (object.state()) {
    case FileState::kMissing:
      return "it has no property file";
    case FileState::kNotRegular:
      return "its property file is not a regular file";
    case FileState::kBadLength:
      return "the length word is missing or out of range";
    case FileState::kTooLarge:
      return "the property file is too large";
    default:
      return {};
  }
}

std::string damage_text(const StoredObject &object) {
  const unsigned damage = object.damage() & kDoubtful;
  if ((damage & zrcfg_store::kShortFile) != 0) {
    return "the file ends within header or records";
  }
  if ((damage & zrcfg_store::kPartialRecord) != 0) {
    return "the length word is not that of whole records";
  }
  if ((damage & zrcfg_store::kTooManyRecords) != 0) {
    return "more than 255 records";
  }
  if ((damage & zrcfg_store::kZeroByte) != 0) {
    return "a zero byte among the values";
  }
  if ((damage & zrcfg_store::kEmptyLine) != 0) {
    return "an empty line among the values";
  }
  return damage != 0 ? "fewer values than records" : "";
}

// Reads the file, and reports it when nothing in it can be relied on. False then.
bool load(Upgrade &upgrade, const Placement &placement, StoredObject &object) {
  std::string path = placement.url + kPropertyFileName;
  std::replace(path.begin(), path.begin() + static_cast<std::ptrdiff_t>(placement.url.size()), '.',
               '/');
  if (!object.load(upgrade.store.root, path.c_str())) {
    const std::string damage = state_text(object);
    if (damage.empty()) {
      const int error = object.state() == FileState::kNoMemory ? ENOMEM : object.error();
      fail(upgrade.store.path + "/" + path, std::string("cannot be read: ") + std::strerror(error));
    }
    report(upgrade.report, Outcome::kDamaged, "object", placement.url, damage);
    return false;
  }
  const std::string damage = damage_text(object);
  if (!damage.empty()) {
    report(upgrade.report, Outcome::kDamaged, "object", placement.url, damage);
  }
  return damage.empty();
}

std::vector<OldParameter> parameters_of(const StoredObject &object) {
  std::vector<OldParameter> parameters;
  ValueLines lines(object.section());
  for (uint32_t i = 0; i < object.record_count(); ++i) {
    const ParamRecord &record = object.records()[i];
    const ValueLine line = lines.next();
    const bool empty = line.text[0] == kEmptyValueMark;
    parameters.push_back(
        {FieldName(record.name).text, record, std::string(line.text, empty ? 0 : line.length)});
  }
  return parameters;
}

const OldParameter *find_old(const std::vector<OldParameter> &parameters, const std::string &name) {
  const auto found = std::find_if(parameters.begin(), parameters.end(),
                                  [&](const OldParameter &old) { return old.name == name; });
  return found == parameters.end() ? nullptr : &*found;
}

// Why the library would not take the value for a parameter with this filter number.
std::string filter_refusal(const FilterTable &filters, uint32_t number, const std::string &value) {
  if (number == 0 || filters.expressions.empty()) {
    return {};
  }
  if (number > filters.expressions.size()) {
    return "there is no filter " + std::to_string(number);
  }
  const std::string &expression = filters.expressions[number - 1];
  return ere_matches(expression, value) ? std::string()
                                        : "it does not match the filter " + expression;
}

// The attributes that go with a value say how it is encoded.
void keep_encoding(const ParamRecord &fresh, ParamRecord &record) {
  record_field::kEncryt.set(record, record_field::kEncryt.get(fresh));
  record_field::kFlashEncryt.set(record, record_field::kFlashEncryt.get(fresh));
}

// Lets the old value replace the new one, unless it is refused. Whether it did.
bool carry_value(Upgrade &upgrade, const std::string &path, const ParamRecord &fresh,
                 const OldParameter &old, std::string &value) {
  std::string problem = storage_problem(old.value);
  if (problem.empty()) {
    problem = filter_refusal(upgrade.filters, fresh.param_check.get(), old.value);
  }
  if (problem.empty()) {
    value = old.value;
    ++upgrade.report.values;
    return true;
  }
  report(upgrade.report, Outcome::kRefused, "value", path,
         "\"" + printable(old.value) + "\": " + problem);
  return false;
}

// A notification that the model forces, and an inform that it forces, stay. Off is what records
// begin with, so only another notification was somebody's choice.
void keep_forced(Upgrade &upgrade, const std::string &path, const ParamRecord &fresh,
                 ParamRecord &record) {
  const unsigned chosen = record_field::kNoti.get(record);
  const unsigned forced = record_field::kNoti.get(fresh);
  if (record_field::kNotiRw.get(fresh) == 0) {
    if (chosen != 0 && chosen != forced) {
      report(upgrade.report, Outcome::kRefused, "attribute", path,
             "noti=" + std::to_string(chosen) + ": the model forces " + std::to_string(forced));
    }
    record_field::kNoti.set(record, forced);
  }
  if (record_field::kInformTr069.get(fresh) != 0) {
    record_field::kInformTr069.set(record, 1);
  }
}

void carry_parameter(Upgrade &upgrade, const Placement &placement, const OldParameter &old,
                     size_t position, ObjectContent &content) {
  const std::string path = placement.url + old.name;
  ParamRecord &record = content.records[position];
  const ParamRecord fresh = record;
  const auto listed = content.listed.parameter_attributes.find(position);
  carry_attributes(old.record,
                   listed == content.listed.parameter_attributes.end()
                       ? std::vector<AttributeSetting>()
                       : listed->second,
                   record);
  keep_forced(upgrade, path, fresh, record);
  if (placement.counters.count(position) != 0) {
    return;
  }
  // What only the device writes may be a fact about its new software.
  const bool stated =
      record_field::kRw.get(fresh) == 0 && content.listed.values.count(position) != 0;
  if (stated || !carry_value(upgrade, path, fresh, old, content.values[position])) {
    keep_encoding(fresh, record);
  }
}

void report_dropped(Upgrade &upgrade, const Placement &placement,
                    const std::vector<OldParameter> &parameters) {
  const std::vector<Parameter> &wanted = upgrade.model.objects[placement.address.object].parameters;
  for (const OldParameter &old : parameters) {
    const bool known = std::any_of(wanted.begin(), wanted.end(),
                                   [&](const Parameter &p) { return p.name == old.name; });
    if (known && find_old(parameters, old.name) == &old) {
      continue;
    }
    report(upgrade.report, Outcome::kDropped, "parameter", placement.url + old.name,
           "\"" + printable(old.value) +
               "\": " + (known ? "a second parameter of this name" : "not in the model"));
  }
}

}  // namespace

void carry_over(Upgrade &upgrade, const Placement &placement, ObjectContent &content) {
  StoredObject object;
  if (upgrade.kept.objects.count(placement.address) == 0 || !load(upgrade, placement, object)) {
    return;
  }
  const std::vector<OldParameter> parameters = parameters_of(object);
  if (placement.table_header && !parameters.empty()) {
    report(upgrade.report, Outcome::kDropped, "object", placement.url,
           "a table in the model, with " + std::to_string(parameters.size()) +
               " parameters in the old store");
    return;
  }
  if (parameters.empty() && upgrade.kept.with_numbers.count(placement.address) != 0) {
    return;  // The header of a table, whose attributes are not those of a single object.
  }
  ++upgrade.report.objects;
  const bool instance =
      upgrade.model.objects[placement.address.object].is_table && !placement.table_header;
  upgrade.report.instances += instance ? 1 : 0;
  carry_attributes(object.header(), content.listed.object_attributes, content.header);
  report_dropped(upgrade, placement, parameters);
  const std::vector<Parameter> &wanted = upgrade.model.objects[placement.address.object].parameters;
  for (size_t i = 0; i < content.records.size(); ++i) {
    if (const OldParameter *old = find_old(parameters, wanted[i].name)) {
      carry_parameter(upgrade, placement, *old, i, content);
    }
  }
}

}  // namespace zrcfg::mkstore

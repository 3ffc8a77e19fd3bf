// Checking a configuration text against the store as it would leave it.
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/apply_plan.h"
#include "tools/zrcfg/object_reader.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

bool selected_by_mode(int mode, uint8_t key) {
  return mode == kAllModes || ((key >> (mode - 1)) & 1) != 0;
}

const char *counter_of(const ObjAttr &table) {
  static char name[sizeof table.pnoe + 1];
  memcpy(name, table.pnoe, sizeof table.pnoe);
  name[sizeof table.pnoe] = '\0';
  const char *const slash = strrchr(name, '/');
  return slash != nullptr ? slash + 1 : "";
}

// Collects the names of the parameters that count the instances of an object's tables.
bool collect_counters(const ObjectUrl &object, int timeout, TextSet &counters) {
  SubObjName *node = nullptr;
  (void)zrcfg_getallsubobj(object.text, &node);  // Without sub-objects there are no counters.
  bool ok = true;
  while (node != nullptr) {
    char table[ZRCFG_URL_SIZE + sizeof node->name];
    (void)snprintf(table, sizeof table, "%s%s.", object.text, node->name);  // Fits.
    ObjAttr attr = {};
    if (ok && zrcfg_getobjattr(table, &attr, timeout) == ZRCFG_OK && attr.pnoe[0] != '\0') {
      ok = counters.add(counter_of(attr));
    }
    SubObjName *const next = node->next;
    free(node);
    node = next;
  }
  return ok;
}

}  // namespace

ApplyPlan::~ApplyPlan() {
  free(states_);
}

bool ApplyPlan::settle(size_t line, Outcome outcome) {
  states_[line].outcome = outcome;
  return true;
}

bool ApplyPlan::refuse(size_t line, uint32_t code, const char *reason) {
  const ConfigLine &config = text_.at(line);
  states_[line].outcome = Outcome::kRefused;
  states_[line].code = code;
  set_report_line(config.number);
  complain("%s%s: %s (code %d)", config.path.url, config.path.name, reason, static_cast<int>(code));
  set_report_line(0);
  return false;
}

// Gives a state to every line that has none.
bool ApplyPlan::grow_states() {
  const size_t lines = text_.size();
  void *const grown = realloc(states_, (lines + 1) * sizeof *states_);
  if (grown == nullptr) {
    complain("out of memory");
    return false;
  }
  states_ = static_cast<LineState *>(grown);
  memset(states_ + state_count_, 0, (lines - state_count_) * sizeof *states_);
  state_count_ = lines;
  return true;
}

// Collects the values once the text has all of its lines, since adding one moves the others.
bool ApplyPlan::take_values() {
  const size_t lines = text_.size();
  int value_count = 0;
  for (size_t i = 0; i < lines; ++i) {
    value_count += text_.at(i).kind == LineKind::kValue ? 1 : 0;
  }
  if (!values_.allocate(value_count)) {
    return false;
  }
  int value = 0;
  for (size_t i = 0; i < lines; ++i) {
    ConfigLine &line = text_.at(i);
    if (line.kind == LineKind::kValue) {
      Request &request = values_.at(value++);
      request.path = line.path;
      request.new_value = line.value;
      request.line = i;
    }
  }
  values_.group();
  return true;
}

bool ApplyPlan::check_deletion(size_t line) {
  const char *const url = text_.at(line).path.url;
  ObjectUrl real;
  ObjectUrl real_table;
  if (view_.resolve(url, real) != ViewResult::kThere) {
    return refuse(line, ZRCFG_E_NOT_FOUND, "no such instance");
  }
  (void)view_.locate(instance_of(text_.at(line)).table.text, real_table);  // It leads there.
  ObjAttr table = {};
  const uint32_t result = zrcfg_getobjattr(real_table.text, &table, options_.timeout);
  if (result != ZRCFG_OK) {
    return refuse(line, result, meaning_of(result));
  }
  if (!selected_by_mode(options_.mode, table.key)) {
    return settle(line, Outcome::kHeld);
  }
  states_[line].fixed = table.rw == 0;
  return states_[line].late ? view_.delete_copy(url) : view_.delete_instance(url);
}

bool ApplyPlan::check_deletions() {
  bool all_ok = true;
  for (size_t i = 0; i < text_.size(); ++i) {
    all_ok = (text_.at(i).kind != LineKind::kDelete || check_deletion(i)) && all_ok;
  }
  return all_ok;
}

bool ApplyPlan::check_creation(size_t line) {
  const ConfigLine &config = text_.at(line);
  ObjectUrl real;
  switch (view_.resolve(config.path.url, real)) {
    case ViewResult::kThere:
      return settle(line, Outcome::kAlreadyThere);
    case ViewResult::kHeld:
      return settle(line, Outcome::kHeld);
    case ViewResult::kMissing:
      break;
  }
  return check_new_instance(line, instance_of(config));
}

bool ApplyPlan::check_creations() {
  bool all_ok = true;
  for (size_t i = 0; i < text_.size(); ++i) {
    all_ok = (text_.at(i).kind != LineKind::kCreate || check_creation(i)) && all_ok;
  }
  return all_ok;
}

bool ApplyPlan::check_new_instance(size_t line, const InstanceName &instance) {
  ObjectUrl real;
  if (view_.resolve(instance.table.text, real) != ViewResult::kThere) {
    return refuse(line, ZRCFG_E_NOT_FOUND, "no such table");
  }
  ObjAttr table = {};
  const uint32_t result = zrcfg_getobjattr(real.text, &table, options_.timeout);
  if (result != ZRCFG_OK) {
    return refuse(line, result, meaning_of(result));
  }
  const char *const url = text_.at(line).path.url;
  if (!selected_by_mode(options_.mode, table.key)) {
    (void)settle(line, Outcome::kHeld);
    return view_.hold_instance(url);
  }
  states_[line].fixed = table.rw == 0;
  const int source = view_.source_instance(real.text);
  states_[line].source = source;
  if (source < 0 || (source > 0 && table.rw != 0)) {
    return refuse(line, ZRCFG_E_NOT_DYNAMIC, "no instance to copy");
  }
  if (table.rw != 0 && instance.index > table.max_instance) {
    return refuse(line, ZRCFG_E_LIMIT, "above the table's limit of instances");
  }
  return view_.create_instance(url);
}

bool ApplyPlan::check_value(const Request &request, const ObjectUrl &real,
                            const ParameterRow *row) {
  if (row == nullptr) {
    return refuse(request.line, ZRCFG_E_NO_PARAMETER, meaning_of(ZRCFG_E_NO_PARAMETER));
  }
  if (!selected_by_mode(options_.mode, row->key)) {
    return settle(request.line, Outcome::kHeld);
  }
  if (options_.has(kNoCheck)) {
    return true;
  }
  const uint32_t result = static_cast<uint32_t>(
      zrcfg_paramvalue_check(real.text, request.path.name, request.new_value, options_.timeout));
  if (result == ZRCFG_E_FILE) {
    return refuse(request.line, result, "the parameter does not take this value");
  }
  return result == ZRCFG_OK || refuse(request.line, result, meaning_of(result));
}

bool ApplyPlan::check_object(int group, const ObjectUrl &real) {
  static ObjectRows object;  // Too large for a small stack.
  TextSet counters;
  if (!collect_counters(real, options_.timeout, counters)) {
    return false;
  }
  const uint32_t result = read_object_rows(real.text, options_.timeout, RowContent::kNames, object);
  bool all_ok = true;
  for (int i = 0; i < values_.group_size(group); ++i) {
    const Request &request = values_.member(group, i);
    if (result != ZRCFG_OK) {
      all_ok = refuse(request.line, result, meaning_of(result));
      continue;
    }
    states_[request.line].is_counter = counters.has(request.path.name);
    all_ok = check_value(request, real, object.find(request.path.name)) && all_ok;
  }
  return all_ok;
}

bool ApplyPlan::check_values() {
  bool all_ok = true;
  Progress progress("checked", "objects", static_cast<size_t>(values_.group_count()));
  for (int group = 0; group < values_.group_count(); ++group) {
    ObjectUrl real;
    const ViewResult found = view_.resolve(values_.member(group, 0).path.url, real);
    for (int i = 0; found != ViewResult::kThere && i < values_.group_size(group); ++i) {
      const size_t line = values_.member(group, i).line;
      all_ok = (found == ViewResult::kHeld ? settle(line, Outcome::kHeld)
                                           : refuse(line, ZRCFG_E_NOT_FOUND, "no such object")) &&
               all_ok;
    }
    if (found == ViewResult::kThere) {
      all_ok = check_object(group, real) && all_ok;
    }
    progress.step();
  }
  return all_ok;
}

bool ApplyPlan::check() {
  const bool exact = exact_.text[0] != '\0';
  if (!grow_states()) {
    return false;
  }
  bool all_ok = check_deletions();
  all_ok = (!exact || delete_left_out()) && all_ok;
  all_ok = check_creations() && all_ok;
  all_ok = (!exact || delete_brought_along()) && all_ok;
  return take_values() && check_values() && all_ok;
}

}  // namespace zrcfg_tool

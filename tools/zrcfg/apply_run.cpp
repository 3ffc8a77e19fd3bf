// Carrying out a checked configuration text through the library's export calls.
#include <string.h>

#include "tools/zrcfg/apply_plan.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

// Marks a node that the library has not served.
constexpr uint32_t kNotServed = 2;

}  // namespace

void ApplyPlan::delete_instance(size_t line) {
  const ConfigLine &config = text_.at(line);
  uint8_t written = 1;
  uint32_t result;
  if (states_[line].fixed) {
    const InstanceName instance = instance_of(config);
    result = zrcfg_delobject_static(instance.table.text, instance.index, options_.timeout);
  } else {
    result = zrcfg_exportdelobject(config.path.url, options_.timeout, options_.mode, &written);
  }
  if (result != ZRCFG_OK) {
    (void)refuse(line, result, meaning_of(result));
  } else {
    (void)settle(line, written != 0 ? Outcome::kWritten : Outcome::kHeld);
  }
}

void ApplyPlan::create_instance(size_t line) {
  const ConfigLine &config = text_.at(line);
  if (zrcfg_isobjectexist(config.path.url) == 1) {
    (void)settle(line, Outcome::kAlreadyThere);  // Somebody else was faster.
    return;
  }
  uint8_t written = 1;
  uint32_t result;
  if (states_[line].fixed) {
    const InstanceName instance = instance_of(config);
    result = zrcfg_addobject_static(instance.table.text, instance.index, states_[line].source,
                                    options_.timeout);
  } else {
    result = zrcfg_exportaddobject(config.path.url, options_.timeout, options_.mode, &written);
  }
  if (result != ZRCFG_OK) {
    (void)refuse(line, result, meaning_of(result));
  } else {
    (void)settle(line, written != 0 ? Outcome::kWritten : Outcome::kHeld);
  }
}

// Writes the values of a linked list of requests with one call.
void ApplyPlan::write_list(Request *first, Request *const *members, int count) {
  const uint32_t result =
      zrcfg_exportmultiparamval(first->path.url, &first->entry, options_.timeout, options_.mode);
  for (int i = 0; i < count; ++i) {
    const Request &request = *members[i];
    if (result != ZRCFG_OK) {
      (void)refuse(request.line, result, meaning_of(result));
    } else if (request.entry.changed == kNotServed) {
      (void)refuse(request.line, ZRCFG_E_NO_PARAMETER, meaning_of(ZRCFG_E_NO_PARAMETER));
    } else {
      (void)settle(request.line, request.entry.changed != 0 ? Outcome::kWritten : Outcome::kHeld);
    }
  }
}

void ApplyPlan::write_group(int group, bool counters) {
  static Request *members[ZRCFG_MAX_REQUESTS];
  int count = 0;
  for (int i = 0; i < values_.group_size(group); ++i) {
    Request &request = values_.member(group, i);
    const LineState &state = states_[request.line];
    if (state.outcome == Outcome::kPlanned && state.is_counter == counters) {
      memcpy(request.entry.name, request.path.name, sizeof request.entry.name);
      request.entry.value = const_cast<char *>(request.new_value);  // The library only reads it.
      request.entry.changed = kNotServed;
      request.entry.next = nullptr;
      if (count > 0) {
        members[count - 1]->entry.next = &request.entry;
      }
      members[count++] = &request;
    }
    if (count == ZRCFG_MAX_REQUESTS || (count > 0 && i + 1 == values_.group_size(group))) {
      write_list(members[0], members, count);
      count = 0;
    }
  }
}

void ApplyPlan::write_values(bool counters) {
  Progress progress(counters ? "counted" : "written", "objects",
                    static_cast<size_t>(values_.group_count()));
  for (int group = 0; group < values_.group_count(); ++group) {
    write_group(group, counters);
    progress.step();
  }
}

void ApplyPlan::delete_instances(bool late) {
  for (size_t i = 0; i < text_.size(); ++i) {
    const LineState &state = states_[i];
    if (text_.at(i).kind == LineKind::kDelete && state.late == late &&
        state.outcome == Outcome::kPlanned) {
      delete_instance(i);
    }
  }
}

void ApplyPlan::run() {
  delete_instances(false);
  for (size_t i = 0; i < text_.size(); ++i) {
    if (text_.at(i).kind == LineKind::kCreate && states_[i].outcome == Outcome::kPlanned) {
      create_instance(i);
    }
  }
  delete_instances(true);
  write_values(false);
  write_values(true);
}

}  // namespace zrcfg_tool

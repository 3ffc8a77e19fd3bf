// What applying a configuration text will do, and what became of each of its lines.
#ifndef ZRCFG_TOOLS_ZRCFG_APPLY_PLAN_H_
#define ZRCFG_TOOLS_ZRCFG_APPLY_PLAN_H_

#include <stdint.h>

#include "tools/zrcfg/config_text.h"
#include "tools/zrcfg/object_reader.h"
#include "tools/zrcfg/options.h"
#include "tools/zrcfg/progress.h"
#include "tools/zrcfg/store_view.h"
#include "tools/zrcfg/text_set.h"
#include "tools/zrcfg/value_requests.h"

namespace zrcfg_tool {

enum class Outcome { kPlanned, kWritten, kHeld, kAlreadyThere, kRefused };

// One line's state.
struct LineState {
  Outcome outcome;
  uint32_t code;    // Of a refusal; 0 when the library has none for it.
  bool fixed;       // Of an instance: its table is a fixed one.
  int source;       // Of a new instance in a fixed table: the one that it is a copy of.
  bool late;        // Of a deletion: it follows the creations.
  bool is_counter;  // Of a value: it counts a table's instances.
};

class ApplyPlan {
 public:
  ApplyPlan(const Options &options, ConfigText &text) : options_(options), text_(text) {}
  ~ApplyPlan();
  ApplyPlan(const ApplyPlan &) = delete;
  ApplyPlan &operator=(const ApplyPlan &) = delete;

  // Lets the check add the deletion of all instances below an object that the text does not create,
  // those among them that a new instance brings along. False without memory, which is reported.
  bool make_exact(const ObjectUrl &url);

  // Checks every line against the store as the lines before it would leave it; reports each
  // refusal. Nothing is changed. False when there was one.
  bool check();

  // Carries the plan out: deletions, creations, late deletions, values, counters. Reports each
  // refusal.
  void run();

  // What the check has not come to is planned.
  LineState state(size_t line) const { return line < state_count_ ? states_[line] : LineState{}; }

 private:
  bool grow_states();
  bool take_values();
  bool check_deletion(size_t line);
  bool check_deletions();
  bool check_creation(size_t line);
  bool check_creations();
  bool check_new_instance(size_t line, const InstanceName &instance);
  bool check_values();
  bool check_object(int group, const ObjectUrl &real);
  bool check_value(const Request &request, const ObjectUrl &real, const ParameterRow *row);

  bool delete_left_out();
  bool delete_brought_along();
  bool collect_left_out(const char *url, const ObjectUrl &real);
  bool collect_child(const char *url, bool is_instance);
  bool is_left_out(const char *instance_url) const;
  bool check_added(size_t first, bool late);

  void delete_instance(size_t line);
  void delete_instances(bool late);
  void create_instance(size_t line);
  void write_values(bool counters);
  void write_group(int group, bool counters);
  void write_list(Request *first, Request *const *members, int count);

  // Sets a line's outcome; a refusal is reported with its reason. False for a refusal.
  bool settle(size_t line, Outcome outcome);
  bool refuse(size_t line, uint32_t code, const char *reason);

  const Options &options_;
  ConfigText &text_;
  LineState *states_ = nullptr;
  size_t state_count_ = 0;
  StoreView view_;
  RequestTable values_;
  ObjectUrl exact_ = {};  // Empty when all may stay that the text does not create.
  TextSet named_;         // The instances that the text creates.
  TextSet left_out_;      // Those that it has been given a deletion for.
};

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_APPLY_PLAN_H_

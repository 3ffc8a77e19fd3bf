// The parameters that a command was given, grouped by object so that each object is served once.
#ifndef ZRCFG_TOOLS_ZRCFG_VALUE_REQUESTS_H_
#define ZRCFG_TOOLS_ZRCFG_VALUE_REQUESTS_H_

#include <stdint.h>

#include "tools/zrcfg/param_path.h"
#include "zrcfg.h"

namespace zrcfg_tool {

struct Request {
  ParamPath path;
  const char *text;               // The argument.
  const char *new_value;          // Of an assignment; else null.
  char stored[ZRCFG_VALUE_SIZE];  // The value that was read.
  ParamValueEntry entry;          // For the library's bulk calls.
  uint32_t fault;                 // What entry.fault points at.
  size_t line;                    // Where it stands in a text, counted from 0.
  uint32_t result;                // A result code.
};

// All requests, in the order of the arguments.
class RequestTable {
 public:
  RequestTable() = default;
  ~RequestTable();
  RequestTable(const RequestTable &) = delete;
  RequestTable &operator=(const RequestTable &) = delete;

  // Room for `count` requests. Reports and returns false without memory.
  bool allocate(int count);
  // Groups what was filled in; the groups come in the order of their first request.
  void group();

  int size() const { return count_; }
  Request &at(int i) const { return requests_[i]; }

  int group_count() const { return group_count_; }
  // The requests of one object, in the order of the arguments.
  int group_size(int group) const { return groups_[group].count; }
  Request &member(int group, int i) const { return *order_[groups_[group].first + i]; }
  // What a check of the object found.
  bool refused(int group) const { return groups_[group].refused; }
  void set_refused(int group, bool refused) { groups_[group].refused = refused; }

 private:
  struct Group {
    int first;
    int count;
    bool refused;
  };

  int count_ = 0;
  int group_count_ = 0;
  Request *requests_ = nullptr;
  Request **order_ = nullptr;
  Group *groups_ = nullptr;
};

// Reads the values of requests `from` to `to` of a group into `stored`, with one call of the
// library, and sets their results; 5 for an unknown name.
void read_stored(const RequestTable &requests, int group, int from, int to, int timeout);

}  // namespace zrcfg_tool

#endif  // ZRCFG_TOOLS_ZRCFG_VALUE_REQUESTS_H_

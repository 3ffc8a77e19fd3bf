// The workloads W1 to W7: what one operation does, the same for every store.
#ifndef ZRCFG_BENCH_WORKLOAD_H_
#define ZRCFG_BENCH_WORKLOAD_H_

#include <functional>
#include <string>
#include <vector>

#include "bench/store.h"
#include "bench/tree.h"

namespace bench {

inline constexpr char kRoot[] = "InternetGatewayDevice.";

// Stores that work on the same files share what is known about their contents.
inline constexpr unsigned kMostMedia = 8;

struct Workload {
  const char *id;
  const char *title;
  // One operation on `store`, the `i`th of a sequence; `medium` numbers what the store writes to.
  std::function<bool(const Store &store, unsigned medium, unsigned i)> run;
};

std::vector<Workload> make_workloads(const Tree &tree);

// Owns the nodes and buffers of a request list.
class RequestList {
 public:
  explicit RequestList(const std::vector<std::string> &names);
  ParamValueEntry *head() { return nodes_.data(); }
  std::string value(size_t i) const { return values_[i].data(); }
  void set_value(size_t i, const std::string &value);

 private:
  std::vector<ParamValueEntry> nodes_;
  std::vector<std::vector<char>> values_;
};

}  // namespace bench

#endif  // ZRCFG_BENCH_WORKLOAD_H_

// The parameters that a command was given, grouped by object so that each object is served once.
#include "tools/zrcfg/value_requests.h"

#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

// The library leaves a buffer alone when there is no such parameter; no value holds a line feed.
constexpr char kUntouched[] = "\n";

// By object, and within it by the order of the arguments.
int compare_requests(const void *left, const void *right) {
  const Request *const a = *static_cast<Request *const *>(left);
  const Request *const b = *static_cast<Request *const *>(right);
  const int by_url = strcmp(a->path.url, b->path.url);
  return by_url != 0 ? by_url : (a > b) - (a < b);
}

}  // namespace

RequestTable::~RequestTable() {
  free(requests_);
  free(order_);
  free(groups_);
}

bool RequestTable::allocate(int count) {
  const size_t size = static_cast<size_t>(count);
  requests_ = static_cast<Request *>(calloc(size, sizeof *requests_));
  // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers.
  order_ = static_cast<Request **>(calloc(size, sizeof *order_));
  groups_ = static_cast<Group *>(calloc(size, sizeof *groups_));
  if (requests_ == nullptr || order_ == nullptr || groups_ == nullptr) {
    complain("out of memory");
    return false;
  }
  count_ = count;
  return true;
}

void RequestTable::group() {
  for (int i = 0; i < count_; ++i) {
    order_[i] = &requests_[i];
  }
  // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers.
  qsort(order_, static_cast<size_t>(count_), sizeof *order_, compare_requests);
  group_count_ = 0;
  for (int i = 0; i < count_; ++i) {
    if (i == 0 || strcmp(order_[i]->path.url, order_[i - 1]->path.url) != 0) {
      groups_[group_count_++] = {i, 0, false};
    }
    ++groups_[group_count_ - 1].count;
  }
  qsort_r(
      groups_, static_cast<size_t>(group_count_), sizeof *groups_,
      [](const void *left, const void *right, void *order) {
        const Request *const a =
            static_cast<Request **>(order)[static_cast<const Group *>(left)->first];
        const Request *const b =
            static_cast<Request **>(order)[static_cast<const Group *>(right)->first];
        return (a > b) - (a < b);
      },
      order_);
}

void read_stored(const RequestTable &requests, int group, int from, int to, int timeout) {
  for (int i = from; i < to; ++i) {
    Request &request = requests.member(group, i);
    memcpy(request.stored, kUntouched, sizeof kUntouched);
    memcpy(request.entry.name, request.path.name, sizeof request.entry.name);
    request.entry.value = request.stored;
    request.entry.next = i + 1 < to ? &requests.member(group, i + 1).entry : nullptr;
  }
  Request &first = requests.member(group, from);
  // A single value is read as such: its call tells more about a damaged file.
  const uint32_t result =
      to - from == 1
          ? zrcfg_getsingleparamval(first.path.url, first.path.name, first.stored, timeout)
          : static_cast<uint32_t>(zrcfg_getmultiparamval(first.path.url, &first.entry, timeout));
  for (int i = from; i < to; ++i) {
    Request &request = requests.member(group, i);
    const bool unknown = result == ZRCFG_OK && strcmp(request.stored, kUntouched) == 0;
    request.result = unknown ? ZRCFG_E_NO_PARAMETER : result;
  }
}

}  // namespace zrcfg_tool

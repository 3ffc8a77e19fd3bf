// The workers' calls on values and attributes.
#include "tests/contention/value_calls.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <vector>

#include "tests/contention/store.h"
#include "zrcfg.h"

namespace contention {
namespace {

constexpr int kShortTimeout = 200;
constexpr int kFieldSize = 16;

// Looks at a value of some worker: it is whole, and no older than one that was seen before.
void look_at(Worker &reader, unsigned owner, unsigned instance, const char *text) {
  const int64_t sequence = sequence_of(text, owner, instance);
  int64_t &seen = reader.seen[owner][instance];
  if (sequence < 0) {
    fault(reader.board, "torn or shifted value of worker %u in %s: %s", owner,
          value_url(instance).c_str(), text);
  } else if (sequence < seen) {
    fault(reader.board, "lost update: value of worker %u fell from %lld to %lld", owner,
          static_cast<long long>(seen), static_cast<long long>(sequence));
  } else {
    seen = sequence;
  }
}

// Whether a call succeeded; one that was to give up soon may have done so.
bool succeeded(Worker &worker, const char *what, int64_t result, int timeout) {
  if (result == ZRCFG_OK) {
    return true;
  }
  if (result == ZRCFG_E_LOCK && timeout != ZRCFG_WAIT_FOREVER) {
    ++worker.state.busy;
  } else {
    fault(worker.board, "%s: result %lld", what, static_cast<long long>(result));
  }
  return false;
}

// A request of every worker's value in one instance.
struct Request {
  std::vector<ParamValueEntry> nodes;
  std::vector<std::vector<char>> buffers;

  explicit Request(unsigned workers)
      : nodes(workers), buffers(workers, std::vector<char>(ZRCFG_VALUE_SIZE)) {
    for (unsigned i = 0; i < workers; ++i) {
      (void)snprintf(nodes[i].name, sizeof nodes[i].name, "%s", value_name(i).c_str());
      nodes[i].value = buffers[i].data();
      nodes[i].next = i + 1 < workers ? &nodes[i + 1] : nullptr;
    }
  }
};

// The next value of this worker in an instance; `intended` is set before the write, `written`
// after.
std::string begin_write(Worker &worker, unsigned instance) {
  const Count sequence = worker.state.written[instance] + 1;
  worker.state.intended[instance] = sequence;
  return value_text(worker.number, instance, sequence);
}

// What was stored before is this worker's own last value, or after its death the one before.
void end_write(Worker &worker, unsigned instance, const char *old_value) {
  look_at(worker, worker.number, instance, old_value);
  const Count sequence = worker.state.intended[instance];
  worker.state.written[instance] = sequence;
  worker.seen[worker.number][instance] = static_cast<int64_t>(sequence);
}

}  // namespace

int Worker::pick_timeout() {
  return pick(10) == 0 ? kShortTimeout : ZRCFG_WAIT_FOREVER;
}

void read_one(Worker &worker) {
  const unsigned owner = worker.pick(worker.board.workers);
  const unsigned instance = worker.pick(kInstances);
  const int timeout = worker.pick_timeout();
  char value[ZRCFG_VALUE_SIZE] = "";
  uint32_t result = 0;
  {
    const Timed timed(worker.state, kRead);
    result = zrcfg_getsingleparamval(value_url(instance).c_str(), value_name(owner).c_str(), value,
                                     timeout);
  }
  if (succeeded(worker, "read one", result, timeout)) {
    look_at(worker, owner, instance, value);
  }
}

void read_several(Worker &worker) {
  const unsigned instance = worker.pick(kInstances);
  const int timeout = worker.pick_timeout();
  Request request(worker.board.workers);
  int result = 0;
  {
    const Timed timed(worker.state, kBulkRead);
    result = zrcfg_getmultiparamval(value_url(instance).c_str(), request.nodes.data(), timeout);
  }
  if (!succeeded(worker, "read several", result, timeout)) {
    return;
  }
  for (unsigned owner = 0; owner < worker.board.workers; ++owner) {
    look_at(worker, owner, instance, request.buffers[owner].data());
  }
}

void list_values(Worker &worker) {
  const unsigned instance = worker.pick(kInstances);
  const int timeout = worker.pick_timeout();
  ParamValueListNode *node = nullptr;
  ParamValueListNode *tail = nullptr;
  int result = 0;
  {
    const Timed timed(worker.state, kList);
    result = zrcfg_getallparamval(value_url(instance).c_str(), &node, &tail, timeout);
  }
  if (!succeeded(worker, "list values", result, timeout)) {
    return;
  }
  unsigned owner = 0;
  for (; node != nullptr; ++owner) {
    look_at(worker, owner, instance, node->value);
    ParamValueListNode *const next = node->next;
    free(node);
    node = next;
  }
  if (owner != worker.board.workers) {
    fault(worker.board, "list values: %u nodes", owner);
  }
}

void write_one(Worker &worker) {
  const unsigned instance = worker.pick(kInstances);
  const int timeout = worker.pick_timeout();
  const std::string value = begin_write(worker, instance);
  char old_value[ZRCFG_VALUE_SIZE] = "";
  uint8_t changed = 0;
  uint32_t result = 0;
  {
    const Timed timed(worker.state, kWrite);
    result = zrcfg_setsingleparamval_ext_get_old_value(value_url(instance).c_str(),
                                                       value_name(worker.number).c_str(),
                                                       value.c_str(), timeout, &changed, old_value);
  }
  if (succeeded(worker, "write one", result, timeout)) {
    end_write(worker, instance, old_value);
  }
}

void write_several(Worker &worker) {
  const unsigned instance = worker.pick(kInstances);
  const int timeout = worker.pick_timeout();
  Request request(worker.board.workers);
  ParamValueEntry &own = request.nodes[worker.number];
  own.next = nullptr;
  (void)snprintf(own.value, ZRCFG_VALUE_SIZE, "%s", begin_write(worker, instance).c_str());
  int result = 0;
  {
    const Timed timed(worker.state, kBulkWrite);
    result = zrcfg_setmultiparamval(value_url(instance).c_str(), &own, timeout);
  }
  if (succeeded(worker, "write several", result, timeout)) {
    end_write(worker, instance, own.old_value);
  }
}

void change_attribute(Worker &worker) {
  const std::string url = value_url(worker.number % kInstances);
  const std::string name = value_name(worker.number);
  const uint64_t round = ++worker.attribute_rounds;
  char text[kFieldSize] = "";
  (void)snprintf(text, sizeof text, "w%u-%u", worker.number, static_cast<unsigned>(round % 100000));
  uint32_t result = 0;
  {
    const Timed timed(worker.state, kAttribute);
    result = zrcfg_setsingleparamattr_ext(url.c_str(), name.c_str(), 10, text, ZRCFG_WAIT_FOREVER);
  }
  ParamAttr attr = {};
  if (!succeeded(worker, "set attribute", result, ZRCFG_WAIT_FOREVER)) {
    return;
  }
  {
    const Timed timed(worker.state, kAttribute);
    result = zrcfg_getsingleparamattr(url.c_str(), name.c_str(), &attr, ZRCFG_WAIT_FOREVER);
  }
  if (succeeded(worker, "get attribute", result, ZRCFG_WAIT_FOREVER) &&
      strncmp(attr.accesslist, text, sizeof attr.accesslist) != 0) {
    fault(worker.board, "lost update: attribute %.16s instead of %s", attr.accesslist, text);
  }
}

void write_under_own_lock(Worker &worker) {
  const unsigned instance = worker.pick(kInstances);
  const std::string url = value_url(instance);
  const std::string name = value_name(worker.number);
  int fd = -1;
  if (zrcfg_lockurl(url.c_str(), &fd, ZRCFG_WAIT_FOREVER, ZRCFG_LOCK_EXCLUSIVE) != ZRCFG_OK) {
    fault(worker.board, "lock: not obtained");
    return;
  }
  const std::string value = begin_write(worker, instance);
  char old_value[ZRCFG_VALUE_SIZE] = "";
  {
    const Timed timed(worker.state, kRead);
    (void)zrcfg_getsingleparamval(url.c_str(), name.c_str(), old_value, ZRCFG_NO_LOCK);
  }
  (void)usleep(worker.pick(300));
  const Timed timed(worker.state, kWrite);
  const uint32_t result =
      zrcfg_setsingleparamval(url.c_str(), name.c_str(), value.c_str(), ZRCFG_NO_LOCK);
  if (succeeded(worker, "write under a lock", result, ZRCFG_WAIT_FOREVER)) {
    end_write(worker, instance, old_value);
  }
  (void)zrcfg_releaselock(fd);
}

}  // namespace contention

// One worker: a random mixture of calls, each of which checks what it sees.
#include "tests/contention/worker.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <set>
#include <string>

#include "tests/contention/store.h"
#include "tests/contention/value_calls.h"
#include "zrcfg.h"

namespace contention {
namespace {

std::string instance_url(uint32_t number) {
  return kTable + std::to_string(number) + ".";
}

// Creates an instance and writes its owner into it.
void add_instance(Worker &worker, std::atomic<uint32_t> &place) {
  uint32_t number = 0;
  uint32_t result = 0;
  {
    const Timed timed(worker.state, kAdd);
    result = zrcfg_addobject(kTable, &number, ZRCFG_WAIT_FOREVER);
  }
  if (result != ZRCFG_OK || number == 0) {
    fault(worker.board, "add: result %u, number %u", result, number);
    return;
  }
  char owner[ZRCFG_VALUE_SIZE] = "";
  uint8_t changed = 0;
  result = zrcfg_setsingleparamval_ext_get_old_value(instance_url(number).c_str(), kOwner,
                                                     std::to_string(worker.number + 1).c_str(),
                                                     ZRCFG_WAIT_FOREVER, &changed, owner);
  if (result != ZRCFG_OK || strcmp(owner, "nobody") != 0) {
    fault(worker.board, "instance %u: result %u, owner %s", number, result, owner);
  }
  place = number;
}

void check_owner(Board &board, unsigned worker, uint32_t number) {
  char owner[ZRCFG_VALUE_SIZE] = "";
  const uint32_t result =
      zrcfg_getsingleparamval(instance_url(number).c_str(), kOwner, owner, ZRCFG_WAIT_FOREVER);
  if (result != ZRCFG_OK || std::to_string(worker + 1) != owner) {
    fault(board, "instance %u of worker %u: result %u, owner %s", number, worker, result, owner);
  }
}

// Deletes an instance that was returned to this worker; it is still its own.
void delete_instance(Worker &worker, std::atomic<uint32_t> &place) {
  const uint32_t number = place;
  check_owner(worker.board, worker.number, number);
  const Timed timed(worker.state, kDelete);
  const uint32_t result = zrcfg_delobject(kTable, static_cast<int>(number), ZRCFG_WAIT_FOREVER);
  if (result != ZRCFG_OK) {
    fault(worker.board, "delete %u: result %u", number, result);
  }
  place = 0;
}

void change_instances(Worker &worker) {
  std::atomic<uint32_t> &place = worker.state.owned[worker.pick(kMostOwned)];
  if (place == 0) {
    add_instance(worker, place);
  } else {
    delete_instance(worker, place);
  }
}

// The names of the table's instances; empty when another call holds the lock.
std::set<std::string> listed_instances(Worker &worker) {
  SubObjName *list = nullptr;
  uint32_t result = 0;
  {
    const Timed timed(worker.state, kTree);
    result = zrcfg_getallsubobj(kTable, &list);
  }
  if (result == ZRCFG_E_LOCK) {
    ++worker.state.busy;
  } else if (result != ZRCFG_OK) {
    fault(worker.board, "list sub-objects: result %u", result);
  }
  std::set<std::string> names;
  while (list != nullptr) {
    names.insert(list->name);
    SubObjName *const next = list->next;
    free(list);
    list = next;
  }
  if (result == ZRCFG_OK) {
    names.insert("listed");
  }
  return names;
}

// A listing shows every instance that is this worker's all the while.
void list_instances(Worker &worker) {
  const std::set<std::string> names = listed_instances(worker);
  if (names.empty()) {
    return;
  }
  for (const std::atomic<uint32_t> &number : worker.state.owned) {
    if (number != 0 && names.count(std::to_string(number)) == 0) {
      fault(worker.board, "instance %u of worker %u is not listed", number.load(), worker.number);
    }
  }
}

// The whole tree, while instances come and go. A table whose lock is held at the moment is left out
// with all below it; what is listed is listed once.
void list_tree(Worker &worker) {
  NODE_INFO *head = nullptr;
  int result = 0;
  {
    const Timed timed(worker.state, kTree);
    result = zrcfg_allnode_get(kTop, 1, &head, ZRCFG_WAIT_FOREVER);
  }
  unsigned found = 0;
  const std::string wanted = value_url(kInstances - 1) + value_name(worker.number);
  for (const NODE_INFO *node = head; node != nullptr; node = node->next) {
    found += wanted == node->name ? 1 : 0;
  }
  (void)zrcfg_allnode_free(head);  // Always 0.
  worker.state.partial += found == 0 ? 1 : 0;
  if (result != 0 || found > 1) {
    fault(worker.board, "list tree: result %d, %u times the same parameter", result, found);
  }
}

void read_something(Worker &worker) {
  switch (worker.pick(8)) {
    case 0:
      return list_values(worker);
    case 1:
      return read_several(worker);
    case 2:
      return list_instances(worker);
    case 3:
      return worker.pick(10) == 0 ? list_tree(worker) : read_one(worker);
    default:
      return read_one(worker);
  }
}

void write_something(Worker &worker, Role role) {
  switch (worker.pick(8)) {
    case 0:
      return change_attribute(worker);
    case 1:
      return write_several(worker);
    case 2:
      return write_under_own_lock(worker);
    case 3:
      return role == Role::kVictim ? write_one(worker) : change_instances(worker);
    default:
      return write_one(worker);
  }
}

// The settings and the logger, which threads share.
void use_settings(Worker &worker) {
  if (zrcfg_get_encryptmode() != 2 || zrcfg_init_tr069_process_flag() != 0 ||
      zrcfg_get_tr069_process_flag() != 1) {
    fault(worker.board, "settings");
  }
  if (zrcfg_logger(7, "contention", static_cast<int>(worker.number), "%s\n", "a line") != 0) {
    fault(worker.board, "log");
  }
}

}  // namespace

void run_worker(Board &board, unsigned worker, Role role, unsigned seed) {
  Worker self{board, board.states[worker], worker, std::mt19937(seed), {}, 0};
  for (unsigned instance = 0; instance < kInstances; ++instance) {
    // A victim's predecessor may have died before its last write, or behind it.
    self.seen[worker][instance] = static_cast<int64_t>(self.state.written[instance].load());
  }
  while (!board.go) {
    (void)usleep(100);
  }
  while (!board.stop) {
    if (role == Role::kReader || self.pick(3) == 0) {
      read_something(self);
    } else {
      write_something(self, role);
    }
    if (self.pick(64) == 0) {
      use_settings(self);
    }
  }
}

void verify(Board &board) {
  std::set<uint32_t> numbers;
  for (unsigned worker = 0; worker < board.workers; ++worker) {
    WorkerState &state = board.states[worker];
    for (unsigned instance = 0; instance < kInstances; ++instance) {
      char value[ZRCFG_VALUE_SIZE] = "";
      (void)zrcfg_getsingleparamval(value_url(instance).c_str(), value_name(worker).c_str(), value,
                                    ZRCFG_WAIT_FOREVER);
      const int64_t sequence = sequence_of(value, worker, instance);
      // Of a worker that was killed in a write the one or the other; else they are the same, or the
      // last write gave up.
      if (sequence != static_cast<int64_t>(state.written[instance]) &&
          sequence != static_cast<int64_t>(state.intended[instance])) {
        fault(board, "lost update: worker %u has %s", worker, value);
      }
    }
    for (const std::atomic<uint32_t> &number : state.owned) {
      if (number == 0) {
        continue;
      }
      check_owner(board, worker, number);
      if (!numbers.insert(number).second) {
        fault(board, "instance %u has two owners", number.load());
      }
    }
  }
  char counter[ZRCFG_VALUE_SIZE] = "";
  (void)zrcfg_getsingleparamval(kTop, kCounter, counter, ZRCFG_WAIT_FOREVER);
  Worker nobody{board, board.states[0], 0, std::mt19937(1), {}, 0};
  const size_t listed = listed_instances(nobody).size() - 1;
  if (std::to_string(numbers.size()) != counter || listed != numbers.size()) {
    fault(board, "%zu instances, %zu listed, counter %s", numbers.size(), listed, counter);
  }
}

}  // namespace contention

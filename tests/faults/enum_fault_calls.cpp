// The lists of the enumeration, to be put under faults, on one known tree.
#include "tests/faults/enum_fault_calls.h"

#include <stdlib.h>

#include "enum/sub_objects.h"
#include "tests/support/property_builder.h"

namespace zrcfg_test {

NODE_INFO output_mark;

namespace {

SubObjName name_mark;

Given take(uint32_t result, NODE_INFO *head, const NODE_INFO *tail) {
  Given given;
  given.result = result;
  given.written = head != &output_mark;
  if (!given.written) {
    return given;
  }
  given.tail_is_null = tail == nullptr;
  const NODE_INFO *last = nullptr;
  for (const NODE_INFO *node = head; node != nullptr; node = node->next) {
    given.nodes.emplace_back(node->name, node->rw);
    last = node;
  }
  given.tail_is_last = tail == last;
  (void)zrcfg_allnode_free(head);
  return given;
}

Given take(uint32_t result, SubObjName *head) {
  Given given;
  given.result = result;
  given.written = head != &name_mark;
  while (given.written && head != nullptr) {
    given.nodes.emplace_back(head->name, 0);
    SubObjName *const next = head->next;
    free(head);
    head = next;
  }
  return given;
}

Given run_all(int recursive) {
  NODE_INFO *head = &output_mark;
  const int result = zrcfg_allnode_get("A.", recursive, &head, 0);
  return take(static_cast<uint32_t>(result), head, nullptr);
}

}  // namespace

void PrintTo(const ListCall &call, std::ostream *out) {
  *out << call.name;
}

Given run_names() {
  SubObjName *head = &name_mark;
  const uint32_t result = zrcfg_getallsubobj("A.", &head);
  return take(result, head);
}

Given run_construct() {
  SubObjName *head = &name_mark;
  const uint32_t result = constructObjList("A/", &head);
  return take(result, head);
}

Given run_children() {
  NODE_INFO *head = &output_mark;
  NODE_INFO *tail = &output_mark;
  const int result = zrcfg_getsubobjinfo("A.", &head, &tail, 0);
  return take(static_cast<uint32_t>(result), head, tail);
}

Given run_object() {
  NODE_INFO *head = &output_mark;
  NODE_INFO *tail = &output_mark;
  const uint32_t result = zrcfg_getallnodeinfo("A.", &head, &tail, 0);
  return take(result, head, tail);
}

Given run_flat() {
  return run_all(0);
}

Given run_walk() {
  return run_all(1);
}

const std::vector<ListedNode> kNames = {{"B", 0}, {"D", 0}, {"T", 0}};
const std::vector<ListedNode> kChildren = {{"A.B.", 1}, {"A.D.", 2}, {"A.T.", 3}};
const std::vector<ListedNode> kObject = {{"A.", 2}, {"A.P", 1}, {"A.Q", 3}};
const std::vector<ListedNode> kFlat = {{"A.", 2},   {"A.P", 1},  {"A.Q", 3},
                                       {"A.B.", 1}, {"A.D.", 2}, {"A.T.", 3}};
const std::vector<ListedNode> kWalk = {{"A.", 2},     {"A.P", 1},     {"A.Q", 3},   {"A.B.", 1},
                                       {"A.B.R", 1},  {"A.B.C.", 0},  {"A.D.", 2},  {"A.T.", 3},
                                       {"A.T.1.", 1}, {"A.T.1.S", 2}, {"A.T.2.", 1}};

void write_list_tree() {
  const auto object = [](uint8_t rw, const std::vector<std::pair<std::string, uint8_t>> &params) {
    PropertyFile file;
    file.header.rw = rw;
    for (const auto &[name, right] : params) {
      file.add(name, "value").rw = right;
    }
    return file;
  };
  write_property("A/", object(2, {{"P", 1}, {"Q", 3}}));
  write_property("A/B/", object(1, {{"R", 1}}));
  write_property("A/B/C/", object(0, {}));
  write_property("A/D/", object(2, {}));
  write_property("A/T/", object(3, {}));
  write_property("A/T/0/", object(1, {}));
  write_property("A/T/1/", object(1, {{"S", 2}}));
  write_property("A/T/2/", object(1, {}));
}

// Whether the nodes are some of the list's, in its order.
bool is_part_of(const std::vector<ListedNode> &nodes, const std::vector<ListedNode> &list) {
  size_t next = 0;
  for (const ListedNode &node : nodes) {
    while (next < list.size() && list[next] != node) {
      ++next;
    }
    if (next++ >= list.size()) {
      return false;
    }
  }
  return true;
}

}  // namespace zrcfg_test

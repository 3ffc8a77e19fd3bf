// A request list for any object: two of its names and one that it does not have, every buffer a
// heap block of the exact size.
#include "fuzz/request.h"

#include <string.h>

#include "fuzz/check.h"

namespace zrcfg_fuzz {

Request::Request(const AnyObject &object, size_t value_size, const char *text)
    : value_size_(value_size) {
  const std::string names[kNodes] = {object.first_name, kUnknownName, object.last_name};
  for (size_t i = 0; i < kNodes; ++i) {
    nodes_[i] = std::make_unique<ParamValueEntry>();
    buffers_[i] = std::make_unique<Buffer>(value_size);
    // A name that fills its field has no terminator.
    memcpy(nodes_[i]->name, names[i].data(), names[i].size());
    memcpy(*buffers_[i], text, strlen(text));
    nodes_[i]->value = *buffers_[i];
    nodes_[i]->fault = &faults_[i];
  }
  nodes_[0]->next = nodes_[1].get();
  nodes_[1]->next = nodes_[2].get();
}

void Request::set_faults(uint32_t code) {
  faults_.fill(code);
}

void Request::set_changed() {
  for (const auto &node : nodes_) {
    node->changed = 1;
    strcpy(node->old_value, kNewValue);
  }
}

void Request::look_at_values() const {
  for (size_t i = 0; i < kNodes; ++i) {
    require(is_terminated(*buffers_[i], value_size_), "a value has no end");
    require(is_terminated(nodes_[i]->old_value, sizeof nodes_[i]->old_value),
            "an old value has no end");
  }
}

}  // namespace zrcfg_fuzz

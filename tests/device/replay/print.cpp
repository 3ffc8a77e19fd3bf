// Printing results so that they can be compared between targets, and the lists that calls take.
#include <stddef.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "tests/device/replay/replay.h"

namespace zrcfg_test {

const std::string &Line::word(size_t i) const {
  static const std::string none;
  return i < words.size() ? words[i] : none;
}

long long Line::number(size_t i) const {
  return strtoll(text(i), nullptr, 0);
}

std::vector<std::string> Line::rest(size_t first) const {
  const size_t from = first < words.size() ? first : words.size();
  return std::vector<std::string>(words.begin() + static_cast<ptrdiff_t>(from), words.end());
}

void print_result(uint32_t result) {
  printf("  = %u", result);
}

void print_result(int result) {
  printf("  = %d", result);
}

void print_text(const char *label, const std::string &text) {
  printf(" %s=\"", label);
  for (const char c : text) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte >= 0x7F || byte < 0x20 || c == '"' || c == '\\') {
      printf("\\x%02x", byte);
    } else {
      putchar(c);
    }
  }
  putchar('"');
}

void print_number(const char *label, unsigned long number) {
  printf(" %s=%lu", label, number);
}

void print_bytes(const char *label, const void *bytes, size_t size) {
  printf(" %s=", label);
  for (size_t i = 0; i < size; ++i) {
    printf("%02x", static_cast<const unsigned char *>(bytes)[i]);
  }
}

void end_line() {
  putchar('\n');
}

Pair split_pair(const std::string &word) {
  const size_t sign = word.find('=');
  if (sign == std::string::npos) {
    return {word, ""};
  }
  return {word.substr(0, sign), word.substr(sign + 1)};
}

RequestList::RequestList(const std::vector<std::string> &words) {
  for (const std::string &word : words) {
    Pair pair = split_pair(word);
    const bool marked = !pair.name.empty() && pair.name[0] == '!';
    if (marked) {
      pair.name.erase(0, 1);
    }
    buffers_.push_back({{}, 0, marked});
    Buffer &buffer = buffers_.back();
    memcpy(buffer.text, pair.value.c_str(), std::min(pair.value.size(), sizeof buffer.text - 1));
    nodes_.push_back({});
    ParamValueEntry &node = nodes_.back();
    memcpy(node.name, pair.name.c_str(), std::min(pair.name.size(), sizeof node.name - 1));
    node.value = buffer.text;
    node.fault = &buffer.fault;
  }
  for (size_t i = 0; i + 1 < nodes_.size(); ++i) {
    nodes_[i].next = &nodes_[i + 1];
  }
}

void RequestList::mark_faults() {
  for (Buffer &buffer : buffers_) {
    buffer.fault = buffer.marked ? 9003 : 0;
  }
}

void RequestList::print() const {
  for (size_t i = 0; i < nodes_.size(); ++i) {
    const ParamValueEntry &node = nodes_[i];
    printf("   ");
    print_text("name", field_text(node.name));
    print_text("value", field_text(buffers_[i].text));
    print_bytes("word", reinterpret_cast<const char *>(&node.fault) - 8, 4);
    print_number("changed", node.changed);
    print_number("fault", buffers_[i].fault);
    print_text("old", field_text(node.old_value));
    end_line();
  }
}

}  // namespace zrcfg_test

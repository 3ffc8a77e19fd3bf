// What reading and writing one value has to do to the bytes of any property file, well-formed or
// not: a second, plain account that the library's results are compared with.
#include "tests/core/value_model.h"

#include <vector>

#include "support/property_builder.h"

namespace zrcfg_test {
namespace {

constexpr size_t kMaxValue = 255;
constexpr uint32_t kMaxLength = 16u << 20;

struct Parsed {
  bool ok = false;
  size_t stored_records = 0;
  std::vector<std::string> names;  // Of the records that are served.
  std::vector<std::string> lines;
  size_t value_offset = 0;
};

std::vector<std::string> split_lines(const std::string &section) {
  std::vector<std::string> lines;
  std::string line;
  for (const char c : section) {
    if (c == '\0') {
      break;
    }
    if (c != '\n') {
      line += c;
      continue;
    }
    if (!line.empty()) {
      lines.push_back(line);
    }
    line.clear();
  }
  if (!line.empty()) {
    lines.push_back(line);
  }
  return lines;
}

Parsed parse(const std::string &file) {
  Parsed parsed;
  if (file.size() < 4) {
    return parsed;
  }
  const uint32_t length = length_word(file);
  if (length < kHeadBytes || length > kMaxLength) {
    return parsed;
  }
  parsed.ok = true;
  parsed.value_offset = 4 + size_t{length};
  parsed.stored_records = (length - kHeadBytes) / kParamBytes;
  for (size_t i = 0; i < parsed.stored_records % 256; ++i) {
    const size_t offset = 4 + kHeadBytes + i * kParamBytes + 8;
    std::string field = offset < file.size() ? file.substr(offset, 64) : std::string();
    field.resize(64, '\0');
    parsed.names.push_back(field.substr(0, field.find('\0')));
  }
  if (file.size() > parsed.value_offset) {
    parsed.lines = split_lines(file.substr(parsed.value_offset));
  }
  return parsed;
}

}  // namespace

ReadOutcome model_read(const std::string &file, const std::string &name) {
  const Parsed parsed = parse(file);
  if (!parsed.ok) {
    return {10, std::nullopt};
  }
  for (size_t i = 0; i < parsed.names.size(); ++i) {
    if (i >= parsed.lines.size()) {
      return {10, std::nullopt};
    }
    if (parsed.names[i] == name) {
      const std::string &line = parsed.lines[i];
      return {0, line[0] == '\r' ? std::string() : line.substr(0, kMaxValue)};
    }
  }
  return {0, std::nullopt};
}

WriteOutcome model_write(const std::string &file, const std::string &name,
                         const std::string &value) {
  const Parsed parsed = parse(file);
  if (!parsed.ok) {
    return {10, file, std::nullopt, std::nullopt};
  }
  WriteOutcome outcome{0, file, 1, std::nullopt};
  if (parsed.stored_records == 0 || parsed.lines.empty()) {
    outcome.result = 10;
    return outcome;
  }
  bool found = false;
  std::string section;
  for (size_t i = 0; i < parsed.names.size() && i < parsed.lines.size(); ++i) {
    std::string line = parsed.lines[i];
    if (parsed.names[i] == name) {
      found = true;
      outcome.old_value = line.substr(0, kMaxValue);
      if (line == value) {
        outcome.changed = 0;
        return outcome;
      }
      line = value.empty() ? "\r" : value;
    }
    section += line + "\n";
  }
  if (!found) {
    outcome.result = 5;
  } else if (parsed.stored_records > 255) {
    outcome.result = 10;
  } else if (section.size() > 256 * parsed.names.size()) {
    outcome.result = 15;
  } else {
    outcome.file = file.substr(0, parsed.value_offset) + section;
  }
  return outcome;
}

}  // namespace zrcfg_test

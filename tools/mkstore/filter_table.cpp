// The filters of a store: their numbers, the file that holds them, and what stays unchecked.
#include "tools/mkstore/filter_table.h"

#include <map>

namespace zrcfg::mkstore {

namespace {

// In single quotes UCI takes every byte as it is, but for the quote itself.
std::string quoted(const std::string &text) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') {
      result += "'\\''";
    } else {
      result += c;
    }
  }
  return result + "'";
}

void note_unchecked(const std::string &path, const Filter &filter, FilterTable &table) {
  std::string kinds;
  for (size_t kind = 0; kind < kUncheckedKinds; ++kind) {
    if (filter.unchecked[kind]) {
      ++table.unchecked[kind];
      kinds += (kinds.empty() ? "" : ", ");
      kinds += unchecked_name(static_cast<Unchecked>(kind));
    }
  }
  if (!kinds.empty()) {
    table.unchecked_parameters.push_back(path + ": " + kinds);
  }
}

}  // namespace

FilterTable number_filters(Model &model) {
  FilterTable table;
  std::map<std::string, uint32_t> numbers;
  for (Object &object : model.objects) {
    for (Parameter &parameter : object.parameters) {
      const Filter &filter = parameter.filter;
      note_unchecked(object.path + parameter.name, filter, table);
      if (filter.expression.empty()) {
        continue;
      }
      ++table.parameters;
      const auto next = static_cast<uint32_t>(table.expressions.size() + 1);
      const auto [found, fresh] = numbers.emplace(filter.expression, next);
      if (fresh) {
        table.expressions.push_back(filter.expression);
      }
      parameter.filter_number = found->second;
    }
  }
  return table;
}

std::string filter_file_text(const FilterTable &table) {
  std::string text;
  for (size_t i = 0; i < table.expressions.size(); ++i) {
    text += (i == 0 ? "" : "\n");
    text += "config filter 'filter" + std::to_string(i + 1) + "'\n";
    text += "\toption value " + quoted(table.expressions[i]) + "\n";
  }
  return text;
}

std::string filter_summary(const FilterTable &table) {
  std::string text = std::to_string(table.expressions.size()) + " filters for " +
                     std::to_string(table.parameters) + " parameters; unchecked:";
  std::string kinds;
  for (size_t kind = 0; kind < kUncheckedKinds; ++kind) {
    if (table.unchecked[kind] != 0) {
      kinds += (kinds.empty() ? " " : ", ");
      kinds += std::string(unchecked_name(static_cast<Unchecked>(kind))) + " " +
               std::to_string(table.unchecked[kind]);
    }
  }
  return text + (kinds.empty() ? " nothing" : kinds);
}

}  // namespace zrcfg::mkstore

// Whether a store holds what it should, value by value, before anything is timed.
#include "bench/verify.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "bench/workload.h"

namespace bench {
namespace {

using Nodes = std::vector<std::pair<std::string, unsigned>>;

constexpr char kTable[] =
    "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.";
constexpr char kTableParent[] = "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.";
constexpr char kCounter[] = "WANIPConnectionNumberOfEntries";

void require(bool condition, const Store &store, const std::string &place) {
  if (!condition) {
    throw std::runtime_error(std::string(store.name) + " is wrong at " + place);
  }
}

std::string read_text(const Store &store, const std::string &url, const std::string &name) {
  char value[ZRCFG_VALUE_SIZE] = "(untouched)";
  require(store.read(url.c_str(), name.c_str(), value), store, url + name);
  return value;
}

void verify_bulk(const Store &store, const Object &object) {
  std::vector<std::string> names;
  std::vector<std::pair<std::string, std::string>> expected;
  for (const Parameter &parameter : object.parameters) {
    names.push_back(parameter.name);
    expected.emplace_back(object.url + parameter.name, parameter.value);
  }
  if (names.empty()) {
    return;
  }
  RequestList list(names);
  require(store.read_many(object.url.c_str(), list.head()), store, object.url);
  for (size_t i = 0; i < names.size(); ++i) {
    require(list.value(i) == object.parameters[i].value, store, object.url + names[i]);
  }
  std::vector<std::pair<std::string, std::string>> listed;
  require(store.list_values(
              object.url.c_str(),
              [](void *context, const char *name, unsigned, const char *value) {
                static_cast<decltype(listed) *>(context)->emplace_back(name, value);
              },
              &listed),
          store, object.url);
  std::sort(listed.begin(), listed.end());
  std::sort(expected.begin(), expected.end());
  require(listed == expected, store, object.url + " as a list");
}

Nodes listing(const Store &store) {
  Nodes nodes;
  require(store.enumerate(
              kRoot,
              [](void *context, const char *name, unsigned rw, const char *) {
                static_cast<Nodes *>(context)->emplace_back(name, rw);
              },
              &nodes),
          store, "the listing");
  std::sort(nodes.begin(), nodes.end());
  return nodes;
}

Nodes expected_listing(const Tree &tree) {
  Nodes nodes;
  for (const Object &object : tree) {
    if (object.in_template) {
      continue;
    }
    nodes.emplace_back(object.url, object.rw);
    for (const Parameter &parameter : object.parameters) {
      nodes.emplace_back(object.url + parameter.name, parameter.rw);
    }
  }
  std::sort(nodes.begin(), nodes.end());
  return nodes;
}

// Every value is changed, alone and then in bulk, found again, and put back.
void verify_writes(const Store &store, const Object &object) {
  std::vector<std::string> names;
  for (const Parameter &parameter : object.parameters) {
    names.push_back(parameter.name);
    const std::string other = parameter.value + "~";
    require(store.write(object.url.c_str(), parameter.name.c_str(), other.c_str()), store,
            object.url + parameter.name);
    require(read_text(store, object.url, parameter.name) == other, store,
            object.url + parameter.name + ", written");
  }
  if (names.empty()) {
    return;
  }
  RequestList list(names);
  for (size_t i = 0; i < names.size(); ++i) {
    list.set_value(i, object.parameters[i].value);
  }
  require(store.write_many(object.url.c_str(), list.head()), store, object.url);
  verify_bulk(store, object);
}

// A new instance has the template's values and is counted; removed, it leaves nothing behind.
void verify_instances(const Store &store, const Tree &tree) {
  const Nodes before = listing(store);
  const std::string count = read_text(store, kTableParent, kCounter);
  uint32_t index = 0;
  require(store.add(kTable, &index) && index > 0, store, "a new instance");
  require(read_text(store, kTableParent, kCounter) == std::to_string(std::stoi(count) + 1), store,
          kCounter);
  const std::string from = std::string(kTable) + "0.";
  const std::string to = kTable + std::to_string(index) + ".";
  for (Object object : tree) {
    if (object.url.compare(0, from.size(), from) == 0) {
      object.url = to + object.url.substr(from.size());
      verify_bulk(store, object);
    }
  }
  require(listing(store).size() > before.size(), store, "the new instance in the listing");
  require(store.remove(kTable, index), store, "the removal");
  require(listing(store) == before && read_text(store, kTableParent, kCounter) == count, store,
          "the listing after the removal");
}

}  // namespace

void verify_values(const Store &store, const Tree &tree) {
  for (const Object &object : tree) {
    for (const Parameter &parameter : object.parameters) {
      require(read_text(store, object.url, parameter.name) == parameter.value, store,
              object.url + parameter.name);
    }
  }
}

void verify_store(const Store &store, const Tree &tree) {
  verify_values(store, tree);
  for (const Object &object : tree) {
    verify_bulk(store, object);
  }
  require(listing(store) == expected_listing(tree), store, "the listing");
  for (size_t i = 0; i < tree.size(); i += 16) {
    verify_writes(store, tree[i]);
  }
  verify_instances(store, tree);
  verify_values(store, tree);
}

}  // namespace bench

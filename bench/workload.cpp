// The workloads W1 to W7: what one operation does, the same for every store.
#include "bench/workload.h"

#include <string.h>

#include <algorithm>
#include <memory>
#include <random>
#include <stdexcept>

namespace bench {
namespace {

constexpr size_t kPlaces = 256;
constexpr size_t kValuesOfObject = 40;
constexpr size_t kValuesWritten = 10;
constexpr char kGrownTable[] =
    "InternetGatewayDevice.WANDevice.1.WANConnectionDevice.1.WANIPConnection.";

// One parameter, and whether its value is at present the other one.
struct Place {
  std::string url;
  std::string name;
  std::string values[2];
  bool other[kMostMedia] = {};
};

// A value of another length. Even places alternate with a longer one, odd ones with a shorter one,
// so that among places beside each other as many files grow as shrink.
std::string other_value(const std::string &value, size_t place) {
  if (value.size() < 2) {
    return place % 2 == 0 ? value + "10" : "";
  }
  return place % 2 == 0 ? value + "1" : value.substr(1);
}

// Every parameter that a client may name, counters left out, in an order by chance.
std::vector<Place> shuffled_places(const Tree &tree) {
  std::vector<Place> places;
  for (const Object &object : tree) {
    for (const Parameter &parameter : object.parameters) {
      if (!object.in_template && parameter.name.find("NumberOfEntries") == std::string::npos) {
        places.push_back({object.url, parameter.name, {parameter.value, ""}});
      }
    }
  }
  std::mt19937 random(5);
  std::shuffle(places.begin(), places.end(), random);
  for (size_t i = 0; i < places.size(); ++i) {
    std::string &value = places[i].values[0];
    // An empty value alternates with a longer one only, so its neighbour in turn is no matter.
    places[i].values[1] = other_value(value, value.empty() ? 0 : i);
  }
  return places;
}

std::vector<Place> take(const std::vector<Place> &from, size_t at, size_t count) {
  return {from.begin() + static_cast<std::ptrdiff_t>(at),
          from.begin() + static_cast<std::ptrdiff_t>(at + count)};
}

Workload read_one(std::vector<Place> places) {
  return {"W1", "read one value", [places](const Store &store, unsigned, unsigned i) {
            const Place &place = places[i % places.size()];
            char value[ZRCFG_VALUE_SIZE];
            return store.read(place.url.c_str(), place.name.c_str(), value);
          }};
}

Workload write_changed(std::vector<Place> places) {
  return {"W2", "write one value, changed",
          [places](const Store &store, unsigned medium, unsigned i) mutable {
            Place &place = places[i % places.size()];
            bool &other = place.other[medium];
            other = !other;
            return store.write(place.url.c_str(), place.name.c_str(), place.values[other].c_str());
          }};
}

Workload write_unchanged(std::vector<Place> places) {
  return {"W3", "write one value, unchanged", [places](const Store &store, unsigned, unsigned i) {
            const Place &place = places[i % places.size()];
            return store.write(place.url.c_str(), place.name.c_str(), place.values[0].c_str());
          }};
}

// An object with a request list for some of its parameters, in both sets of values.
struct Request {
  std::string url;
  RequestList list[2];
  bool other[kMostMedia] = {};
};

std::vector<std::shared_ptr<Request>> requests(const Tree &tree, size_t first, size_t count) {
  std::vector<std::shared_ptr<Request>> made;
  for (const Object &object : tree) {
    if (object.in_template || object.parameters.size() != kValuesOfObject) {
      continue;
    }
    std::vector<std::string> names;
    for (size_t i = first; i < first + count; ++i) {
      names.push_back(object.parameters[i].name);
    }
    made.push_back(
        std::make_shared<Request>(Request{object.url, {RequestList(names), RequestList(names)}}));
    for (size_t i = 0; i < count; ++i) {
      const std::string &value = object.parameters[first + i].value;
      made.back()->list[0].set_value(i, value);
      made.back()->list[1].set_value(i, value.empty() ? value : other_value(value, made.size()));
    }
  }
  if (made.empty()) {
    throw std::runtime_error("no object with 40 parameters");
  }
  return made;
}

Workload read_object(const Tree &tree) {
  const auto objects = requests(tree, 0, kValuesOfObject);
  return {"W4", "read all 40 values of an object, by name",
          [objects](const Store &store, unsigned, unsigned i) {
            Request &request = *objects[i % objects.size()];
            return store.read_many(request.url.c_str(), request.list[0].head());
          }};
}

void ignore(void *, const char *, unsigned, const char *) {}

Workload list_object(const Tree &tree) {
  const auto objects = requests(tree, 0, kValuesOfObject);
  return {"W4l", "read all 40 values of an object, as a list",
          [objects](const Store &store, unsigned, unsigned i) {
            return store.list_values(objects[i % objects.size()]->url.c_str(), ignore, nullptr);
          }};
}

Workload write_object(const Tree &tree) {
  const auto objects = requests(tree, kValuesOfObject / 2, kValuesWritten);
  return {"W5", "write 10 values of an object in one call",
          [objects](const Store &store, unsigned medium, unsigned i) {
            Request &request = *objects[i % objects.size()];
            bool &other = request.other[medium];
            other = !other;
            return store.write_many(request.url.c_str(), request.list[other].head());
          }};
}

Workload enumerate_tree() {
  return {"W6", "enumerate the whole tree with access rights",
          [](const Store &store, unsigned, unsigned) {
            return store.enumerate(kRoot, ignore, nullptr);
          }};
}

Workload add_and_remove() {
  return {"W7", "add an instance with 4 objects below it, delete it",
          [](const Store &store, unsigned, unsigned) {
            uint32_t index = 0;
            return store.add(kGrownTable, &index) && store.remove(kGrownTable, index);
          }};
}

}  // namespace

RequestList::RequestList(const std::vector<std::string> &names)
    : nodes_(names.size()), values_(names.size(), std::vector<char>(ZRCFG_VALUE_SIZE)) {
  for (size_t i = 0; i < names.size(); ++i) {
    memset(static_cast<void *>(&nodes_[i]), 0, sizeof nodes_[i]);
    strncpy(nodes_[i].name, names[i].c_str(), ZRCFG_NAME_SIZE - 1);
    nodes_[i].value = values_[i].data();
    nodes_[i].next = i + 1 < names.size() ? &nodes_[i + 1] : nullptr;
  }
}

void RequestList::set_value(size_t i, const std::string &value) {
  strncpy(values_[i].data(), value.c_str(), ZRCFG_VALUE_SIZE - 1);
}

std::vector<Workload> make_workloads(const Tree &tree) {
  const std::vector<Place> places = shuffled_places(tree);
  return {read_one(take(places, 0, kPlaces)),
          write_changed(take(places, kPlaces, kPlaces)),
          write_unchanged(take(places, 2 * kPlaces, kPlaces)),
          read_object(tree),
          list_object(tree),
          write_object(tree),
          enumerate_tree(),
          add_and_remove()};
}

}  // namespace bench

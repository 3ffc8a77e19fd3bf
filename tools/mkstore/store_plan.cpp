// Which directories a store gets: headers, templates and instances, in the order of their making.
#include "tools/mkstore/store_plan.h"

#include <algorithm>
#include <set>

#include "tools/mkstore/build_error.h"
#include "tools/mkstore/model_tree.h"
#include "tools/mkstore/property_writer.h"

namespace zrcfg::mkstore {

namespace {

// A document with deep tables of many fixed entries multiplies; beyond this no device is meant.
constexpr size_t kMaxPlacements = 1000000;

struct Planner {
  const Model &model;
  const Settings &settings;
  const KeptInstances &kept;
  std::vector<Placement> placements;
};

using Wanted = std::map<uint8_t, Place>;  // A place without file: asked for by minEntries.

// The instance numbers of the table at `header`, the template not counted.
Wanted wanted_instances(const Planner &planner, const Address &header) {
  Wanted wanted;
  const auto kept = planner.kept.find(header);
  if (kept != planner.kept.end()) {
    for (const uint8_t number : kept->second) {
      wanted.emplace(number, Place{});
    }
    return wanted;
  }
  const Object &table = planner.model.objects[header.object];
  for (size_t number = 1; number <= table.min_entries; ++number) {
    wanted.emplace(static_cast<uint8_t>(number), Place{});
  }
  if (planner.settings.instances.empty()) {
    return wanted;
  }
  for_each_origin(header, [&](const Address &origin) {
    const auto found = planner.settings.instances.find(origin);
    if (found != planner.settings.instances.end()) {
      wanted.insert(found->second.begin(), found->second.end());
    }
  });
  return wanted;
}

void check_limit(const Planner &planner, const Placement &header, const Wanted &wanted) {
  if (wanted.empty()) {
    return;
  }
  const size_t limit = object_header(planner.model, planner.settings, header).max_instance;
  const auto &[highest, place] = *wanted.rbegin();
  if (highest <= limit) {
    return;
  }
  const std::string reason = header.url + std::to_string(highest) +
                             ". is above max_instance, which is " + std::to_string(limit);
  if (place.file.empty()) {
    fail_at_line(planner.model.file, planner.model.objects[header.address.object].line, reason);
  }
  fail_at_line(place.file, place.line, reason);
}

void place_object(Planner &planner, const Address &address, const std::string &url);

void add_placement(Planner &planner, const Address &address, const std::string &url, bool header) {
  if (planner.placements.size() == kMaxPlacements) {
    fail(planner.model.file,
         "the store would have more than " + std::to_string(kMaxPlacements) + " objects");
  }
  const Object &object = planner.model.objects[address.object];
  size_t longest = 0;
  for (const Parameter &parameter : object.parameters) {
    longest = std::max(longest, header ? 0 : parameter.name.size());
  }
  if (url.size() + longest > kMaxPathLength) {
    fail_at_line(
        planner.model.file, object.line,
        url + ": the path is longer than " + std::to_string(kMaxPathLength) + " characters");
  }
  planner.placements.push_back({address, header, url, {}});
}

// Places a table that is a child of the directory at `parent`, and returns its instance count.
size_t place_table(Planner &planner, const Address &header, const std::string &url) {
  add_placement(planner, header, url, true);
  const Wanted wanted = wanted_instances(planner, header);
  check_limit(planner, planner.placements.back(), wanted);
  Address instance = header;
  instance.numbers.push_back(0);
  place_object(planner, instance, url + "0.");
  for (const auto &entry : wanted) {
    instance.numbers.back() = entry.first;
    place_object(planner, instance, url + std::to_string(entry.first) + ".");
  }
  return wanted.size();
}

// The depth of the recursion is that of the model, which the length of a path bounds.
void place_object(Planner &planner, const Address &address, const std::string &url) {
  const size_t own = planner.placements.size();
  add_placement(planner, address, url, false);
  for (const size_t child : planner.model.objects[address.object].children) {
    const Object &object = planner.model.objects[child];
    const Address below{child, address.numbers};
    const std::string child_url = url + object.name + ".";
    if (!object.is_table) {
      place_object(planner, below, child_url);
      continue;
    }
    const size_t count = place_table(planner, below, child_url);
    if (const std::optional<size_t> counter = counter_index(planner.model, object)) {
      planner.placements[own].counters[*counter] = count;
    }
  }
}

// Every line of the values and attributes files must have found its directory, and a counter may
// only be set to what it counts.
void check_settings(const Planner &planner) {
  std::map<Address, const Placement *> placed;
  for (const Placement &placement : planner.placements) {
    placed.emplace(placement.address, &placement);
  }
  for (const auto &[address, wanted] : planner.settings.objects) {
    const auto found = placed.find(address);
    if (found == placed.end()) {
      fail_at_line(wanted.place.file, wanted.place.line,
                   "no instance " + url_text(planner.model, address) + " in the store");
    }
    for (const auto &[position, setting] : wanted.values) {
      const auto counter = found->second->counters.find(position);
      if (counter != found->second->counters.end() &&
          setting.value != std::to_string(counter->second)) {
        fail_at_line(setting.place.file, setting.place.line,
                     found->second->url +
                         planner.model.objects[address.object].parameters[position].name +
                         " counts instances and is " + std::to_string(counter->second));
      }
    }
  }
}

void place_roots(Planner &planner) {
  const Model &model = planner.model;
  for (const size_t root : model.roots) {
    const Address address{root, {}};
    const std::string url = model.objects[root].name + ".";
    if (model.objects[root].is_table) {
      (void)place_table(planner, address, url);  // A root has no parent that could count it.
    } else {
      place_object(planner, address, url);
    }
  }
}

}  // namespace

std::vector<Placement> plan_store(const Model &model, const Settings &settings) {
  const KeptInstances none;
  Planner planner{model, settings, none, {}};
  place_roots(planner);
  check_settings(planner);
  return std::move(planner.placements);
}

std::vector<Placement> plan_upgraded_store(const Model &model, const Settings &settings,
                                           const KeptInstances &kept) {
  Planner planner{model, settings, kept, {}};
  place_roots(planner);
  return std::move(planner.placements);
}

}  // namespace zrcfg::mkstore

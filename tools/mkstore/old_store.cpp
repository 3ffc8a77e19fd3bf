// The store that an upgrade starts from: what it has of the new model's objects.
#include "tools/mkstore/old_store.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <optional>
#include <vector>

#include "tools/mkstore/build_error.h"
#include "tools/mkstore/model_tree.h"
#include "tools/mkstore/property_writer.h"
#include "tools/mkstore/text.h"
#include "tools/store/directory_names.h"
#include "tools/store/store_walk.h"

namespace zrcfg::mkstore {

namespace {

namespace fs = std::filesystem;

struct Scan {
  const OldStore &store;
  const Model &model;
  const Settings &settings;
  UpgradeReport &upgrade;
  KeptObjects kept;
};

// Whether `inner` is `outer` or lies below it.
bool contains(const fs::path &outer, const fs::path &inner) {
  return std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end()).first == outer.end();
}

void check_apart(const std::string &store, const std::string &output) {
  std::error_code error;
  const fs::path old = fs::canonical(store, error);
  fs::path target = error ? fs::path() : fs::weakly_canonical(fs::absolute(output), error);
  if (error) {
    fail(store, "cannot be examined: " + error.message());
  }
  if (!target.has_filename()) {
    target = target.parent_path();  // A trailing slash.
  }
  if (contains(old, target) || contains(target, old)) {
    fail(output, "the new store and the old one cannot be in one directory");
  }
}

// The names of a directory's directories, numbers first. `path` ends in a slash, or is the root.
std::vector<std::string> directories_in(const OldStore &store, const std::string &path) {
  zrcfg_store::DirectoryNames names(store.root, path.c_str());
  std::vector<std::string> result;
  for (const zrcfg_store::Entry *entry = names.next(); entry != nullptr; entry = names.next()) {
    if (std::strchr(entry->name, '.') != nullptr) {
      continue;  // No URL can have such a name.
    }
    const bool directory = entry->kind == zrcfg_store::EntryKind::kDirectory;
    // A device's root may have links in place of directories, and directories that are no objects.
    const bool linked = path.empty() && entry->kind == zrcfg_store::EntryKind::kLink;
    if (path.empty() ? (directory || linked) && zrcfg_store::is_root_object(store.root, entry->name)
                     : directory) {
      result.emplace_back(entry->name);
    }
  }
  if (names.error() != 0) {
    fail(store.path + "/" + path, std::string("cannot be read: ") + std::strerror(names.error()));
  }
  return result;
}

size_t count_objects(const OldStore &store, const std::string &url) {
  size_t count = 0;
  zrcfg_store::ObjectPlace place;
  if (!place.set_url(url.c_str())) {
    return 1;  // Its path is too long for a walk, and for the library.
  }
  const zrcfg_store::WalkCalls calls = {[](const zrcfg_store::ObjectPlace &, void *context) {
                                          ++*static_cast<size_t *>(context);
                                          return zrcfg_store::Walk::kGoOn;
                                        },
                                        nullptr, &count};
  (void)zrcfg_store::walk_objects(store.root, place, calls);  // Nothing stops it.
  return count;
}

void report_dropped(Scan &scan, const char *kind, const std::string &url,
                    const std::string &reason) {
  const size_t count = count_objects(scan.store, url);
  report(scan.upgrade, Outcome::kDropped, kind, url,
         reason + (count > 1 ? ", with " + std::to_string(count - 1) + " objects below" : ""));
}

void scan_object(Scan &scan, const Address &address, const std::string &url);

std::string path_of(std::string url) {
  std::replace(url.begin(), url.end(), '.', '/');
  return url;
}

// A number below a single object is an instance of the table that it was.
void drop_former_instance(Scan &scan, const std::string &url, const std::string &number) {
  if (number != "0") {
    report_dropped(scan, "instance", url + number + ".", "not a table in the model");
  }
}

// Takes an instance, unless its number cannot stay.
void scan_instance(Scan &scan, Address address, const std::string &url, const std::string &name,
                   size_t limit, std::set<uint8_t> &numbers) {
  const std::optional<size_t> number = parse_count(name, kMaxInstances);
  if (number && std::to_string(*number) != name) {
    report_dropped(scan, "instance", url + name + ".", "not an instance number");
    return;
  }
  if (!number || *number > limit) {
    report_dropped(scan, "instance", url + name + ".",
                   "above max_instance, which is " + std::to_string(limit));
    return;
  }
  if (*number == 0) {
    return;
  }
  numbers.insert(static_cast<uint8_t>(*number));
  address.numbers.push_back(static_cast<uint8_t>(*number));
  scan_object(scan, address, url + name + ".");
}

// The lowest numbers that are free, until the table has the model's least number of instances.
void add_missing(Scan &scan, const Address &header, const std::string &url,
                 std::set<uint8_t> &numbers) {
  const size_t least = scan.model.objects[header.object].min_entries;
  for (size_t number = 1; numbers.size() < least && number <= kMaxInstances; ++number) {
    if (numbers.insert(static_cast<uint8_t>(number)).second) {
      report(scan.upgrade, Outcome::kAdded, "instance", url + std::to_string(number) + ".",
             "the model has at least " + std::to_string(least));
    }
  }
}

void scan_table(Scan &scan, const Address &header, const std::string &url) {
  scan.kept.objects.insert(header);
  const size_t limit =
      object_header(scan.model, scan.settings, Placement{header, true, url, {}}).max_instance;
  std::set<uint8_t> numbers;
  bool was_table = false;
  for (const std::string &name : directories_in(scan.store, path_of(url))) {
    if (!zrcfg_store::is_instance_name(name.c_str())) {
      report_dropped(scan, "object", url + name + ".", "not in the model");
      continue;
    }
    was_table = true;
    scan_instance(scan, header, url, name, limit, numbers);
  }
  if (was_table) {
    add_missing(scan, header, url, numbers);
    scan.kept.instances.emplace(header, std::move(numbers));
  }
}

// Whether the directory has instances, as that of a table.
bool scan_children(Scan &scan, const std::vector<size_t> &children, const Numbers &numbers,
                   const std::string &url) {
  bool has_numbers = false;
  for (const std::string &name : directories_in(scan.store, path_of(url))) {
    if (zrcfg_store::is_instance_name(name.c_str())) {
      drop_former_instance(scan, url, name);
      has_numbers = true;
      continue;
    }
    const size_t child = find_child(scan.model, children, name);
    const std::string child_url = url + name + ".";
    if (child == kNoObject) {
      report_dropped(scan, "object", child_url, "not in the model");
    } else if (scan.model.objects[child].is_table) {
      scan_table(scan, Address{child, numbers}, child_url);
    } else {
      scan_object(scan, Address{child, numbers}, child_url);
    }
  }
  return has_numbers;
}

// The depth of the recursion is that of the model, which the length of a path bounds.
void scan_object(Scan &scan, const Address &address, const std::string &url) {
  scan.kept.objects.insert(address);
  if (scan_children(scan, scan.model.objects[address.object].children, address.numbers, url)) {
    scan.kept.with_numbers.insert(address);
  }
}

}  // namespace

OldStore::OldStore(const std::string &old, const std::string &output) : path(old) {
  check_apart(old, output);
  root = open(old.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (root == -1) {
    fail(old, std::string("cannot be read: ") + std::strerror(errno));
  }
  bool empty = true;
  try {
    empty = directories_in(*this, "").empty();
  } catch (...) {
    (void)close(root);  // Only read.
    throw;
  }
  if (empty) {
    (void)close(root);
    fail(old, "is not a store, for no directory in it has a property file");
  }
}

OldStore::~OldStore() {
  (void)close(root);  // Only read.
}

KeptObjects find_kept_objects(const OldStore &store, const Model &model, const Settings &settings,
                              UpgradeReport &upgrade) {
  Scan scan{store, model, settings, upgrade, {}};
  (void)scan_children(scan, model.roots, {}, "");  // The root is no object.
  if (scan.kept.objects.empty()) {
    fail(store.path, "is a store of another model, for none of its roots is in the new one");
  }
  return std::move(scan.kept);
}

}  // namespace zrcfg::mkstore

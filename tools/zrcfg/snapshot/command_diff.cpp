// diff A [B [URL]]: compares stores, snapshots and configuration texts.
#include <stdio.h>
#include <string.h>
#include <sys/stat.h>

#include "core/store_file.h"
#include "tools/store/store_walk.h"
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/input_file.h"
#include "tools/zrcfg/report.h"
#include "tools/zrcfg/snapshot/difference.h"
#include "tools/zrcfg/snapshot/export_objects.h"
#include "tools/zrcfg/snapshot/snapshot_file.h"
#include "tools/zrcfg/snapshot/store_copy.h"

namespace zrcfg_tool {
namespace {

constexpr int kExitSame = 0;
constexpr int kExitDifferent = 1;
constexpr int kExitTrouble = 2;

// One of the two things that are compared.
class Side {
 public:
  // Opens a store, or reads a file. Reports and returns false when it is none.
  bool open(const char *name) {
    const bool live = strcmp(name, "-") == 0;
    name_ = live ? zrcfg::kStoreRoot : name;
    struct stat status;
    if (live || (stat(name, &status) == 0 && S_ISDIR(status.st_mode))) {
      is_store_ = true;
      return root_.open(live ? nullptr : name);
    }
    Bytes file;
    if (!read_input_file(name, file)) {
      return false;
    }
    if (looks_like_snapshot(file)) {
      return decode_snapshot(file, name, scope_, own_);
    }
    has_attributes_ = false;
    if (!read_export(file, scope_, own_)) {
      complain("%s: neither a snapshot nor a configuration text", name);
      return false;
    }
    return true;
  }

  // Reads a store's objects, as far as they are compared.
  bool read(const char *scope, int timeout) {
    if (!is_store_) {
      return true;
    }
    if (!copy_.read(root_, scope, timeout, Accepted::kWellFormed)) {
      return false;
    }
    if (copy_.objects().count() == 0 && !has_object()) {
      complain("%s: no store is there", name_);
      return false;
    }
    if (copy_.moment() == Moment::kSeveral) {
      complain("%s: kept changing while it was read", name_);
    }
    return true;
  }

  const char *scope() const { return scope_.text; }
  bool has_attributes() const { return has_attributes_; }
  // Whether it is a text that holds nothing, not even an object that it would be about.
  bool is_empty() const { return !is_store_ && own_.count() == 0; }
  const char *name() const { return name_; }
  const ObjectSet &objects() const { return is_store_ ? copy_.objects() : own_; }

  // Whether it has objects of the root that the URL begins with.
  bool has_root_of(const char *url) const {
    char root[ZRCFG_URL_SIZE];
    copy_root_name(url, root);
    if (is_store_) {
      return zrcfg_store::is_root_object(root_.fd, root);
    }
    const size_t length = strlen(root) + 1;  // With the dot.
    for (size_t i = 0; i < own_.count(); ++i) {
      if (strncmp(own_.url(i), url, length) == 0) {
        return true;
      }
    }
    return false;
  }

 private:
  // Whether a store has any object, wherever.
  bool has_object() const {
    const auto stop = [](const zrcfg_store::ObjectPlace &, void *) {
      return zrcfg_store::Walk::kStop;
    };
    return !zrcfg_store::walk_objects(root_.fd, {}, {stop, nullptr, nullptr});
  }

  const char *name_ = nullptr;
  bool is_store_ = false;
  bool has_attributes_ = true;
  ObjectUrl scope_ = {};
  ObjectSet own_;
  StoreRoot root_;
  StoreCopy copy_;
};

// Narrows the scope to another; false when they have nothing in common.
bool narrow(ObjectUrl &scope, const char *other) {
  if (is_within(other, scope.text)) {
    memcpy(scope.text, other, strlen(other) + 1);
    return true;
  }
  return is_within(scope.text, other);
}

// Whether both have objects of a root, that of `scope` if it is not the whole store.
bool share_root(const Side &a, const Side &b, const char *scope) {
  if (scope[0] != '\0') {
    return a.has_root_of(scope) && b.has_root_of(scope);
  }
  for (size_t i = 0; i < a.objects().count(); ++i) {
    if (b.has_root_of(a.objects().url(i))) {
      return true;
    }
  }
  return false;
}

bool has_object_in(const ObjectSet &objects, const char *scope) {
  for (size_t i = 0; i < objects.count(); ++i) {
    if (is_within(objects.url(i), scope)) {
      return true;
    }
  }
  return false;
}

bool has_template_in(const char *url) {
  return strstr(url, ".0.") != nullptr;
}

// A walk over the objects of one side that takes part in the comparison.
struct Cursor {
  const ObjectSet &objects;
  const char *scope;
  Compared compared;
  size_t at = 0;
  PropertyView view = {};

  // Goes to the next object from `at` on that is compared; false at the end.
  bool settle() {
    for (; at < objects.count(); ++at) {
      if (is_within(url(), scope) && is_compared()) {
        return true;
      }
    }
    return false;
  }

  const char *url() const { return objects.url(at); }

 private:
  // A configuration text has neither templates nor objects that are no instances and have no
  // parameters.
  bool is_compared() {
    (void)view_property_file(objects.bytes(at), objects.size(at), view);  // Held when it was read.
    return compared == Compared::kAll ||
           (!has_template_in(url()) && (view.count > 0 || is_instance_url(url())));
  }
};

struct Printing {
  bool json;
  bool any = false;

  static bool print(const Difference &difference, void *context) {
    Printing &printing = *static_cast<Printing *>(context);
    printing.any = true;
    print_difference(difference, printing.json);
    return true;
  }
};

// Prints all differences; whether there is one.
bool print_differences(Cursor &before, Cursor &after, bool json) {
  Printing printing = {json};
  const DifferenceSink sink = {Printing::print, &printing};
  bool any_before = before.settle();
  bool any_after = after.settle();
  while (any_before || any_after) {
    const int order = !any_before ? 1 : !any_after ? -1 : compare_urls(before.url(), after.url());
    if (order == 0) {
      (void)compare_objects(before.url(), before.view, after.view, before.compared, sink);
    } else if (order < 0) {
      (void)tell_removed(before.url(), before.view, sink);
    } else {
      (void)tell_added(after.url(), after.view, sink);
    }
    before.at += order <= 0 ? 1 : 0;
    after.at += order >= 0 ? 1 : 0;
    any_before = before.settle();
    any_after = after.settle();
  }
  return printing.any;
}

// Reports which side is a configuration text; whether one is.
bool note_text(const Side &side) {
  if (!side.has_attributes()) {
    complain("%s: is a configuration text: only instances and values are compared", side.name());
  }
  return !side.has_attributes();
}

bool nothing_in_common(const Side &a, const Side &b) {
  complain("%s and %s have nothing in common", a.name(), b.name());
  return false;
}

// Reads what is compared. Reports and returns false when it cannot be read, or there is nothing.
bool read_sides(Side &a, Side &b, const ObjectUrl &scope, const Options &options, bool asked_for) {
  if (!a.read(scope.text, options.timeout) || !b.read(scope.text, options.timeout)) {
    return false;
  }
  if (!asked_for && !share_root(a, b, scope.text)) {
    return nothing_in_common(a, b);
  }
  if (!has_object_in(a.objects(), scope.text) && !has_object_in(b.objects(), scope.text)) {
    complain("%s: neither has such an object", scope.text);
    return false;
  }
  return true;
}

int compare(const Side &a, const Side &b, const ObjectUrl &scope, const Options &options) {
  const bool text_a = note_text(a);
  const bool text_b = note_text(b);
  const Compared compared = text_a || text_b ? Compared::kValues : Compared::kAll;
  Cursor before = {a.objects(), scope.text, compared};
  Cursor after = {b.objects(), scope.text, compared};
  const bool any = print_differences(before, after, options.has(kJson));
  if (fflush(stdout) != 0 || ferror(stdout) != 0) {
    complain("cannot write to standard output");
    clearerr(stdout);
    return kExitTrouble;
  }
  return any ? kExitDifferent : kExitSame;
}

}  // namespace

int run_diff(const Options &options, const Arguments &arguments) {
  if (arguments.count > 3) {
    complain("takes two things to compare and one URL");
    return kExitTrouble;
  }
  const bool asked_for = arguments.count == 3;
  ObjectUrl scope = {};
  if (asked_for && !parse_object_url(arguments.values[2], scope)) {
    return kExitTrouble;
  }
  Side a;
  Side b;
  if (!a.open(arguments.values[0]) || !b.open(arguments.count > 1 ? arguments.values[1] : "-")) {
    return kExitTrouble;
  }
  if (!asked_for && (a.is_empty() || b.is_empty())) {
    complain("%s: holds nothing: it takes a URL to compare it", (a.is_empty() ? a : b).name());
    return kExitTrouble;
  }
  if (!narrow(scope, a.scope()) || !narrow(scope, b.scope())) {
    (void)nothing_in_common(a, b);
    return kExitTrouble;
  }
  return read_sides(a, b, scope, options, asked_for) ? compare(a, b, scope, options) : kExitTrouble;
}

}  // namespace zrcfg_tool

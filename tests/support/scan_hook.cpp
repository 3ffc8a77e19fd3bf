// Stands between the library and scandir: fails it, changes what it found, acts before and after.

// Both the plain and the 64-suffixed names are defined here, so neither may be an alias.
#undef _FILE_OFFSET_BITS

#include "tests/support/scan_hook.h"

#include <dirent.h>
#include <dlfcn.h>
#include <errno.h>

namespace zrcfg_test {
namespace {

const ScanHooks *active = nullptr;
unsigned scans = 0;

template <typename Entry, typename Real>
int hooked_scan(const char *path, Entry ***list, Real real) {
  if (active == nullptr) {
    return real();
  }
  ++scans;
  const int error = active->before ? active->before(path) : 0;
  if (error != 0) {
    errno = error;
    return -1;
  }
  const int count = real();
  if (count >= 0 && active->after) {
    std::vector<ScannedEntry> entries;
    entries.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
      entries.push_back({(*list)[i]->d_name, &(*list)[i]->d_type});
    }
    active->after(path, entries);
  }
  return count;
}

template <typename Function>
Function next_definition(const char *name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

ScanHook::ScanHook(const ScanHooks &hooks) {
  active = new ScanHooks(hooks);
  scans = 0;
}

ScanHook::~ScanHook() {
  delete active;
  active = nullptr;
}

unsigned ScanHook::count() const {
  return scans;
}

ScanHooks failing_scan(const std::string &dir, int error) {
  ScanHooks hooks;
  hooks.before = [path = "/var/" + dir, error](const std::string &scanned) {
    return scanned == path ? error : 0;
  };
  return hooks;
}

}  // namespace zrcfg_test

// The executable's definitions come before libc's when the loader binds the library.
#define HOOK_SCANDIR(name, entry_type)                                                             \
  int name(const char *path, struct entry_type ***list, int (*filter)(const struct entry_type *),  \
           int (*compare)(const struct entry_type **, const struct entry_type **)) {               \
    /* NOLINTNEXTLINE(bugprone-macro-parentheses): a name, in parentheses, is none. */             \
    static const auto real = zrcfg_test::next_definition<decltype(&name)>(#name);                  \
    return zrcfg_test::hooked_scan(path, list, [&] { return real(path, list, filter, compare); }); \
  }

extern "C" {
HOOK_SCANDIR(scandir, dirent)
HOOK_SCANDIR(scandir64, dirent64)
}

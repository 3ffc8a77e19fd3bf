// heap_peak LIMIT: the most heap that each kind of call holds at a time, on an object of 255 full
// values.
//
// Takes the place of malloc and its kin, for itself and for the library. What regular expressions
// and libuci use is left out, theirs is not the library's to bound. Result lists count: they are
// the library's until the call returns. Fails when a call is over LIMIT bytes, or keeps something.
#include <dlfcn.h>
#include <malloc.h>
#include <regex.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <uci.h>

#include "tests/device/heap_calls.h"

extern "C" {
void *__libc_malloc(size_t size);
void *__libc_calloc(size_t count, size_t size);
void *__libc_realloc(void *block, size_t size);
void __libc_free(void *block);
}

namespace {

struct Heap {
  bool counting;
  unsigned foreign;  // Depth of calls whose blocks are not counted.
  size_t held;
  size_t peak;
  unsigned blocks;
};

Heap heap;

constexpr size_t kMaxBlocks = 4096;
void *counted[kMaxBlocks];  // Unordered; the blocks that are counted and not yet freed.

void take(void *block) {
  if (block == nullptr || !heap.counting || heap.foreign > 0) {
    return;
  }
  if (heap.blocks == kMaxBlocks) {
    abort();
  }
  counted[heap.blocks++] = block;
  heap.held += malloc_usable_size(block);
  heap.peak = heap.held > heap.peak ? heap.held : heap.peak;
}

// Whether the block was counted; it is not any more.
bool give_back(void *block) {
  for (unsigned i = heap.blocks; i > 0; --i) {
    if (counted[i - 1] == block) {
      heap.held -= malloc_usable_size(block);
      counted[i - 1] = counted[--heap.blocks];
      return true;
    }
  }
  return false;
}

// The call of that name which this program stands in front of.
template <typename Function>
Function *next(const char *name) {
  return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

void *malloc(size_t size) {
  void *const block = __libc_malloc(size);
  take(block);
  return block;
}

void *calloc(size_t count, size_t size) {
  void *const block = __libc_calloc(count, size);
  take(block);
  return block;
}

// The new block is counted before the old one goes: both may exist for a moment.
void *realloc(void *old, size_t size) {
  const size_t before = old != nullptr ? malloc_usable_size(old) : 0;
  const bool was_counted = give_back(old);
  void *const block = __libc_realloc(old, size);
  if (was_counted && block != old) {
    heap.held += before;
    take(block);
    heap.held -= before;
  } else {
    take(block);
  }
  return block;
}

void free(void *block) {
  if (block != nullptr) {
    give_back(block);
    __libc_free(block);
  }
}

int regcomp(regex_t *regex, const char *pattern, int flags) {
  ++heap.foreign;
  const int result = next<int(regex_t *, const char *, int)>("regcomp")(regex, pattern, flags);
  --heap.foreign;
  return result;
}

int regexec(const regex_t *regex, const char *text, size_t size, regmatch_t *found, int flags) {
  ++heap.foreign;
  const int result = next<int(const regex_t *, const char *, size_t, regmatch_t *, int)>("regexec")(
      regex, text, size, found, flags);
  --heap.foreign;
  return result;
}

struct uci_context *uci_alloc_context(void) {
  ++heap.foreign;
  struct uci_context *const result = next<struct uci_context *()>("uci_alloc_context")();
  --heap.foreign;
  return result;
}

int uci_load(struct uci_context *context, const char *name, struct uci_package **package) {
  ++heap.foreign;
  const int result = next<int(struct uci_context *, const char *, struct uci_package **)>(
      "uci_load")(context, name, package);
  --heap.foreign;
  return result;
}

}  // extern "C"

namespace {

// Peak and leftovers of one call.
bool measure(const zrcfg_test::HeapCall &call, size_t limit) {
  heap.held = heap.peak = 0;
  heap.blocks = 0;
  heap.counting = true;
  const long long result = call.run();
  const size_t peak = heap.peak;
  zrcfg_test::release_results();
  heap.counting = false;
  const bool good = result == 0 && peak <= limit && heap.blocks == 0;
  printf("  heap: %6zu of %zu bytes: %s%s\n", peak, limit, call.name, good ? "" : "  FAILED");
  if (result != 0) {
    printf("    result %lld\n", result);
  }
  if (heap.blocks != 0) {
    printf("    %u blocks kept\n", heap.blocks);
  }
  return good;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: heap_peak LIMIT\n");
    return 2;
  }
  setvbuf(stdout, nullptr, _IONBF, 0);
  zrcfg_test::make_full_store();
  bool good = true;
  for (const zrcfg_test::HeapCall &call : zrcfg_test::heap_calls()) {
    good = measure(call, strtoul(argv[1], nullptr, 10)) && good;
  }
  return good ? 0 : 1;
}

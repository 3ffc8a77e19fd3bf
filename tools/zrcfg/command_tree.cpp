// tree [URL]: objects and parameters with their access rights, indented.
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr const char *kRoots[] = {"InternetGatewayDevice.", "Device."};
constexpr int kIndent = 2;

// A list of the library's for as long as it is needed.
struct NodeList {
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;

  NodeList() = default;
  ~NodeList() { (void)zrcfg_allnode_free(head); }  // Always 0.
  NodeList(const NodeList &) = delete;
  NodeList &operator=(const NodeList &) = delete;
};

void print_node(int level, uint8_t rw, const char *name) {
  printf("%*s%s %s", kIndent * level, "", rw != 0 ? "rw" : "r-", name);
}

bool is_number(const char *name) {
  const size_t digits = strspn(name, "0123456789");
  return digits > 0 && name[digits] == '.';
}

// Prints the numbers of the sub-objects that are instances, behind the object's name.
void print_instances(const NodeList &children, size_t url_length) {
  const char *before = "  instances: ";
  for (const NODE_INFO *node = children.head; node != nullptr; node = node->next) {
    const char *const name = node->name + url_length;
    if (is_number(name)) {
      printf("%s%.*s", before, static_cast<int>(strlen(name)) - 1, name);
      before = " ";
    }
  }
  putchar('\n');
}

// Prints an object, and what is at most `depth` levels below it. Only the first one's failure is
// reported: below it, what has gone meanwhile is left out. The library's bound on URLs bounds the
// recursion.
uint32_t print_object(const Options &options, const char *url, size_t parent_length, int level,
                      int depth) {
  NodeList own;
  const uint32_t result = zrcfg_getallnodeinfo(url, &own.head, &own.tail, options.timeout);
  if (result != ZRCFG_OK) {
    return result;
  }
  NodeList children;
  (void)zrcfg_getsubobjinfo(url, &children.head, &children.tail, options.timeout);  // None then.
  const size_t url_length = strlen(url);
  print_node(level, own.head->rw, url + parent_length);
  print_instances(children, url_length);
  if (depth == 0) {
    return ZRCFG_OK;
  }
  for (const NODE_INFO *node = own.head->next; node != nullptr; node = node->next) {
    print_node(level + 1, node->rw, node->name + url_length);
    putchar('\n');
  }
  for (const NODE_INFO *node = children.head; node != nullptr; node = node->next) {
    (void)print_object(options, node->name, url_length, level + 1, depth - 1);
  }
  return ZRCFG_OK;
}

bool print_tree(const Options &options, const char *url) {
  const uint32_t result = print_object(options, url, 0, 0, options.depth);
  if (result != ZRCFG_OK) {
    report_refusal("tree", url, "", result);
  }
  return result == ZRCFG_OK;
}

int print_roots(const Options &options) {
  bool any = false;
  bool all_ok = true;
  for (const char *root : kRoots) {
    if (zrcfg_isobjectexist(root) == 1) {
      any = true;
      all_ok = print_tree(options, root) && all_ok;
    }
  }
  if (!any) {
    complain("tree: neither %s nor %s is in the store", kRoots[0], kRoots[1]);
  }
  return any && all_ok ? kExitOk : kExitRefused;
}

}  // namespace

int run_tree(const Options &options, const Arguments &arguments) {
  ObjectUrl url;
  for (int i = 0; i < arguments.count; ++i) {
    if (!parse_object_url(arguments.values[i], url)) {
      return kExitUsage;
    }
  }
  if (arguments.count == 0) {
    return print_roots(options);
  }
  int exit_code = kExitOk;
  for (int i = 0; i < arguments.count; ++i) {
    (void)parse_object_url(arguments.values[i], url);  // Held above.
    if (!print_tree(options, url.text)) {
      exit_code = kExitRefused;
    }
  }
  return exit_code;
}

}  // namespace zrcfg_tool

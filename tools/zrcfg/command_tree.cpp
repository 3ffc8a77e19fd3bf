// tree [URL]: objects and parameters with their access rights, indented.
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/output.h"
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

bool is_number(const char *name) {
  const size_t digits = strspn(name, "0123456789");
  return digits > 0 && name[digits] == '.';
}

const char *access_of(const NODE_INFO &node) {
  return node.rw != 0 ? "rw" : "r-";
}

// Prints the tree as text with indents, or its nodes as a list.
class TreePrinter {
 public:
  explicit TreePrinter(Form form) : text_(form == Form::kText), list_(form) {}

  // `name_at` is where the node's own name begins in its path.
  void print_parameter(const NODE_INFO &node, size_t name_at, int level) {
    if (text_) {
      printf("%*s%s %s\n", kIndent * level, "", access_of(node), node.name + name_at);
    } else {
      print_entry(node, "parameter");
    }
  }

  void print_object(const NODE_INFO &node, size_t name_at, int level, const NodeList &children) {
    if (!text_) {
      print_entry(node, "object");
      return;
    }
    printf("%*s%s %s", kIndent * level, "", access_of(node), node.name + name_at);
    print_instances(children, strlen(node.name));
    putchar('\n');
  }

 private:
  // Prints the numbers of the sub-objects that are instances.
  static void print_instances(const NodeList &children, size_t url_length) {
    const char *before = "  instances: ";
    for (const NODE_INFO *node = children.head; node != nullptr; node = node->next) {
      const char *const name = node->name + url_length;
      if (is_number(name)) {
        printf("%s%.*s", before, static_cast<int>(strlen(name)) - 1, name);
        before = " ";
      }
    }
  }

  void print_entry(const NODE_INFO &node, const char *kind) {
    const Field fields[] = {Field::of("path", node.name), Field::of("kind", kind),
                            Field::of("rw", uint32_t{node.rw})};
    list_.print_entry(fields, 3, node.name, access_of(node));
  }

  bool text_;
  ListPrinter list_;
};

// Prints an object, and what is at most `depth` levels below it. Only the first one's failure is
// reported: below it, what has gone meanwhile is left out. The library's bound on URLs bounds the
// recursion.
uint32_t print_object(TreePrinter &printer, const char *url, size_t name_at, int level, int depth,
                      int timeout) {
  NodeList own;
  const uint32_t result = zrcfg_getallnodeinfo(url, &own.head, &own.tail, timeout);
  if (result != ZRCFG_OK) {
    return result;
  }
  NodeList children;
  (void)zrcfg_getsubobjinfo(url, &children.head, &children.tail, timeout);  // None then.
  const size_t url_length = strlen(url);
  printer.print_object(*own.head, name_at, level, children);
  if (depth == 0) {
    return ZRCFG_OK;
  }
  for (const NODE_INFO *node = own.head->next; node != nullptr; node = node->next) {
    printer.print_parameter(*node, url_length, level + 1);
  }
  for (const NODE_INFO *node = children.head; node != nullptr; node = node->next) {
    (void)print_object(printer, node->name, url_length, level + 1, depth - 1, timeout);
  }
  return ZRCFG_OK;
}

bool print_tree(const Options &options, TreePrinter &printer, const char *url) {
  const uint32_t result = print_object(printer, url, 0, 0, options.depth, options.timeout);
  if (result != ZRCFG_OK) {
    report_refusal(url, "", result);
  }
  return result == ZRCFG_OK;
}

int print_roots(const Options &options, TreePrinter &printer) {
  bool any = false;
  bool all_ok = true;
  for (const char *root : kRoots) {
    if (zrcfg_isobjectexist(root) == 1) {
      any = true;
      all_ok = print_tree(options, printer, root) && all_ok;
    }
  }
  if (!any) {
    complain("neither %s nor %s is in the store", kRoots[0], kRoots[1]);
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
  Form form;
  if (!choose_form(options, form)) {
    return kExitUsage;
  }
  TreePrinter printer(form);
  if (arguments.count == 0) {
    return print_roots(options, printer);
  }
  int exit_code = kExitOk;
  for (int i = 0; i < arguments.count; ++i) {
    (void)parse_object_url(arguments.values[i], url);  // Held above.
    if (!print_tree(options, printer, url.text)) {
      exit_code = kExitRefused;
    }
  }
  return exit_code;
}

}  // namespace zrcfg_tool

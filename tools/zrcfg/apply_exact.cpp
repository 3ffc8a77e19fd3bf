// Finding the instances that a configuration text leaves out.
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/apply_plan.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

bool collect_left_out(const char *url, const TextSet &named, ConfigText &text);

// Takes one sub-object: an instance that is not named is left out with all below it.
bool collect_child(const char *url, const TextSet &named, ConfigText &text, bool is_instance) {
  ObjectUrl child;
  if (is_instance && !named.has(url)) {
    return parse_object_url(url, child) && text.add_deletion(child);
  }
  return collect_left_out(url, named, text);
}

// The library's bound on URLs bounds the recursion.
bool collect_left_out(const char *url, const TextSet &named, ConfigText &text) {
  SubObjName *node = nullptr;
  const uint32_t result = zrcfg_getallsubobj(url, &node);
  if (result != ZRCFG_OK) {
    report_refusal(url, "", result);
    return false;
  }
  bool ok = true;
  while (node != nullptr) {
    char child[ZRCFG_URL_SIZE + sizeof node->name];
    (void)snprintf(child, sizeof child, "%s%s.", url, node->name);  // Fits.
    const bool is_instance = isdigit(static_cast<unsigned char>(node->name[0])) != 0;
    ok = ok && (strlen(child) >= ZRCFG_URL_SIZE || collect_child(child, named, text, is_instance));
    SubObjName *const next = node->next;
    free(node);
    node = next;
  }
  return ok;
}

}  // namespace

bool ApplyPlan::make_exact(const ObjectUrl &url) {
  TextSet named;
  for (size_t i = 0; i < text_.size(); ++i) {
    if (text_.at(i).kind != LineKind::kValue && !named.add(text_.at(i).path.url)) {
      return false;
    }
  }
  return collect_left_out(url.text, named, text_);
}

}  // namespace zrcfg_tool

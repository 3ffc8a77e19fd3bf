// Deleting the instances that a configuration text leaves out.
#include <ctype.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/apply_plan.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {

bool ApplyPlan::make_exact(const ObjectUrl &url) {
  exact_ = url;
  for (size_t i = 0; i < text_.size(); ++i) {
    if (text_.at(i).kind == LineKind::kCreate && !named_.add(text_.at(i).path.url)) {
      return false;
    }
  }
  return true;
}

bool ApplyPlan::is_left_out(const char *instance_url) const {
  const size_t length = strlen(exact_.text);
  return strncmp(instance_url, exact_.text, length) == 0 && instance_url[length] != '\0' &&
         !named_.has(instance_url);
}

// Takes one sub-object: an instance that is left out goes with all below it.
bool ApplyPlan::collect_child(const char *url, bool is_instance) {
  ObjectUrl real;
  if (view_.locate(url, real) != ViewResult::kThere) {
    return true;  // The text deletes it.
  }
  if (is_instance && is_left_out(url)) {
    ObjectUrl instance;
    return left_out_.has(url) ||
           (left_out_.add(url) && parse_object_url(url, instance) && text_.add_deletion(instance));
  }
  return collect_left_out(url, real);
}

// The library's bound on URLs bounds the recursion.
bool ApplyPlan::collect_left_out(const char *url, const ObjectUrl &real) {
  SubObjName *node = nullptr;
  const uint32_t result = zrcfg_getallsubobj(real.text, &node);
  if (result != ZRCFG_OK) {
    report_refusal(url, "", result);
    return false;
  }
  bool ok = true;
  while (node != nullptr) {
    char child[ZRCFG_URL_SIZE + sizeof node->name];
    (void)snprintf(child, sizeof child, "%s%s.", url, node->name);  // Fits.
    const bool is_instance = isdigit(static_cast<unsigned char>(node->name[0])) != 0;
    ok = ok && (strlen(child) >= ZRCFG_URL_SIZE || collect_child(child, is_instance));
    SubObjName *const next = node->next;
    free(node);
    node = next;
  }
  return ok;
}

// Checks the deletions that have been added behind the first `first` lines.
bool ApplyPlan::check_added(size_t first, bool late) {
  if (!grow_states()) {
    return false;
  }
  bool all_ok = true;
  for (size_t i = first; i < text_.size(); ++i) {
    states_[i].late = late;
    all_ok = check_deletion(i) && all_ok;
  }
  return all_ok;
}

bool ApplyPlan::delete_left_out() {
  const size_t first = text_.size();
  const bool ok = collect_left_out(exact_.text, exact_);
  return check_added(first, false) && ok;
}

// What a new instance brings along from its source can only be deleted behind its creation.
bool ApplyPlan::delete_brought_along() {
  const size_t first = text_.size();
  bool ok = true;
  for (size_t i = 0; ok && i < first; ++i) {
    if (text_.at(i).kind != LineKind::kCreate || states_[i].outcome != Outcome::kPlanned) {
      continue;
    }
    ObjectUrl url;
    ObjectUrl real;
    memcpy(url.text, text_.at(i).path.url, sizeof url.text);  // Adding lines moves them.
    if (view_.locate(url.text, real) == ViewResult::kThere) {
      ok = collect_left_out(url.text, real);
    }
  }
  return check_added(first, true) && ok;
}

}  // namespace zrcfg_tool

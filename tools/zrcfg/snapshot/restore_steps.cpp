// What leads from the store to a snapshot, step by step.
#include "tools/zrcfg/snapshot/restore_steps.h"

#include <string.h>

namespace zrcfg_tool {
namespace {

// Finds the outermost instance on the way from `scope` down to the object that `other` lacks. A
// half-made instance may have objects below it and no file of its own. False for none.
bool find_missing_instance(const char *url, const char *scope, const ObjectSet &other,
                           ObjectUrl &instance) {
  const size_t from = strlen(scope);
  for (const char *dot = strchr(url, '.'); dot != nullptr; dot = strchr(dot + 1, '.')) {
    const size_t length = static_cast<size_t>(dot - url) + 1;
    if (length < from) {
      continue;
    }
    memcpy(instance.text, url, length);
    instance.text[length] = '\0';
    if (is_instance_url(instance.text) && other.find(instance.text) == ObjectSet::kNone) {
      return true;
    }
  }
  return false;
}

size_t skip_within(const ObjectSet &objects, size_t at, const char *url) {
  while (at < objects.count() && is_within(objects.url(at), url)) {
    ++at;
  }
  return at;
}

}  // namespace

bool RestoreSteps::next(RestoreStep &step) {
  const bool any_wanted = wanted_at_ < wanted_.count();
  const bool any_now = now_at_ < now_.count();
  if (!any_wanted && !any_now) {
    return false;
  }
  const int order = !any_wanted ? 1
                    : !any_now  ? -1
                                : compare_urls(wanted_.url(wanted_at_), now_.url(now_at_));
  const char *const url = order > 0 ? now_.url(now_at_) : wanted_.url(wanted_at_);
  step.wanted = {wanted_at_, wanted_at_};
  step.now = {now_at_, now_at_};
  if (order != 0 && find_missing_instance(url, scope_, order > 0 ? wanted_ : now_, step.url)) {
    take_instance(step);
    return true;
  }
  memcpy(step.url.text, url, strlen(url) + 1);
  step.kind = order == 0 ? StepKind::kWrite : StepKind::kForeign;
  step.wanted.end = wanted_at_ += order <= 0 ? 1 : 0;
  step.now.end = now_at_ += order >= 0 ? 1 : 0;
  return true;
}

void RestoreSteps::take_instance(RestoreStep &step) {
  step.wanted.end = wanted_at_ = skip_within(wanted_, wanted_at_, step.url.text);
  step.now.end = now_at_ = skip_within(now_, now_at_, step.url.text);
  step.kind = step.wanted.empty() ? StepKind::kRemove : StepKind::kCreate;
}

}  // namespace zrcfg_tool

// The attribute calls as one table, for the rules that all of them follow.
#include "tests/attr/attr_calls.h"

#include <cstdlib>
#include <cstring>

#include "tests/attr/attr_support.h"

namespace zrcfg_test {
namespace {

AttrOutcome get_single(const char *url, int timeout) {
  const std::string marks(sizeof(ParamAttr), '\x5a');
  ParamAttr attr = attr_of(marks);
  const uint32_t result = zrcfg_getsingleparamattr(url, "A", &attr, timeout);
  return {result, bytes_of(attr) == marks};
}

AttrOutcome get_multi(const char *url, int timeout) {
  AttrRequests requests;
  requests.add("A");
  const uint32_t result = zrcfg_getmultiparamattr(url, requests.list(), 16, timeout);
  return {result, requests.all_untouched()};
}

AttrOutcome get_all(const char *url, int timeout) {
  ParamAttrNode mark = {};
  ParamAttrNode *ends[2] = {&mark, &mark};
  const uint32_t result = zrcfg_getallparamattr(url, ends, 0, timeout);
  const bool untouched = ends[0] == &mark && ends[1] == &mark;
  while (result == 0 && ends[0] != nullptr) {
    ParamAttrNode *const next = ends[0]->next;
    free(ends[0]);
    ends[0] = next;
  }
  return {result, untouched};
}

AttrOutcome get_object(const char *url, int timeout) {
  ObjAttr attr;
  memset(static_cast<void *>(&attr), 0x5a, sizeof attr);
  const uint32_t result = zrcfg_getobjattr(url, &attr, timeout);
  const std::string bytes(reinterpret_cast<const char *>(&attr), sizeof attr);
  return {result, bytes == std::string(sizeof attr, '\x5a')};
}

AttrOutcome set_single(const char *url, int timeout) {
  const uint8_t noti = 9;
  return {zrcfg_setsingleparamattr(url, "A", &noti, 20, timeout), true};
}

AttrOutcome set_text(const char *url, int timeout) {
  return {zrcfg_setsingleparamattr_ext(url, "A", 3, "9", timeout), true};
}

AttrOutcome set_multi(const char *url, int timeout) {
  AttrRequests requests;
  requests.add("A", std::string(1, 9));
  const uint32_t result = zrcfg_setmultiparamattr(url, requests.list(), 20, timeout);
  return {result, requests.all_untouched()};
}

AttrOutcome set_all(const char *url, int timeout) {
  ParamAttrChange change = {};
  change.noti_change = 1;
  change.noti = 9;
  return {zrcfg_setallParamattr(url, &change, timeout), true};
}

AttrOutcome set_object(const char *url, int timeout) {
  return {zrcfg_setsingleobjattr_ext(url, 3, "9", timeout), true};
}

}  // namespace

void PrintTo(const AttrCall &call, std::ostream *out) {
  *out << call.name;
}

const std::vector<AttrCall> &attr_calls() {
  constexpr CallLock kShared = CallLock::kShared;
  constexpr CallLock kExclusive = CallLock::kExclusive;
  static const std::vector<AttrCall> calls = {
      {"GetSingle", false, kShared, false, get_single, "", 5},
      {"GetMulti", false, kShared, false, get_multi, "", 0},
      {"GetAll", false, kShared, false, get_all, "", 16},
      {"GetObject", false, kShared, true, get_object, "objUrl =  URL\n", 0},
      {"SetSingle", true, kExclusive, false, set_single, "", 12},
      {"SetText", true, kExclusive, false, set_text, "", 12},
      {"SetMulti", true, kExclusive, false, set_multi, "objUrl =  URL\n", 0},
      {"SetAll", true, kShared, false, set_all, "", 16},
      {"SetObject", true, kExclusive, true, set_object, "", 0},
  };
  return calls;
}

}  // namespace zrcfg_test

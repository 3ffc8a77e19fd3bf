// The calls on instances in one table, for the rules that they share.
#include "tests/lifecycle/instance_calls.h"

namespace zrcfg_test {
namespace {

constexpr int kEveryMode = 0;

uint32_t add(const char *url, int, int timeout, Outputs &outputs) {
  return zrcfg_addobject(url, &outputs.index, timeout);
}

uint32_t add_with_index(const char *url, int index, int timeout, Outputs &) {
  return zrcfg_addobject_with_index(url, index, timeout);
}

uint32_t del(const char *url, int index, int timeout, Outputs &) {
  return zrcfg_delobject(url, index, timeout);
}

uint32_t add_static(const char *url, int index, int timeout, Outputs &) {
  return zrcfg_addobject_static(url, index, 1, timeout);
}

uint32_t del_static(const char *url, int index, int timeout, Outputs &) {
  return zrcfg_delobject_static(url, index, timeout);
}

uint32_t export_add(const char *url, int index, int timeout, Outputs &outputs) {
  if (url == nullptr) {
    return zrcfg_exportaddobject(nullptr, timeout, kEveryMode, &outputs.flag);
  }
  const std::string instance = url + std::to_string(index) + ".";
  return zrcfg_exportaddobject(instance.c_str(), timeout, kEveryMode, &outputs.flag);
}

uint32_t export_del(const char *url, int index, int timeout, Outputs &outputs) {
  if (url == nullptr) {
    return zrcfg_exportdelobject(nullptr, timeout, kEveryMode, &outputs.flag);
  }
  const std::string instance = url + std::to_string(index);
  return zrcfg_exportdelobject(instance.c_str(), timeout, kEveryMode, &outputs.flag);
}

constexpr char kFixedLock[] = "Gateway/Fixed/property.conf";

}  // namespace

const std::vector<InstanceCall> &instance_calls() {
  static const std::vector<InstanceCall> calls = {
      {"Add", true, false, false, add, "objUrl =  ", kTemplateLock},
      {"AddWithIndex", true, false, false, add_with_index, "objUrl =  ", kTemplateLock},
      {"Delete", false, false, false, del, "objUrl =  ", kTemplateLock},
      {"AddStatic", true, true, false, add_static, "add static objUrl =  ", kFixedLock},
      {"DeleteStatic", false, true, false, del_static, "del static objUrl =  ", kFixedLock},
      {"ExportAdd", true, false, true, export_add, "pUrl =  ", kTemplateLock},
      {"ExportDelete", false, false, true, export_del, "pUrl =  ", kTemplateLock},
  };
  return calls;
}

std::vector<InstanceCall> dynamic_calls() {
  std::vector<InstanceCall> calls;
  for (const InstanceCall &call : instance_calls()) {
    if (!call.fixed) {
      calls.push_back(call);
    }
  }
  return calls;
}

std::vector<InstanceCall> fixed_calls() {
  std::vector<InstanceCall> calls;
  for (const InstanceCall &call : instance_calls()) {
    if (call.fixed) {
      calls.push_back(call);
    }
  }
  return calls;
}

const char *table_url(const InstanceCall &call) {
  return call.fixed ? kFixedUrl : kTableUrl;
}

std::string table_dir(const InstanceCall &call) {
  return call.fixed ? kFixed : kTable;
}

Lines operator+(const Lines &left, const Lines &right) {
  Lines all = left;
  all.insert(all.end(), right.begin(), right.end());
  return all;
}

Lines opening_lines(const InstanceCall &call, const std::string &url, int index) {
  const std::string number = std::to_string(index);
  if (call.exports) {
    const std::string instance = url + number + (call.creates ? "." : "");
    return {call.url_line + instance + "\n",
            "exportGetObjUrlAndIndex() url=" + instance +
                ", Len=" + std::to_string(instance.size()) + "\n",
            "objUrl=" + url + "   index = " + number + "\n"};
  }
  if (!call.fixed) {
    return {call.url_line + url + "\n"};
  }
  const std::string source = call.creates ? " source_index = 1" : "";
  return {call.url_line + url + " index = " + number + source + "\n"};
}

Lines rw_lines(const InstanceCall &call, unsigned rw) {
  const std::string number = std::to_string(rw) + "\n";
  if (call.fixed) {
    return {(call.creates ? "add static " : "del static ") + ("obj->ubv.boolval.rw=" + number)};
  }
  if (!call.creates && !call.exports) {
    return {};
  }
  return {"obj->ubv.boolval.rw=" + number};
}

void InstanceCallTest::SetUp() {
  LifecycleTest::SetUp();
  if (!GetParam().creates) {
    const std::string dir = table_dir(GetParam()) + "2/";
    write_property(dir, property_file({"A"}, {"to be deleted"}));
    write_property(dir + "Sub/0/", property_file({"A"}, {"too"}));
    write_store_file(dir + "more", "as well");
    set_counter("3");
  }
}

uint32_t InstanceCallTest::run(int timeout) {
  return run_on(table_url(GetParam()), timeout);
}

uint32_t InstanceCallTest::run_on(const char *url, int timeout) {
  clear_log();
  outputs_ = Outputs();
  return GetParam().run(url, 2, timeout, outputs_);
}

Tree InstanceCallTest::done() const {
  const InstanceCall &call = GetParam();
  if (call.fixed) {
    return call.creates ? with_copy(tree_, "Gateway/Fixed/1", "Gateway/Fixed/2")
                        : without(tree_, "Gateway/Fixed/2");
  }
  return call.creates ? with_counter(with_copy(tree_, "Gateway/Table/0", "Gateway/Table/2"), "3")
                      : with_counter(without(tree_, "Gateway/Table/2"), "2");
}

}  // namespace zrcfg_test

// An object whose property file holds any bytes, and one use of every exported call that opens it.
#ifndef ZRCFG_FUZZ_ANY_OBJECT_H_
#define ZRCFG_FUZZ_ANY_OBJECT_H_

#include <stdint.h>

#include <string>
#include <vector>

namespace zrcfg_fuzz {

// Where the object lies, and names to ask it for.
struct AnyObject {
  std::string url;         // "Any."
  std::string dir;         // "Any/"
  std::string first_name;  // As the file's first record has it, 64 characters at most.
  std::string last_name;
  size_t record_count;  // That the file's length word announces.
};

AnyObject any_object(const std::string &bytes);

enum class Effect { kReads, kWritesValues, kWritesAttributes };

// The result is the call's own; 0 is success in every one of them.
struct AnyCall {
  const char *name;
  Effect effect;
  int64_t (*run)(const AnyObject &object);
};

const std::vector<AnyCall> &any_value_calls();
const std::vector<AnyCall> &any_attribute_calls();
const std::vector<AnyCall> &any_tree_calls();

// Puts the bytes into a property file, makes all of these calls on it, and then those that create,
// delete and copy instances where the bytes are a table's, a template's or a parent's file. Aborts
// when a rule is broken: a read changes nothing, a write that fails leaves the file as it was, a
// value that was written is read back, results are those of the public header, and no descriptor
// and no lock is left. Returns the number of calls.
size_t make_every_call(const std::string &bytes);

// The names of the calls that the last part makes.
const std::vector<const char *> &instance_call_names();

}  // namespace zrcfg_fuzz

#endif  // ZRCFG_FUZZ_ANY_OBJECT_H_

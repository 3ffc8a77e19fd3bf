// The data model in memory: objects, parameters, and what their syntax permits.
#ifndef ZRCFG_TOOLS_MKSTORE_MODEL_H_
#define ZRCFG_TOOLS_MKSTORE_MODEL_H_

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "tools/mkstore/filter.h"

namespace zrcfg::mkstore {

// The type codes that records carry. They are part of the store's format (docs/store-builder.md):
// new types are added at the end, existing codes never change.
enum class BaseType : uint8_t {
  kString = 1,
  kInt = 2,
  kUnsignedInt = 3,
  kBoolean = 4,
  kDateTime = 5,
  kBase64 = 6,
  kLong = 7,
  kUnsignedLong = 8,
  kHexBinary = 9,
  kDecimal = 10,
};
inline constexpr uint8_t kListTypeCode = 11;

// Numbers are held times 10^9, so that 64-bit integers of either sign and decimals compare alike.
__extension__ typedef __int128 Number;
inline constexpr Number kNumberScale = 1000000000;

inline constexpr size_t kNoLimit = std::numeric_limits<size_t>::max();

struct Range {
  std::optional<Number> minimum;
  std::optional<Number> maximum;
  Number step = 0;  // 0: every value between the limits.
};

struct Size {
  size_t minimum = 0;
  size_t maximum = kNoLimit;
};

// Several ranges or sizes are alternatives, and so are enumerations and patterns together.
struct Facets {
  std::vector<Range> ranges;
  std::vector<Size> sizes;
  std::vector<std::string> enumerations;
  std::vector<std::string> patterns;
  bool reference = false;  // The text names an object or a value elsewhere, or should.
};

struct ListRule {
  size_t min_items = 0;
  size_t max_items = kNoLimit;
  bool nested_brackets = false;
  std::vector<Size> sizes;  // Of the whole text, commas included.
};

struct Syntax {
  BaseType type = BaseType::kString;
  Facets facets;  // Of one item when there is a list rule.
  std::optional<ListRule> list;
  std::optional<std::string> default_value;
};

struct Parameter {
  std::string name;
  bool writable = false;
  uint8_t notification = 0;             // 0 off, 2 active.
  bool notification_changeable = true;  // False where the document forces the notification.
  bool forced_inform = false;
  Syntax syntax;
  std::string initial;  // The default, or else the first permitted value.
  Filter filter;
  uint32_t filter_number = 0;  // 0: none.
};

inline constexpr size_t kNoObject = std::numeric_limits<size_t>::max();

// One object of the document. A table stands for its header, its template and its instances.
struct Object {
  std::string path;  // As documented, for example "Device.IP.Interface.{i}."
  std::string name;  // The last name, without instance marker and dot.
  size_t line = 0;
  bool is_table = false;
  bool writable = false;
  bool implied = false;  // Not in the document, but an ancestor of an object that is.
  size_t min_entries = 0;
  size_t max_entries = kNoLimit;
  std::string counter;  // numEntriesParameter of a table, empty when it has none.
  size_t parent = kNoObject;
  std::vector<size_t> children;
  std::vector<Parameter> parameters;
};

struct Model {
  std::string file;
  std::string name;
  std::vector<Object> objects;  // In document order, ancestors that had to be implied at the end.
  std::vector<size_t> roots;
};

// Where `table`'s counter stands among the parameters of its parent, or nothing.
std::optional<size_t> counter_index(const Model &model, const Object &table);

}  // namespace zrcfg::mkstore

#endif  // ZRCFG_TOOLS_MKSTORE_MODEL_H_

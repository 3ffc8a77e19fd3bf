// What the list files ask for, by address, and how instances inherit it from their templates.
#include "tools/mkstore/settings.h"

namespace zrcfg::mkstore {

void for_each_origin(const Address &address, const std::function<void(const Address &)> &use) {
  const size_t count = address.numbers.size();
  // A set bit takes the template for that number, the outermost number being the highest bit.
  for (size_t mask = size_t{1} << count; mask-- > 0;) {
    Address origin = address;
    bool distinct = true;
    for (size_t i = 0; i < count; ++i) {
      if ((mask >> (count - 1 - i) & 1u) != 0) {
        distinct = distinct && origin.numbers[i] != 0;
        origin.numbers[i] = 0;
      }
    }
    if (distinct) {
      use(origin);
    }
  }
}

size_t table_depth(const Model &model, size_t object) {
  size_t depth = 0;
  for (size_t at = object; at != kNoObject; at = model.objects[at].parent) {
    depth += model.objects[at].is_table ? 1 : 0;
  }
  return depth;
}

bool is_table_header(const Model &model, const Address &address) {
  return model.objects[address.object].is_table &&
         address.numbers.size() < table_depth(model, address.object);
}

std::string url_text(const Model &model, const Address &address) {
  std::string url;
  size_t used = 0;
  const std::string &path = model.objects[address.object].path;
  for (size_t at = 0; at < path.size();) {
    if (path.compare(at, 4, "{i}.") != 0) {
      url += path[at++];
      continue;
    }
    if (used == address.numbers.size()) {
      break;  // The header of the table: its own number is not part of the URL.
    }
    url += std::to_string(address.numbers[used++]) + '.';
    at += 4;
  }
  return url;
}

}  // namespace zrcfg::mkstore

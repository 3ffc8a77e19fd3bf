// Replay commands on attributes of parameters and objects.
#include <stddef.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <stdexcept>

#include "tests/device/replay/replay.h"

namespace zrcfg_test {
namespace {

struct ByteField {
  const char *name;
  size_t offset;
};

constexpr ByteField kByteFields[] = {
    {"flash_rw", offsetof(ParamAttr, flash_rw)},
    {"hide", offsetof(ParamAttr, hide)},
    {"rw", offsetof(ParamAttr, rw)},
    {"noti", offsetof(ParamAttr, noti)},
    {"namechange", offsetof(ParamAttr, namechange)},
    {"noti_rw", offsetof(ParamAttr, noti_rw)},
    {"inform_dbus", offsetof(ParamAttr, inform_dbus)},
    {"key", offsetof(ParamAttr, key)},
    {"encryt", offsetof(ParamAttr, encryt)},
    {"device_type", offsetof(ParamAttr, device_type)},
    {"type", offsetof(ParamAttr, type)},
    {"flash_encryt", offsetof(ParamAttr, flash_encryt)},
    {"inform_tr069", offsetof(ParamAttr, inform_tr069)},
};

template <size_t kSize>
void set_field(char (&field)[kSize], const std::string &text) {
  memset(field, 0, kSize);
  memcpy(field, text.data(), std::min(text.size(), kSize));
}

// Applies "field=value" to a record.
void apply(ParamAttr &attr, const Pair &pair) {
  const unsigned long number = strtoul(pair.value.c_str(), nullptr, 0);
  for (const ByteField &field : kByteFields) {
    if (pair.name == field.name) {
      reinterpret_cast<uint8_t *>(&attr)[field.offset] = static_cast<uint8_t>(number);
      return;
    }
  }
  if (pair.name == "accesslist") {
    set_field(attr.accesslist, pair.value);
  } else if (pair.name == "area") {
    set_field(attr.area, pair.value);
  } else if (pair.name == "param_check") {
    attr.param_check = static_cast<uint32_t>(number);
  } else {
    throw std::runtime_error("no attribute " + pair.name);
  }
}

void print_attr(const ParamAttr &attr) {
  print_bytes("bytes", &attr, offsetof(ParamAttr, param_check));
  print_number("param_check", attr.param_check);
}

// attr URL NAME
void attr(const Line &line) {
  ParamAttr attr = {};
  print_result(zrcfg_getsingleparamattr(line.text(0), line.text(1), &attr, line.timeout));
  print_attr(attr);
  end_line();
}

// attr-path PATH
void attr_path(const Line &line) {
  ParamAttr attr = {};
  print_result(zrcfg_getsingleparamattr_ext(line.text(0), &attr, line.timeout));
  print_attr(attr);
  end_line();
}

// attr-list URL
void attr_list(const Line &line) {
  ParamAttrNode *pair[2] = {nullptr, nullptr};
  print_result(zrcfg_getallparamattr(line.text(0), pair, 0, line.timeout));
  end_line();
  while (pair[0] != nullptr) {
    print_text("  name", field_text(pair[0]->name));
    print_attr(pair[0]->attr);
    print_number("last", pair[0] == pair[1]);
    end_line();
    ParamAttrNode *const next = pair[0]->next;
    free(pair[0]);
    pair[0] = next;
  }
}

// What a mode reads or writes for one node, whatever the mode.
union AttrBuffer {
  ParamAttr attr;
  uint8_t noti;
  char accesslist[16];
  ParamAttrChange change;
};

// Fills a mode's input from words "field=value"; fields that are not named keep what is stored.
void fill_input(AttrBuffer &input, const char *url, const char *name, int mode,
                const std::vector<std::string> &words) {
  ParamAttr attr = {};
  (void)zrcfg_getsingleparamattr(url, name, &attr, ZRCFG_NO_LOCK);
  for (const std::string &word : words) {
    apply(attr, split_pair(word));
  }
  memset(static_cast<void *>(&input), 0, sizeof input);
  if (mode == ZRCFG_ATTR_SET_NOTI) {
    input.noti = attr.noti;
  } else if (mode == ZRCFG_ATTR_SET_ACCESSLIST) {
    memcpy(input.accesslist, attr.accesslist, sizeof input.accesslist);
  } else if (mode == ZRCFG_ATTR_SET_CHANGE) {
    input.change.noti_change = 1;
    input.change.noti = attr.noti;
    input.change.access_list_change = 1;
    memcpy(input.change.accesslist, attr.accesslist, sizeof input.change.accesslist);
  } else {
    input.attr = attr;
  }
}

// attr-set URL NAME MODE FIELD=VALUE...
void attr_set(const Line &line) {
  const int mode = static_cast<int>(line.number(2));
  AttrBuffer input;
  fill_input(input, line.text(0), line.text(1), mode, line.rest(3));
  print_result(zrcfg_setsingleparamattr(line.text(0), line.text(1), &input, mode, line.timeout));
  end_line();
}

// attr-bulk URL MODE NAME[,FIELD=VALUE]...: reading and writing modes.
void attr_bulk(const Line &line) {
  const int mode = static_cast<int>(line.number(1));
  const std::vector<std::string> words = line.rest(2);
  std::deque<AttrBuffer> buffers(words.size());
  std::deque<MultiAttrNode> nodes(words.size());
  for (size_t i = 0; i < words.size(); ++i) {
    const size_t comma = words[i].find(',');
    set_field(nodes[i].name, words[i].substr(0, comma));
    std::vector<std::string> fields;
    if (comma != std::string::npos) {
      fields.push_back(words[i].substr(comma + 1));
    }
    memset(static_cast<void *>(&buffers[i]), 0, sizeof buffers[i]);
    if (mode >= ZRCFG_ATTR_SET_ALL && mode != ZRCFG_ATTR_GET_FLAGS) {
      fill_input(buffers[i], line.text(0), nodes[i].name, mode, fields);
    }
    nodes[i].pAttr = &buffers[i];
    nodes[i].next = i + 1 < words.size() ? &nodes[i + 1] : nullptr;
  }
  const bool writes = mode == ZRCFG_ATTR_SET_ALL || mode == ZRCFG_ATTR_SET_NOTI ||
                      mode == ZRCFG_ATTR_SET_ACCESSLIST;
  const auto call = writes ? zrcfg_setmultiparamattr : zrcfg_getmultiparamattr;
  print_result(call(line.text(0), &nodes[0], mode, line.timeout));
  end_line();
  for (size_t i = 0; i < nodes.size(); ++i) {
    print_text("  name", field_text(nodes[i].name));
    print_bytes("word", reinterpret_cast<const char *>(&nodes[i].fault) - 8, 4);
    print_attr(buffers[i].attr);
    end_line();
  }
}

// attr-text URL NAME NUMBER TEXT
void attr_text(const Line &line) {
  print_result(zrcfg_setsingleparamattr_ext(
      line.text(0), line.text(1), static_cast<int>(line.number(2)), line.text(3), line.timeout));
  end_line();
}

// attr-text-path PATH NUMBER TEXT
void attr_text_path(const Line &line) {
  print_result(zrcfg_singleparamattr_set_ext(line.text(0), static_cast<int>(line.number(1)),
                                             line.text(2), line.timeout));
  end_line();
}

// attr-all URL [noti=N] [accesslist=TEXT]
void attr_all(const Line &line) {
  ParamAttrChange change = {};
  for (const std::string &word : line.rest(1)) {
    const Pair pair = split_pair(word);
    if (pair.name == "noti") {
      change.noti_change = 1;
      change.noti = static_cast<uint32_t>(strtoul(pair.value.c_str(), nullptr, 0));
    } else {
      change.access_list_change = 1;
      set_field(change.accesslist, pair.value);
    }
  }
  print_result(zrcfg_setallParamattr(line.text(0), &change, line.timeout));
  end_line();
}

// object URL
void object(const Line &line) {
  ObjAttr attr = {};
  print_result(zrcfg_getobjattr(line.text(0), &attr, line.timeout));
  print_bytes("bytes", &attr, sizeof attr);
  end_line();
}

// object-set URL NUMBER TEXT
void object_set(const Line &line) {
  print_result(zrcfg_setsingleobjattr_ext(line.text(0), static_cast<int>(line.number(1)),
                                          line.text(2), line.timeout));
  end_line();
}

}  // namespace

void add_attr_commands(CommandTable &table) {
  table.insert({{"attr", attr},
                {"attr-path", attr_path},
                {"attr-list", attr_list},
                {"attr-set", attr_set},
                {"attr-bulk", attr_bulk},
                {"attr-text", attr_text},
                {"attr-text-path", attr_text_path},
                {"attr-all", attr_all},
                {"object", object},
                {"object-set", object_set}});
}

}  // namespace zrcfg_test

// Replay commands on the tree's listings, WAN connections, settings and codecs.
#include <stdlib.h>
#include <string.h>

#include "tests/device/replay/replay.h"

namespace zrcfg_test {
namespace {

void print_nodes(const NODE_INFO *node) {
  for (; node != nullptr; node = node->next) {
    print_text("  name", field_text(node->name));
    print_number("rw", node->rw);
    end_line();
  }
}

// sub-objects URL
void sub_objects(const Line &line) {
  SubObjName *head = nullptr;
  print_result(zrcfg_getallsubobj(line.text(0), &head));
  end_line();
  while (head != nullptr) {
    print_text("  name", field_text(head->name));
    end_line();
    SubObjName *const next = head->next;
    free(head);
    head = next;
  }
}

// sub-object-info URL
void sub_object_info(const Line &line) {
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  print_result(zrcfg_getsubobjinfo(line.text(0), &head, &tail, line.timeout));
  end_line();
  print_nodes(head);
  zrcfg_allnode_free(head);
}

// node-info URL
void node_info(const Line &line) {
  NODE_INFO *head = nullptr;
  NODE_INFO *tail = nullptr;
  print_result(zrcfg_getallnodeinfo(line.text(0), &head, &tail, line.timeout));
  end_line();
  print_nodes(head);
  zrcfg_allnode_free(head);
}

// nodes URL RECURSIVE
void nodes(const Line &line) {
  NODE_INFO *head = nullptr;
  print_result(
      zrcfg_allnode_get(line.text(0), static_cast<int>(line.number(1)), &head, line.timeout));
  end_line();
  print_nodes(head);
  zrcfg_allnode_free(head);
}

// instance-numbers URL
void instance_numbers(const Line &line) {
  uint32_t numbers[16] = {};
  print_result(zrcfg_getobjidbyobjpath(line.text(0), numbers));
  for (const uint32_t number : numbers) {
    print_number("n", number);
  }
  end_line();
}

// xml-url URL
void xml_url(const Line &line) {
  instanceStack stack = {};
  print_result(xmlurl_transform(line.text(0), &stack));
  print_number("depth", stack.depth);
  for (const uint32_t index : stack.index) {
    print_number("index", index);
  }
  print_text("template", field_text(stack.objpathinxml));
  end_line();
}

// wan-limits
void wan_limits(const Line &) {
  uint32_t wan = 4711;
  uint32_t connection = 4711;
  print_result(zrcfg_GetMaxWanNum(&wan));
  print_result(zrcfg_GetMaxConNum(&connection));
  print_number("wan", wan);
  print_number("connection", connection);
  end_line();
}

void print_index(const WanConIndex &index) {
  print_number("wan", index.wanIndex);
  print_number("connection", index.conIndex);
  print_number("type", index.conType);
}

// wan-url URL: connection index and user index.
void wan_url(const Line &line) {
  WanConIndex index = {7, 7, 7};
  uint32_t user = 4711;
  print_result(zrcfg_getwanconindexfromxmlurl(line.text(0), &index));
  print_result(zrcfg_getusrindexfromxmlurl(line.text(0), &user));
  print_index(index);
  print_number("user", user);
  end_line();
}

// wan-user USER: to the connection index and back.
void wan_user(const Line &line) {
  WanConIndex index = {7, 7, 7};
  uint32_t user = 4711;
  print_result(zrcfg_getwanconindexbyusrindex(static_cast<uint32_t>(line.number(0)), &index));
  print_result(zrcfg_getusrindexbywanconindex(&index, &user));
  print_index(index);
  print_number("user", user);
  end_line();
}

// base64 TEXT, and back.
void base64(const Line &line) {
  char coded[1024] = "";
  char plain[1024] = "";
  print_result(zrcfg_encryp_string(line.text(0), coded, static_cast<int>(line.word(0).size())));
  print_text("coded", coded);
  const int size = zrcfg_dencryp_string(coded, plain, sizeof plain);
  print_result(size);
  print_bytes("plain", plain, static_cast<size_t>(size));
  end_line();
}

// base64-read TEXT
void base64_read(const Line &line) {
  char plain[64] = "";
  print_result(zrcfg_dencryp_string(line.text(0), plain, sizeof plain));
  print_bytes("plain", plain, sizeof plain);
  end_line();
}

// hex TEXT, and back.
void hex(const Line &line) {
  char digits[1024] = "";
  unsigned char bytes[512] = "";
  const int size = static_cast<int>(line.word(0).size());
  print_result(hex_to_ascii(reinterpret_cast<const unsigned char *>(line.text(0)), digits, size));
  print_text("digits", digits);
  print_result(ascii_to_hex(digits, bytes, 2 * size));
  print_bytes("bytes", bytes, static_cast<size_t>(size));
  end_line();
}

// hex-read TEXT
void hex_read(const Line &line) {
  unsigned char bytes[64] = "";
  print_result(ascii_to_hex(line.text(0), bytes, static_cast<int>(line.word(0).size())));
  print_bytes("bytes", bytes, sizeof bytes);
  end_line();
}

// setting FILE KEY SIZE
void setting(const Line &line) {
  char out[256] = "";
  const unsigned size = static_cast<unsigned>(line.number(2));
  print_result(
      zrcfg_uci_get_config(line.text(0), line.text(1), out, size < sizeof out ? size : 255));
  print_bytes("out", out, size);
  end_line();
}

// crypto MODE
void crypto(const Line &line) {
  CryptoInfo info = {};
  zrcfg_get_crytoinfo_from_encryptmode(static_cast<int>(line.number(0)), &info);
  print_number("workmode", info.workmode);
  print_number("key", info.index_key);
  print_number("iv", info.index_iv);
  print_number("padding", info.padding);
  print_number("type", info.key_type);
  end_line();
}

// process: the process's mark and the device's encryption mode.
void process(const Line &) {
  print_result(zrcfg_get_tr069_process_flag());
  print_result(zrcfg_init_tr069_process_flag());
  print_result(zrcfg_get_tr069_process_flag());
  print_result(zrcfg_get_encryptmode());
  end_line();
}

}  // namespace

void add_tree_commands(CommandTable &table) {
  table.insert({{"sub-objects", sub_objects},
                {"sub-object-info", sub_object_info},
                {"node-info", node_info},
                {"nodes", nodes},
                {"instance-numbers", instance_numbers},
                {"xml-url", xml_url},
                {"wan-limits", wan_limits},
                {"wan-url", wan_url},
                {"wan-user", wan_user},
                {"base64", base64},
                {"base64-read", base64_read},
                {"hex", hex},
                {"hex-read", hex_read},
                {"setting", setting},
                {"crypto", crypto},
                {"process", process}});
}

}  // namespace zrcfg_test

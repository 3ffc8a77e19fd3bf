// Replay commands on instances, open objects and locks.
#include <stdio.h>
#include <string.h>

#include "lifecycle/dir_tree.h"
#include "tests/device/replay/replay.h"

namespace zrcfg_test {
namespace {

constexpr size_t kHeaderBytes = 184;
constexpr size_t kRecordBytes = 124;

int int_at(const Line &line, size_t i) {
  return static_cast<int>(line.number(i));
}

// add URL
void add(const Line &line) {
  uint32_t index = 4711;
  print_result(zrcfg_addobject(line.text(0), &index, line.timeout));
  print_number("index", index);
  end_line();
}

// add-at URL INDEX
void add_at(const Line &line) {
  print_result(zrcfg_addobject_with_index(line.text(0), int_at(line, 1), line.timeout));
  end_line();
}

// del URL INDEX
void del(const Line &line) {
  print_result(zrcfg_delobject(line.text(0), int_at(line, 1), line.timeout));
  end_line();
}

// add-static URL INDEX SOURCE
void add_static(const Line &line) {
  print_result(
      zrcfg_addobject_static(line.text(0), int_at(line, 1), int_at(line, 2), line.timeout));
  end_line();
}

// del-static URL INDEX
void del_static(const Line &line) {
  print_result(zrcfg_delobject_static(line.text(0), int_at(line, 1), line.timeout));
  end_line();
}

// Calls that take a URL, a time-out, a mode and a flag: COMMAND URL MODE
template <uint32_t (*kCall)(const char *, int, int, uint8_t *)>
void export_instance(const Line &line) {
  uint8_t written = 7;
  print_result(kCall(line.text(0), line.timeout, int_at(line, 1), &written));
  print_number("written", written);
  end_line();
}

// exists URL
void exists(const Line &line) {
  print_result(zrcfg_isobjectexist(line.text(0)));
  print_result(CheckObjExist(line.text(0)));
  end_line();
}

// open DIRECTORY LOCK-TYPE: header and records without their address slots, and what the predicates
// make of them.
void open(const Line &line) {
  ZrcfgObject *image = nullptr;
  int fd = -1;
  const uint32_t result = createObjByPath(&image, line.text(0), &fd,
                                          static_cast<uint32_t>(line.number(1)), line.timeout);
  print_result(result);
  print_number("locked", fd >= 0);
  if (result == ZRCFG_OK) {
    const char *const bytes = static_cast<const char *>(image);
    print_number("hidden", static_cast<unsigned long>(objIsHide(image)));
    print_bytes("header", bytes + 4, kHeaderBytes - 8);
    end_line();
    const unsigned count = static_cast<unsigned char>(bytes[4]);
    for (unsigned i = 0; i < count; ++i) {
      const char *const record = bytes + kHeaderBytes + i * kRecordBytes;
      print_number("  hidden", static_cast<unsigned long>(paramIsHide(record)));
      print_bytes("record", record, kRecordBytes - 4);
      end_line();
    }
    print_result(destroyObj(image, fd));
  }
  end_line();
}

// lock URL LOCK-TYPE: taken, found not to be seen from outside, released.
void lock(const Line &line) {
  int fd = -1;
  print_result(
      zrcfg_lockurl(line.text(0), &fd, line.timeout, static_cast<uint32_t>(line.number(1))));
  print_number("open", fd >= 0);
  print_result(zrcfg_islock(line.text(0)));
  print_result(zrcfg_releaselock(fd));
  end_line();
}

// copy-tree SOURCE TARGET, delete-tree DIRECTORY: directories of the store.
void copy_tree(const Line &line) {
  print_result(dirCopy(line.text(0), line.text(1)));
  end_line();
}

void delete_tree(const Line &line) {
  print_result(dirDel(line.text(0)));
  end_line();
}

}  // namespace

void add_instance_commands(CommandTable &table) {
  table.insert({{"add", add},
                {"add-at", add_at},
                {"del", del},
                {"add-static", add_static},
                {"del-static", del_static},
                {"export-add", export_instance<zrcfg_exportaddobject>},
                {"export-del", export_instance<zrcfg_exportdelobject>},
                {"exists", exists},
                {"open", open},
                {"lock", lock},
                {"copy-tree", copy_tree},
                {"delete-tree", delete_tree}});
}

}  // namespace zrcfg_test

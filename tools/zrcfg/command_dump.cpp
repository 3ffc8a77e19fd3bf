// dump URL: the raw property file of an object, field by field.
#include <errno.h>
#include <stdio.h>
#include <string.h>

#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/object_url.h"
#include "tools/zrcfg/output.h"
#include "tools/zrcfg/raw_file.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

constexpr size_t kMaxFile = 64u << 20;
constexpr size_t kShownBytes = 8;

// Reads the file under the object's shared lock; a file whose lock cannot be had is read all the
// same.
bool read_property_file(const ObjectUrl &url, int timeout, Bytes &bytes) {
  char path[sizeof url.text + 32];
  (void)snprintf(path, sizeof path, "/var/%sproperty.conf", url.text);  // Fits.
  for (char *at = path; at < path + sizeof "/var/" - 1 + strlen(url.text); ++at) {
    *at = *at == '.' ? '/' : *at;
  }
  int lock_fd = -1;
  if (zrcfg_lockurl(url.text, &lock_fd, timeout, ZRCFG_LOCK_SHARED) != ZRCFG_OK) {
    lock_fd = -1;
  }
  FILE *const file = fopen(path, "re");
  bool ok = file != nullptr;
  if (!ok) {
    complain("%s: %s", path, strerror(errno));
  } else {
    ok = bytes.read_all(file, path, kMaxFile);
    (void)fclose(file);  // Only read.
  }
  (void)zrcfg_releaselock(lock_fd);
  return ok;
}

struct DumpContext {
  Form form;
  ListPrinter *printer;
  const uint8_t *bytes;
};

void append_hex(const uint8_t *bytes, size_t size, char *out) {
  (void)hex_to_ascii(bytes, out, static_cast<int>(size));
  out[2 * size] = '\0';
}

// The value as a text line shows it: control characters as dots.
void print_plain(const char *text) {
  for (; *text != '\0'; ++text) {
    const unsigned char c = static_cast<unsigned char>(*text);
    putchar(c < 0x20 || c == 0x7F ? '.' : c);
  }
}

void print_text_field(const DumpContext &context, const RawField &field) {
  char hex[2 * kShownBytes + 1];
  const size_t shown = field.size < kShownBytes ? field.size : kShownBytes;
  append_hex(context.bytes + field.offset, shown, hex);
  printf("%06zx %4zu  %-16s%s  %-28s ", field.offset, field.size, hex,
         shown < field.size ? "+" : " ", field.name);
  print_plain(field.text);
  putchar('\n');
}

void print_list_field(const DumpContext &context, const RawField &field) {
  Bytes hex;
  if (!hex.reserve(2 * field.size + 1)) {
    return;
  }
  append_hex(context.bytes + field.offset, field.size, hex.at);
  const Field fields[] = {Field::of("offset", static_cast<uint32_t>(field.offset)),
                          Field::of("size", static_cast<uint32_t>(field.size)),
                          Field::of("field", field.name), Field::of("bytes", hex.at),
                          Field::of("value", field.text)};
  context.printer->print_entry(fields, 5, field.name, field.text);
}

void print_field(const RawField &field, void *opaque) {
  const DumpContext &context = *static_cast<const DumpContext *>(opaque);
  if (context.form == Form::kText) {
    print_text_field(context, field);
  } else {
    print_list_field(context, field);
  }
}

}  // namespace

int run_dump(const Options &options, const Arguments &arguments) {
  if (arguments.count != 1) {
    complain("takes one URL");
    return kExitUsage;
  }
  ObjectUrl url;
  Form form;
  if (!parse_object_url(arguments.values[0], url) || !choose_form(options, form)) {
    return kExitUsage;
  }
  Bytes file;
  if (!read_property_file(url, options.timeout, file)) {
    return kExitRefused;
  }
  const uint8_t *const bytes = reinterpret_cast<const uint8_t *>(file.at);
  {
    ListPrinter printer(form);
    DumpContext context = {form, &printer, bytes};
    visit_raw_fields(bytes, file.size, print_field, &context);
  }
  const char *const damage = raw_file_damage(bytes, file.size);
  if (damage != nullptr) {
    complain("%s: damaged: %s", url.text, damage);
    return kExitRefused;
  }
  return kExitOk;
}

}  // namespace zrcfg_tool

// A configuration as text: its lines, and how values are escaped in them.
#include "tools/zrcfg/config_text.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/escape.h"
#include "tools/zrcfg/report.h"
#include "zrcfg.h"

namespace zrcfg_tool {
namespace {

// Unescapes a value into a line's buffer; reports what cannot be a value.
bool parse_value(const char *text, ConfigLine &line) {
  size_t length = 0;
  while (*text != '\0') {
    char c = *text++;
    if (is_control(c)) {
      complain("a control character that is not escaped");
      return false;
    }
    if (c == '\\') {
      const size_t taken = unescape(text, "\\tr", c);
      if (taken == 0 || c == '\n') {
        complain("\\ is followed by neither \\, t, r nor xHH (01 to ff, not 0a)");
        return false;
      }
      text += taken;
    }
    if (length + 1 == sizeof line.value) {
      complain("%s%s: the value is longer than 255 characters", line.path.url, line.path.name);
      return false;
    }
    line.value[length++] = c;
  }
  line.value[length] = '\0';
  if (line.value[0] == '\r') {
    complain("%s%s: the value begins with a carriage return and would read back empty",
             line.path.url, line.path.name);
    return false;
  }
  return true;
}

bool parse_instance(const char *text, ConfigLine &line) {
  ObjectUrl url;
  if (!parse_object_url(text, url)) {
    return false;
  }
  InstanceName instance;
  if (!split_instance(url, instance) || instance.index == 0) {
    complain("%s: not an instance's URL (Table.Number., from 1 on)", text);
    return false;
  }
  memcpy(line.path.url, url.text, sizeof line.path.url);
  line.path.name[0] = '\0';
  return true;
}

bool parse_line(char *text, ConfigLine &line) {
  if (text[0] == '-' || text[0] == '+') {
    line.kind = text[0] == '-' ? LineKind::kDelete : LineKind::kCreate;
    return parse_instance(text + 1, line);
  }
  line.kind = LineKind::kValue;
  char *const equals = strchr(text, '=');
  if (equals == nullptr) {
    complain("not -INSTANCE-URL, +INSTANCE-URL or PATH=VALUE");
    return false;
  }
  return split_param_path(text, static_cast<size_t>(equals - text), line.path) &&
         parse_value(equals + 1, line);
}

bool append_escaped(Bytes &text, char c) {
  if (c == '\\') {
    return text.append("\\\\");
  }
  if (c == '\t') {
    return text.append("\\t");
  }
  if (c == '\r') {
    return text.append("\\r");
  }
  if (is_control(c)) {
    char escape[8];
    (void)snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(c));  // Fits.
    return text.append(escape);
  }
  return text.append(c);
}

}  // namespace

InstanceName instance_of(const ConfigLine &line) {
  ObjectUrl url;
  memcpy(url.text, line.path.url, sizeof url.text);
  InstanceName instance;
  (void)split_instance(url, instance);  // It was one when the line was parsed.
  return instance;
}

ConfigText::~ConfigText() {
  free(lines_);
}

bool ConfigText::reserve_line() {
  if (count_ < capacity_) {
    return true;
  }
  const size_t grown = capacity_ == 0 ? 64 : capacity_ * 2;
  void *const block = realloc(lines_, grown * sizeof *lines_);
  if (block == nullptr) {
    complain("out of memory");
    return false;
  }
  lines_ = static_cast<ConfigLine *>(block);
  capacity_ = grown;
  return true;
}

bool ConfigText::parse(Bytes &text, WrongLines reported) {
  if (memchr(text.at, '\0', text.size) != nullptr) {
    complain("the text holds a zero byte");
    return false;
  }
  bool all_ok = true;
  size_t number = 0;
  for (char *at = text.at;
       at != nullptr && *at != '\0' && (all_ok || reported == WrongLines::kAll);) {
    char *const feed = strchr(at, '\n');
    if (feed != nullptr) {
      *feed = '\0';
    }
    ++number;
    if (at[0] != '\0' && at[0] != '#') {
      if (!reserve_line()) {
        return false;
      }
      set_report_line(number);
      ConfigLine &line = lines_[count_];
      line.number = number;
      line.value[0] = '\0';
      if (parse_line(at, line)) {
        ++count_;
      } else {
        all_ok = false;
      }
    }
    at = feed != nullptr ? feed + 1 : nullptr;
  }
  set_report_line(0);
  return all_ok;
}

bool ConfigText::add_deletion(const ObjectUrl &url) {
  if (!reserve_line()) {
    return false;
  }
  ConfigLine &line = lines_[count_++];
  line.number = 0;
  line.kind = LineKind::kDelete;
  memcpy(line.path.url, url.text, sizeof line.path.url);
  line.path.name[0] = '\0';
  line.value[0] = '\0';
  return true;
}

bool append_value_line(Bytes &text, const char *url, const char *name, const char *value) {
  if (!text.append(url) || !text.append(name) || !text.append('=')) {
    return false;
  }
  for (; *value != '\0'; ++value) {
    if (!append_escaped(text, *value)) {
      return false;
    }
  }
  return text.append('\n');
}

}  // namespace zrcfg_tool

// What a check of the store finds: kinds of problems, and the list of those found.
#include "tools/zrcfg/check/findings.h"

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "tools/zrcfg/escape.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {

struct Finding {
  Finding *next;
  Problem problem;
  bool settled;  // Whether it is said what became of it.
  bool repaired;
  char *path;
  char *text;
};

namespace {

struct Kind {
  const char *identifier;
  bool repairable;
};

// In the order of the enumeration.
constexpr Kind kKinds[] = {
    {"file-missing", false},      {"file-not-regular", false},     {"file-unreadable", false},
    {"file-too-large", false},    {"file-short", false},           {"length-invalid", false},
    {"length-partial", false},    {"records-too-many", false},     {"lines-missing", true},
    {"line-empty", false},        {"line-unended", true},          {"surplus-bytes", true},
    {"zero-byte", true},          {"value-too-long", false},       {"value-refused", false},
    {"filter-missing", false},    {"filter-invalid", false},       {"name-empty", false},
    {"name-duplicate", false},    {"name-unterminated", false},    {"name-unaddressable", false},
    {"text-unterminated", false}, {"template-missing", false},     {"structure-differs", false},
    {"object-missing", false},    {"object-unknown", false},       {"counter-wrong", true},
    {"counter-unknown", false},   {"instance-above-limit", false}, {"instance-incomplete", true},
    {"stray-file", false},        {"stray-directory", false},      {"directory-unreadable", false},
    {"path-too-long", false},
};
constexpr size_t kProblemCount = static_cast<size_t>(Problem::kPathTooLong) + 1;
constexpr size_t kMaxKept = 4096;
static_assert(sizeof kKinds / sizeof kKinds[0] == kProblemCount);

const Kind &kind_of(Problem problem) {
  return kKinds[static_cast<size_t>(problem)];
}

// A name or value of a damaged store may hold anything; a finding stays one line.
void print_on_one_line(const char *text) {
  for (; *text != '\0'; ++text) {
    if (is_control(*text)) {
      printf("\\x%02x", static_cast<unsigned>(static_cast<unsigned char>(*text)));
    } else {
      putchar(*text);
    }
  }
}

char *format_text(const char *format, va_list arguments) {
  char *text = nullptr;
  return vasprintf(&text, format, arguments) >= 0 ? text : nullptr;
}

void free_all(Finding *&first) {
  while (first != nullptr) {
    Finding *const finding = first;
    first = finding->next;
    free(finding->path);
    free(finding->text);
    free(finding);
  }
}

}  // namespace

const char *identifier_of(Problem problem) {
  return kind_of(problem).identifier;
}

Findings::Findings(Form form) : form_(form), printer_(form) {}

Findings::~Findings() {
  discard();
  free_all(aside_);
}

void Findings::add(Problem problem, const char *path, const char *format, ...) {
  if (kept_ == kMaxKept) {
    ++not_kept_;
    return;
  }
  va_list arguments;
  va_start(arguments, format);
  char *const text = format_text(format, arguments);
  va_end(arguments);
  char *const path_copy = strdup(path);
  Finding *const finding = static_cast<Finding *>(malloc(sizeof(Finding)));
  if (text == nullptr || path_copy == nullptr || finding == nullptr) {
    free(text);
    free(path_copy);
    free(finding);
    complain("out of memory");
    ++remaining_;  // It is a finding all the same.
    return;
  }
  *finding = {nullptr, problem, false, false, path_copy, text};
  append(finding);
}

void Findings::settle(Problem problem, bool done, const char *action) {
  for (Finding *finding = first_; finding != nullptr; finding = finding->next) {
    if (finding->problem != problem || finding->settled) {
      continue;
    }
    finding->settled = true;
    finding->repaired = done;
    char *text = nullptr;
    if (action == nullptr || asprintf(&text, "%s (%s: %s)", finding->text,
                                      done ? "repaired" : "not repaired", action) < 0) {
      continue;  // The finding itself is what matters.
    }
    free(finding->text);
    finding->text = text;
  }
}

void Findings::repaired(Problem problem, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  char *const action = format_text(format, arguments);
  va_end(arguments);
  settle(problem, true, action);
  free(action);
}

void Findings::not_repaired(Problem problem, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  char *const action = format_text(format, arguments);
  va_end(arguments);
  settle(problem, false, action);
  free(action);
}

bool Findings::has(Problem problem) const {
  for (const Finding *finding = first_; finding != nullptr; finding = finding->next) {
    if (finding->problem == problem) {
      return true;
    }
  }
  return false;
}

bool Findings::has_repairable() const {
  for (const Finding *finding = first_; finding != nullptr; finding = finding->next) {
    if (kind_of(finding->problem).repairable) {
      return true;
    }
  }
  return false;
}

void Findings::discard() {
  free_all(first_);
  forget();
}

void Findings::forget() {
  first_ = nullptr;
  last_ = nullptr;
  kept_ = 0;
  not_kept_ = 0;
}

void Findings::put_aside() {
  free_all(aside_);
  aside_ = first_;
  forget();
}

void Findings::settle_aside(bool bring_back) {
  if (!bring_back) {
    free_all(aside_);
    return;
  }
  while (aside_ != nullptr) {
    Finding *const finding = aside_;
    aside_ = finding->next;
    finding->next = nullptr;
    append(finding);
  }
}

void Findings::append(Finding *finding) {
  (last_ != nullptr ? last_->next : first_) = finding;
  last_ = finding;
  ++kept_;
}

void Findings::print_one(const Finding &finding) {
  const char *const identifier = identifier_of(finding.problem);
  if (form_ == Form::kText) {
    print_on_one_line(finding.path);
    printf(": %s: ", identifier);
    print_on_one_line(finding.text);
    putchar('\n');
    return;
  }
  const Field fields[] = {Field::of("path", finding.path), Field::of("problem", identifier),
                          Field::of("text", finding.text), Field::of("repaired", finding.repaired)};
  printer_.print_entry(fields, 4, finding.path, identifier);
}

void Findings::print() {
  for (const Finding *finding = first_; finding != nullptr; finding = finding->next) {
    print_one(*finding);
    ++(finding->repaired ? repaired_ : remaining_);
  }
  if (not_kept_ > 0) {
    complain("%s: %zu more problems, not shown", last_->path, not_kept_);
    remaining_ += not_kept_;
  }
  discard();
}

}  // namespace zrcfg_tool

// apply FILE: replays a configuration text.
#include <stdio.h>

#include "tools/zrcfg/apply_plan.h"
#include "tools/zrcfg/bytes.h"
#include "tools/zrcfg/command.h"
#include "tools/zrcfg/input_file.h"
#include "tools/zrcfg/report.h"

namespace zrcfg_tool {
namespace {

const char *outcome_name(Outcome outcome, bool dry_run) {
  switch (outcome) {
    case Outcome::kPlanned:
      return "not tried";
    case Outcome::kWritten:
      return dry_run ? "would be written" : "written";
    case Outcome::kHeld:
      return "held back by its key class";
    case Outcome::kAlreadyThere:
      return "already there";
    case Outcome::kRefused:
      return "refused";
  }
  return "";
}

char sign_of(LineKind kind) {
  return kind == LineKind::kDelete ? '-' : '+';
}

void print_line(const ConfigLine &line, const LineState &state, bool dry_run) {
  if (line.number != 0) {
    printf("%zu: ", line.number);
  } else {
    fputs("exact: ", stdout);
  }
  if (line.kind != LineKind::kValue) {
    putchar(sign_of(line.kind));
  }
  printf("%s%s: %s", line.path.url, line.path.name, outcome_name(state.outcome, dry_run));
  if (state.outcome == Outcome::kRefused) {
    printf(" (code %d): %s", static_cast<int>(state.code), meaning_of(state.code));
  }
  putchar('\n');
}

// Counts the outcomes, prints them, and with --verbose each line's. Whether all was applied.
bool print_outcomes(const Options &options, const ApplyPlan &plan, const ConfigText &text) {
  const bool dry_run = options.has(kDryRun);
  size_t counts[5] = {};
  for (size_t i = 0; i < text.size(); ++i) {
    LineState state = plan.state(i);
    if (dry_run && state.outcome == Outcome::kPlanned) {
      state.outcome = Outcome::kWritten;
    }
    ++counts[static_cast<int>(state.outcome)];
    if (options.has(kVerbose)) {
      print_line(text.at(i), state, dry_run);
    }
  }
  const size_t refused = counts[static_cast<int>(Outcome::kRefused)];
  const size_t not_tried = counts[static_cast<int>(Outcome::kPlanned)];
  printf("%zu lines: %zu %s, %zu held back, %zu already there, %zu refused", text.size(),
         counts[static_cast<int>(Outcome::kWritten)], dry_run ? "would be written" : "written",
         counts[static_cast<int>(Outcome::kHeld)], counts[static_cast<int>(Outcome::kAlreadyThere)],
         refused);
  if (not_tried > 0) {
    printf(", %zu not tried", not_tried);
  }
  putchar('\n');
  return refused == 0 && not_tried == 0;
}

}  // namespace

int run_apply(const Options &options, const Arguments &arguments) {
  if (arguments.count != 1) {
    complain("takes one file");
    return kExitUsage;
  }
  Bytes bytes;
  ConfigText text;
  if (!read_input_file(arguments.values[0], bytes)) {
    return kExitRefused;
  }
  if (!text.parse(bytes, WrongLines::kAll)) {
    complain("%s: nothing was changed", arguments.values[0]);
    return kExitRefused;
  }
  ApplyPlan plan(options, text);
  if (options.exact != nullptr) {
    ObjectUrl url;
    if (!parse_object_url(options.exact, url)) {
      return kExitUsage;
    }
    if (!plan.make_exact(url)) {
      return kExitRefused;
    }
  }
  if (!plan.check()) {
    (void)print_outcomes(options, plan, text);  // There was a refusal.
    complain("%s: nothing was changed", arguments.values[0]);
    return kExitRefused;
  }
  if (!options.has(kDryRun)) {
    plan.run();
  }
  return print_outcomes(options, plan, text) ? kExitOk : kExitRefused;
}

}  // namespace zrcfg_tool

// The command line of zrcfg-mkstore.
#include "tools/mkstore/command.h"

#include <signal.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstring>
#include <functional>
#include <iomanip>
#include <optional>
#include <ostream>
#include <sstream>

#include "tools/mkstore/atomic_tree.h"
#include "tools/mkstore/build_error.h"
#include "tools/mkstore/carry_over.h"
#include "tools/mkstore/filter_table.h"
#include "tools/mkstore/list_file.h"
#include "tools/mkstore/model_document.h"
#include "tools/mkstore/old_store.h"
#include "tools/mkstore/property_writer.h"
#include "tools/mkstore/store_plan.h"

namespace zrcfg::mkstore {

namespace {

constexpr char kProgram[] = "zrcfg-mkstore";

struct Options {
  std::string model_file;
  std::string model_name;
  std::string instances_file;
  std::string values_file;
  std::string attributes_file;
  std::string old_store;
  std::string output;
  bool verbose = false;
  bool strict = false;
};

struct Totals {
  size_t objects = 0;
  size_t tables = 0;
  size_t parameters = 0;
  size_t files = 0;
  size_t bytes = 0;
};

volatile sig_atomic_t interrupted = 0;

void note_interruption(int) {
  interrupted = 1;
}

// Turns the signals that users end programs with into an orderly failure, so that the unfinished
// tree is removed; the former handlers come back at the end.
struct InterruptionGuard {
  static constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
  struct sigaction former[3] = {};

  InterruptionGuard() {
    interrupted = 0;
    struct sigaction action = {};
    action.sa_handler = note_interruption;
    for (size_t i = 0; i < 3; ++i) {
      (void)sigaction(kSignals[i], &action, &former[i]);  // Cannot fail for these signals.
    }
  }
  ~InterruptionGuard() {
    for (size_t i = 0; i < 3; ++i) {
      (void)sigaction(kSignals[i], &former[i], nullptr);
    }
  }
  InterruptionGuard(const InterruptionGuard &) = delete;
  InterruptionGuard &operator=(const InterruptionGuard &) = delete;
};

std::string directory_of(const std::string &url) {
  std::string path = url;
  std::replace(path.begin(), path.end(), '.', '/');
  return path;
}

void count_model(const Model &model, Totals &totals) {
  for (const Object &object : model.objects) {
    totals.objects += object.implied ? 0 : 1;
    totals.tables += object.is_table && !object.implied ? 1 : 0;
    totals.parameters += object.parameters.size();
  }
}

// What a build tells the user.
struct Report {
  Totals totals;
  FilterTable filters;
  std::vector<std::string> warnings;
  UpgradeReport upgrade;
  bool published = false;  // False when --strict kept the output back.
};

// What a store is made from.
struct Sources {
  Model model;
  Settings settings;
  std::optional<OldStore> old_store;
  KeptObjects kept;
  std::vector<Placement> placements;
};

void write_filters(const AtomicTree &tree, Report &report) {
  const std::string text = filter_file_text(report.filters);
  if (text.empty()) {
    return;  // Without the file no value is checked.
  }
  write_file(tree, kFilterFileName, text);
  ++report.totals.files;
  report.totals.bytes += text.size();
}

void read_sources(const Options &options, Report &report, Sources &sources) {
  Model &model = sources.model;
  model = load_model(options.model_file, options.model_name, report.warnings);
  report.filters = number_filters(model);
  if (!options.instances_file.empty()) {
    read_instances_file(options.instances_file, model, sources.settings);
  }
  if (!options.values_file.empty()) {
    read_values_file(options.values_file, model, sources.settings);
  }
  if (!options.attributes_file.empty()) {
    read_attributes_file(options.attributes_file, model, sources.settings);
  }
  count_model(model, report.totals);
}

// Decides on the directories. The list files are checked against a new store even when an old one
// then says which instances there are.
void plan_directories(const Options &options, Report &report, Sources &sources) {
  sources.placements = plan_store(sources.model, sources.settings);
  if (options.old_store.empty()) {
    return;
  }
  sources.old_store.emplace(options.old_store, options.output);
  sources.kept =
      find_kept_objects(*sources.old_store, sources.model, sources.settings, report.upgrade);
  sources.placements = plan_upgraded_store(sources.model, sources.settings, sources.kept.instances);
}

void write_objects(const AtomicTree &tree, const Sources &sources, Report &report) {
  for (const Placement &placement : sources.placements) {
    ObjectContent content = object_content(sources.model, sources.settings, placement);
    if (sources.old_store) {
      Upgrade upgrade{*sources.old_store, sources.kept, sources.model, report.filters,
                      report.upgrade};
      carry_over(upgrade, placement, content);
    }
    const std::string directory = directory_of(placement.url);
    const std::string bytes = property_file(content);
    make_directory(tree, directory);
    write_file(tree, directory + kPropertyFileName, bytes);
    ++report.totals.files;
    report.totals.bytes += bytes.size();
    if (interrupted != 0) {
      fail(tree.target, "interrupted");
    }
  }
}

Report build_store(const Options &options) {
  Report report;
  Sources sources;
  read_sources(options, report, sources);
  const InterruptionGuard guard;
  plan_directories(options, report, sources);
  AtomicTree tree(options.output);
  write_objects(tree, sources, report);
  write_filters(tree, report);
  report.published = !options.strict || losses(report.upgrade) == 0;
  if (report.published) {
    publish(tree);
  }
  return report;
}

void describe_options(CLI::App &app, Options &options) {
  app.add_option("--model", options.model_file, "Data model document, in its flattened form")
      ->type_name("FILE")
      ->required();
  app.add_option("--model-name", options.model_name, "Model of the document, if it has several")
      ->type_name("NAME");
  app.add_option("--instances", options.instances_file, "Instance URLs to make, one a line")
      ->type_name("FILE");
  app.add_option("--values", options.values_file, "Lines of full.parameter.path=value")
      ->type_name("FILE");
  app.add_option("--attributes", options.attributes_file, "Lines of PATH NAME=VALUE")
      ->type_name("FILE");
  CLI::Option *const upgrade =
      app.add_option("--upgrade", options.old_store, "Store whose content is carried over")
          ->type_name("STORE");
  app.add_flag("--strict", options.strict, "With --upgrade: write nothing if something is lost")
      ->needs(upgrade);
  app.add_flag("--verbose", options.verbose, "List the parameters with unchecked facets");
  app.add_option("OUTDIR", options.output, "Directory that becomes the store's root")
      ->type_name("")
      ->required();
  app.set_version_flag("--version", std::string(kProgram) + " " + ZRCFG_MKSTORE_VERSION);
  app.footer("Exit codes: 0 done, 1 input refused or output not written, 2 usage.");
}

std::string summary(const Totals &totals, double seconds) {
  std::ostringstream text;
  text << totals.objects << " objects, " << totals.tables << " tables, " << totals.parameters
       << " parameters; " << totals.files << " files, " << totals.bytes << " bytes, " << std::fixed
       << std::setprecision(3) << seconds << " seconds";
  return text.str();
}

void print_report(const Options &options, const Report &report, double seconds, std::ostream &out) {
  for (const std::string &line : report.upgrade.lines) {
    out << line << "\n";
  }
  for (const std::string &parameter : report.filters.unchecked_parameters) {
    out << (options.verbose ? "unchecked: " + parameter + "\n" : "");
  }
  out << summary(report.totals, seconds) << "\n" << filter_summary(report.filters) << "\n";
  if (!options.old_store.empty()) {
    out << upgrade_summary(report.upgrade) << "\n";
  }
}

}  // namespace

int run_command(const std::vector<std::string> &arguments, std::ostream &out, std::ostream &err) {
  const auto start = std::chrono::steady_clock::now();
  Options options;
  CLI::App app("Compiles a data model document into a store tree.", kProgram);
  describe_options(app, options);
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));  // Read backwards.
  } catch (const CLI::ParseError &error) {
    return app.exit(error, out, err) == 0 ? kExitDone : kExitUsage;
  }
  try {
    const Report report = build_store(options);
    for (const std::string &warning : report.warnings) {
      err << kProgram << ": warning: " << options.model_file << ": " << warning << "\n";
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    print_report(options, report, taken.count(), out);
    if (report.published) {
      return kExitDone;
    }
    err << kProgram << ": " << options.output << ": not written, because " << losses(report.upgrade)
        << " things of " << options.old_store << " are lost\n";
  } catch (const BuildError &error) {
    err << kProgram << ": " << error.text << "\n";
  } catch (const std::exception &error) {
    err << kProgram << ": " << options.output << ": " << error.what() << "\n";
  }
  return kExitRefused;
}

}  // namespace zrcfg::mkstore

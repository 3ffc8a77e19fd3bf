// Runs a target on files instead of inputs of its own: replay FILE|FOLDER...
#include <stdio.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/target.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

// Far more than any input takes, under sanitizers and emulation too.
constexpr double kMostSeconds = 20;

std::vector<std::string> files_of(const std::vector<std::string> &arguments) {
  std::vector<std::string> files;
  for (const std::string &argument : arguments) {
    if (!fs::is_directory(argument)) {
      files.push_back(argument);
      continue;
    }
    for (const fs::directory_entry &entry : fs::directory_iterator(argument)) {
      files.push_back(entry.path().string());
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

// False when the file cannot be read, or takes too long.
bool replay(const std::string &file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    fprintf(stderr, "%s: cannot be read\n", file.c_str());
    return false;
  }
  const std::vector<char> bytes((std::istreambuf_iterator<char>(in)),
                                std::istreambuf_iterator<char>());
  // Named beforehand: an input that breaks a rule ends the program.
  fprintf(stderr, "%s\n", file.c_str());
  const Clock::time_point start = Clock::now();
  (void)LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
  const std::chrono::duration<double> taken = Clock::now() - start;
  if (taken.count() > kMostSeconds) {
    fprintf(stderr, "%s: %.1f seconds\n", file.c_str(), taken.count());
    return false;
  }
  return true;
}

}  // namespace

int main(int argc, char **argv) {
  const std::vector<std::string> files = files_of({argv + 1, argv + argc});
  if (files.empty()) {
    fputs("usage: replay FILE|FOLDER...; there is nothing to replay\n", stderr);
    return 2;
  }
  (void)LLVMFuzzerInitialize(&argc, &argv);
  size_t bad = 0;
  for (const std::string &file : files) {
    bad += replay(file) ? 0 : 1;
  }
  fprintf(stderr, "%zu inputs, %zu bad\n", files.size(), bad);
  return bad == 0 ? 0 : 1;
}

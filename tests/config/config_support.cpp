// Child processes and other programs.
#include "tests/config/config_support.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace zrcfg_test {

std::string random_bytes(std::mt19937 *random, size_t size) {
  std::string bytes(size, '\0');
  for (char &byte : bytes) {
    byte = static_cast<char>((*random)());
  }
  return bytes;
}

void in_own_process(const std::function<void()> &body) {
  fflush(nullptr);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    body();
    fflush(nullptr);
    _exit(testing::Test::HasFailure() ? 1 : 0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
}

std::string run_program(const std::string &command, const std::string &input) {
  const std::string in_name = store_path("program_input");
  write_store_file("program_input", input);
  FILE *out = popen((command + " <" + in_name).c_str(), "r");
  if (out == nullptr) {
    ADD_FAILURE() << "cannot run " << command;
    return "";
  }
  std::string printed;
  char piece[4096];
  for (size_t got = 1; got > 0;) {
    got = fread(piece, 1, sizeof piece, out);
    printed.append(piece, got);
  }
  EXPECT_EQ(pclose(out), 0) << command;
  return printed;
}

}  // namespace zrcfg_test

// Entry of zrcfg-mkstore, the host tool that compiles a data model into a store.
#include <iostream>
#include <string>
#include <vector>

#include "tools/mkstore/command.h"

int main(int argc, char **argv) {
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  return zrcfg::mkstore::run_command(arguments, std::cout, std::cerr);
}

// A fresh process that reads one value from the JSON files.
#include <stdio.h>
#include <sys/file.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>

int main(int argc, char **argv) {
  if (argc != 5) {
    return 2;
  }
  std::string path = argv[2];
  std::replace(path.begin(), path.end(), '.', '/');
  FILE *const file = fopen((std::string(argv[1]) + "/" + path + "object.json").c_str(), "re");
  if (file == nullptr || flock(fileno(file), LOCK_SH) != 0) {
    return 2;
  }
  const nlohmann::ordered_json object = nlohmann::ordered_json::parse(file, nullptr, false);
  fclose(file);
  return object["parameters"][argv[3]]["value"] == argv[4] ? 0 : 1;
}

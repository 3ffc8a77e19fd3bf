// The stores of the real documents: every node of every list against another reading.
#include <gtest/gtest.h>
#include <stdio.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "tests/enum/enum_support.h"
#include "tools/mkstore/command.h"

namespace zrcfg_test {
namespace {

namespace fs = std::filesystem;

constexpr char kInstance[] = "{i}";

// One level of the document's paths.
struct DocumentNode {
  unsigned right = 0;
  std::vector<Node> params;  // Bare names.
  std::map<std::string, DocumentNode> children;
};

struct RealModel {
  const char *file;
  const char *root;
  size_t most_nodes;                   // More than this many must be listed.
  std::vector<std::string> instances;  // Beside one in every table.
};

void PrintTo(const RealModel &given, std::ostream *out) {
  *out << given.file;
}

// What the document names, as "path<TAB>rw" lines of an independent reader.
std::vector<Node> document_entries(const std::string &document) {
  std::vector<Node> entries;
  FILE *pipe = popen((std::string(ZRCFG_MODEL_READER) + " " + document).c_str(), "r");
  char line[1024];
  while (pipe != nullptr && fgets(line, sizeof line, pipe) != nullptr) {
    const std::string text(line);
    const size_t tab = text.find('\t');
    entries.emplace_back(text.substr(0, tab), std::stoul(text.substr(tab + 1)));
  }
  EXPECT_EQ(pipe == nullptr ? -1 : pclose(pipe), 0) << "the reader failed";
  return entries;
}

DocumentNode document_tree(const std::vector<Node> &entries) {
  DocumentNode top;
  for (const auto &[path, right] : entries) {
    DocumentNode *node = &top;
    std::istringstream stream(path);
    std::string level;
    while (std::getline(stream, level, '.')) {
      if (stream.eof()) {
        node->params.emplace_back(level, right);
      } else {
        node = &node->children[level];
      }
    }
    if (path.back() == '.') {
      node->right = right;
    }
  }
  return top;
}

// The instance numbers that the store has, by its directories.
std::vector<unsigned long> stored_instances(const std::string &url) {
  std::vector<unsigned long> numbers;
  for (const fs::directory_entry &entry : fs::directory_iterator("/var/" + dir_of(url))) {
    const std::string name = entry.path().filename().string();
    if (entry.is_directory() && name != "0") {
      numbers.push_back(std::stoul(name));
    }
  }
  std::sort(numbers.begin(), numbers.end());
  return numbers;
}

// The sub-objects of an object with what the document says of them, in the order of listings. A
// std::map is in byte order.
std::vector<std::pair<std::string, const DocumentNode *>> sub_objects(const std::string &url,
                                                                      const DocumentNode &node) {
  std::vector<std::pair<std::string, const DocumentNode *>> found;
  for (const auto &[name, child] : node.children) {
    if (name != kInstance) {
      found.emplace_back(name, &child);
      continue;
    }
    for (const unsigned long number : stored_instances(url)) {
      found.emplace_back(std::to_string(number), &child);
    }
  }
  return found;
}

// A table has the right of its instances.
unsigned object_right(const DocumentNode &node) {
  const auto instance = node.children.find(kInstance);
  return instance != node.children.end() ? instance->second.right : node.right;
}

std::vector<Node> own_nodes(const std::string &url, unsigned right, const DocumentNode &node) {
  std::vector<Node> nodes = {{url, right}};
  for (const Node &param : node.params) {
    nodes.emplace_back(url + param.first, param.second);
  }
  return nodes;
}

// An instance in every table, however deep.
void write_instances(const std::string &file, const std::vector<Node> &entries,
                     const std::vector<std::string> &others) {
  std::ofstream stream(file);
  for (const auto &[path, right] : entries) {
    const std::string end = std::string(kInstance) + ".";
    if (path.size() < end.size() || path.compare(path.size() - end.size(), end.size(), end) != 0) {
      continue;
    }
    std::string url = path;
    for (size_t at = url.find(kInstance); at != std::string::npos; at = url.find(kInstance)) {
      url.replace(at, sizeof kInstance - 1, "1");
    }
    stream << url << "\n";
  }
  for (const std::string &url : others) {
    stream << url << "\n";
  }
}

// Tells the first difference alone: the lists are long.
template <typename Item>
void expect_equal(const std::vector<Item> &listed, const std::vector<Item> &expected,
                  const std::string &what) {
  const auto [left, right] =
      std::mismatch(listed.begin(), listed.end(), expected.begin(), expected.end());
  if (left == listed.end() && right == expected.end()) {
    return;
  }
  const std::vector<Item> got(left, left == listed.end() ? left : left + 1);
  const std::vector<Item> want(right, right == expected.end() ? right : right + 1);
  EXPECT_EQ(got, want) << what << ", entry " << left - listed.begin();
}

class RealTreeTest : public EnumTest, public ::testing::WithParamInterface<RealModel> {
 protected:
  void SetUp() override {
    EnumTest::SetUp();
    if (HasFatalFailure()) {
      return;
    }
    const std::string document = std::string(ZRCFG_MODEL_DIR) + "/" + GetParam().file;
    const std::vector<Node> entries = document_entries(document);
    document_ = document_tree(entries);
    std::string scratch = (fs::temp_directory_path() / "real-tree-XXXXXX").string();
    ASSERT_NE(mkdtemp(scratch.data()), nullptr);
    write_instances(scratch + "/instances", entries, GetParam().instances);
    std::ostringstream out;
    std::ostringstream err;
    const int code = zrcfg::mkstore::run_command(
        {"--model", document, "--instances", scratch + "/instances", scratch + "/out"}, out, err);
    if (code == 0) {
      fs::copy(scratch + "/out", "/var", fs::copy_options::recursive);
    }
    fs::remove_all(scratch);
    ASSERT_EQ(code, 0) << err.str();
    for (const std::string &url : GetParam().instances) {
      ASSERT_TRUE(store_entry_exists(dir_of(url))) << url;
    }
    seal();
  }

  const DocumentNode &root() const { return document_.children.at(GetParam().root); }
  std::string root_url() const { return std::string(GetParam().root) + "."; }

  // The recursive list, and on the way every other list of every object.
  std::vector<Node> compared(const std::string &url, unsigned right, const DocumentNode &node) {
    std::vector<Node> all = own_nodes(url, right, node);
    std::vector<Node> flat = all;
    std::vector<Node> children;
    std::vector<std::string> names;
    for (const auto &[name, child] : sub_objects(url, node)) {
      const std::string child_url = url + name + ".";
      const unsigned child_right = object_right(*child);
      names.push_back(name);
      children.emplace_back(child_url, child_right);
      const std::vector<Node> below = compared(child_url, child_right, *child);
      all.insert(all.end(), below.begin(), below.end());
    }
    expect_equal(list_object(url).nodes, flat, "object " + url);
    expect_equal(list_children(url).nodes, children, "children of " + url);
    expect_equal(list_names(url).names, names, "names in " + url);
    flat.insert(flat.end(), children.begin(), children.end());
    expect_equal(list_all(url, 0).nodes, flat, "flat " + url);
    expect_equal(list_all(url, 1).nodes, all, "walk of " + url);
    clear_log();
    return all;
  }

 private:
  DocumentNode document_;
};

TEST_P(RealTreeTest, EveryNodeOfEveryListEqualsTheDocument) {
  const std::vector<Node> all = compared(root_url(), 0, root());
  EXPECT_GT(all.size(), GetParam().most_nodes);
  RecordProperty("nodes", static_cast<int>(all.size()));
}

INSTANTIATE_TEST_SUITE_P(
    Documents, RealTreeTest,
    ::testing::Values(
        RealModel{"tr-098-1-8-0-full.xml",
                  "InternetGatewayDevice",
                  1900,
                  {"InternetGatewayDevice.WANDevice.2.WANConnectionDevice.10.WANIPConnection.3.",
                   "InternetGatewayDevice.WANDevice.10.WANConnectionDevice.2.",
                   "InternetGatewayDevice.LANDevice.3."}},
        RealModel{"tr-181-2-11-0-full.xml",
                  "Device",
                  4000,
                  {"Device.IP.Interface.2.IPv4Address.10.", "Device.IP.Interface.10.",
                   "Device.IP.Interface.11.IPv6Address.2.", "Device.NAT.PortMapping.100.",
                   "Device.DHCPv4.Server.Pool.9.Client.2.Option.12."}}),
    [](const auto &row) { return std::string(row.param.root); });

}  // namespace
}  // namespace zrcfg_test

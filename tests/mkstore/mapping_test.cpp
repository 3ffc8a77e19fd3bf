// How a document becomes directories and bytes: objects, tables, parameters, counters.
#include <filesystem>

#include "tests/mkstore/build_run.h"

namespace fs = std::filesystem;

namespace {

using MappingTest = BuildTest;

const char kWritable[] = "access=\"readWrite\"";

std::string table_attributes(const std::string &access, const std::string &least,
                             const std::string &most, const std::string &counter) {
  std::string text =
      "access=\"" + access + "\" minEntries=\"" + least + "\" maxEntries=\"" + most + "\"";
  return counter.empty() ? text : text + " numEntriesParameter=\"" + counter + "\"";
}

// The text padded with zero bytes to the size.
std::string padded(std::string text, size_t size) {
  text.resize(size, '\0');
  return text;
}

TEST_F(MappingTest, SingleObjectHasExactlyTheseBytes) {
  write_model(object(
      "Root.",
      parameter("Name") +
          parameter("Level", "<unsignedInt/><default type=\"object\" value=\"7\"/>", kWritable)));
  ASSERT_EQ(build().code, 0);
  std::string bytes("\x00\x00\x01\xb0", 4);  // 184 + 2 * 124
  bytes += padded(std::string("\0\0\0\0\x02", 5), 184);
  bytes += std::string("\x01\0\0\0\0\x02\0\0", 8) + padded("Name", 64) + padded("", 52);
  bytes += std::string("\x03\0\0\0\x7c\x02\0\0", 8) + padded("Level", 64) + padded("", 44);
  bytes += std::string("\0\0\0\x01\0\0\0\0", 8);  // Its filter, and the slot for the next record.
  bytes += "\r\n7\n";
  EXPECT_EQ(read("Root").bytes, bytes);
}

TEST_F(MappingTest, SummaryCountsTheDocument) {
  write_model(object("Root.", parameter("A") + parameter("B")) +
              object("Root.T.{i}.", parameter("C"), table_attributes("readOnly", "0", "1", "")));
  const RunResult result = build();
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "");
  // 188 + 2 * (124 + 2) bytes for Root, 188 for the table, 188 + 124 + 2 for its template.
  const std::string start = "2 objects, 1 tables, 3 parameters; 3 files, 942 bytes, ";
  EXPECT_EQ(result.out.substr(0, start.size()), start);
  const std::string end = " seconds\n0 filters for 0 parameters; unchecked: nothing\n";
  ASSERT_GT(result.out.size(), end.size());
  EXPECT_EQ(result.out.substr(result.out.size() - end.size()), end);
}

TEST_F(MappingTest, TableBecomesHeaderTemplateAndLeastInstances) {
  write_model(object("Root.", parameter("TNumberOfEntries", "<unsignedInt/>")) +
              object("Root.T.{i}.", parameter("A"),
                     table_attributes("readWrite", "2", "unbounded", "TNumberOfEntries")));
  ASSERT_EQ(build().code, 0);
  const ReadFile table = read("Root/T");
  ASSERT_TRUE(table.well_formed);
  EXPECT_EQ(table.bytes.size(), 188u);
  EXPECT_EQ(table.rw, 1u);
  EXPECT_EQ(table.key, 15u);
  EXPECT_EQ(table.max_instance, 255u);
  EXPECT_EQ(table.pnoe, "Root/TNumberOfEntries");
  for (const char *instance : {"Root/T/0", "Root/T/1", "Root/T/2"}) {
    const ReadFile file = read(instance);
    ASSERT_TRUE(file.well_formed) << instance;
    ASSERT_EQ(file.records.size(), 1u) << instance;
    EXPECT_EQ(file.records[0].name, "A");
    EXPECT_EQ(file.rw, 1u) << instance;
    EXPECT_EQ(file.max_instance, 0u) << instance;
    EXPECT_EQ(file.pnoe, "") << instance;
  }
  EXPECT_FALSE(fs::exists(path("out/Root/T/3")));
  EXPECT_EQ(value("Root", "TNumberOfEntries"), "2");
}

TEST_F(MappingTest, TableAccessFollowsAccessAndLimits) {
  write_model(object("Root.", "") +
              object("Root.Client.{i}.", "", table_attributes("readWrite", "0", "9", "")) +
              object("Root.Device.{i}.", "", table_attributes("readOnly", "1", "300", "")) +
              object("Root.Fixed.{i}.", "", table_attributes("readOnly", "3", "3", "")) +
              object("Root.FixedWritable.{i}.", "", table_attributes("readWrite", "1", "1", "")) +
              object("Root.Fixed.{i}.Single.", "", kWritable));
  ASSERT_EQ(build().code, 0);
  EXPECT_EQ(read("Root/Client").rw, 1u);
  EXPECT_EQ(read("Root/Client").max_instance, 9u);
  EXPECT_EQ(read("Root/Client").pnoe, "");
  EXPECT_EQ(read("Root/Device").rw, 2u);
  EXPECT_EQ(read("Root/Device").key, 0u);
  EXPECT_EQ(read("Root/Device").max_instance, 255u);
  EXPECT_EQ(read("Root/Device/0").rw, 2u);
  EXPECT_EQ(read("Root/Device/1").rw, 2u);
  EXPECT_EQ(read("Root/Fixed").rw, 0u);
  EXPECT_EQ(read("Root/Fixed").max_instance, 3u);
  EXPECT_EQ(read("Root/Fixed/3").rw, 0u);
  EXPECT_EQ(read("Root/FixedWritable").rw, 0u);
  EXPECT_EQ(read("Root/FixedWritable").key, 0u);
  EXPECT_EQ(read("Root/Fixed/0/Single").rw, 0u);
  EXPECT_TRUE(read("Root/Fixed/3/Single").well_formed);
}

TEST_F(MappingTest, TemplatesHoldLeastInstancesAndCountThem) {
  write_model(object("Root.", "") +
              object("Root.Outer.{i}.", parameter("InnerNumberOfEntries", "<unsignedInt/>"),
                     table_attributes("readWrite", "1", "unbounded", "")) +
              object("Root.Outer.{i}.Inner.{i}.", parameter("P"),
                     table_attributes("readOnly", "2", "4", "InnerNumberOfEntries")));
  ASSERT_EQ(build().code, 0);
  for (const char *outer : {"Root/Outer/0", "Root/Outer/1"}) {
    EXPECT_EQ(value(outer, "InnerNumberOfEntries"), "2") << outer;
    EXPECT_EQ(read(std::string(outer) + "/Inner").pnoe, "Outer/InnerNumberOfEntries") << outer;
    for (const char *inner : {"/Inner/0", "/Inner/1", "/Inner/2"}) {
      EXPECT_TRUE(read(outer + std::string(inner)).well_formed) << outer << inner;
    }
    EXPECT_FALSE(fs::exists(path("out/" + std::string(outer) + "/Inner/3")));
  }
}

TEST_F(MappingTest, NamesAreTrimmed) {
  write_model(object(" Root. ", parameter(" Queueing ")));
  ASSERT_EQ(build().code, 0);
  EXPECT_EQ(read("Root").records.at(0).name, "Queueing");
}

TEST_F(MappingTest, NotificationAndInformAttributes) {
  const auto with = [](const std::string &attribute) { return "access=\"readOnly\" " + attribute; };
  write_model(object(
      "Root.", parameter("Plain") +
                   parameter("Normal", "<string/>", with("activeNotify=\"normal\"")) +
                   parameter("Forced", "<string/>", with("activeNotify=\"forceEnabled\"")) +
                   parameter("Default", "<string/>", with("activeNotify=\"forceDefaultEnabled\"")) +
                   parameter("Deny", "<string/>", with("activeNotify=\"canDeny\"")) +
                   parameter("Inform", "<string/>", with("forcedInform=\"true\"")) +
                   parameter("Silent", "<string/>", with("forcedInform=\"false\""))));
  ASSERT_EQ(build().code, 0);
  const ReadFile file = read("Root");
  const auto expect = [&](const char *name, unsigned noti, unsigned noti_rw, unsigned inform) {
    const ReadRecord record = find_record(file, name);
    EXPECT_EQ(record.noti, noti) << name;
    EXPECT_EQ(record.noti_rw, noti_rw) << name;
    EXPECT_EQ(record.inform_tr069, inform) << name;
    EXPECT_EQ(record.hide, 0u) << name;
    EXPECT_EQ(record.device_type, 0u) << name;
  };
  expect("Plain", 0, 1, 0);
  expect("Normal", 0, 1, 0);
  expect("Forced", 2, 0, 0);
  expect("Default", 2, 1, 0);
  expect("Deny", 0, 1, 0);
  expect("Inform", 0, 1, 1);
  expect("Silent", 0, 1, 0);
}

TEST_F(MappingTest, HiddenConcernsTheValueOnly) {
  write_model(object("Root.",
                     "<parameter name=\"Password\" access=\"readWrite\">"
                     "<syntax hidden=\"true\"><string/></syntax></parameter>\n"));
  ASSERT_EQ(build().code, 0);
  EXPECT_EQ(read("Root").records.at(0).hide, 0u);
  EXPECT_EQ(read("Root").records.at(0).rw, 1u);
  EXPECT_EQ(read("Root").records.at(0).key, 15u);
}

TEST_F(MappingTest, ImpliedAncestorsAreEmptyObjectsAndOpenTables) {
  write_model(object("Root.A.{i}.B.", parameter("P")));
  const RunResult result = build();
  ASSERT_EQ(result.code, 0);
  EXPECT_EQ(result.out.substr(0, 34), "1 objects, 0 tables, 1 parameters;");
  EXPECT_EQ(read("Root").bytes.size(), 188u);
  EXPECT_EQ(read("Root/A").rw, 2u);
  EXPECT_EQ(read("Root/A").max_instance, 255u);
  EXPECT_EQ(read("Root/A/0/B").records.at(0).name, "P");
}

TEST_F(MappingTest, ModelIsChosenByName) {
  write("model.xml", "<document><model name=\"A:1.0\">" + object("A.", "") +
                         "</model><model name=\"B:1.0\">" + object("B.", "") +
                         "</model></document>");
  const RunResult result =
      run({"--model", path("model.xml"), "--model-name", "B:1.0", path("out")});
  ASSERT_EQ(result.code, 0) << result.err;
  EXPECT_TRUE(fs::exists(path("out/B/property.conf")));
  EXPECT_FALSE(fs::exists(path("out/A")));
}

TEST_F(MappingTest, LargestObjectHas255Parameters) {
  std::string parameters;
  for (int i = 0; i < 255; ++i) {
    parameters += parameter("P" + std::to_string(i));
  }
  write_model(object("Root.", parameters));
  ASSERT_EQ(build().code, 0);
  EXPECT_TRUE(read("Root").well_formed);
  EXPECT_EQ(read("Root").records.size(), 255u);
  EXPECT_EQ(read("Root").records.back().name, "P254");
}

}  // namespace

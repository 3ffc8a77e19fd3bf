// The file of filters: numbers, quoting, when there is one, and what the records say.
#include <filesystem>

#include "tests/mkstore/build_run.h"
#include "tests/mkstore/filter_reader.h"

namespace fs = std::filesystem;

namespace {

using FilterFileTest = BuildTest;

TEST_F(FilterFileTest, HasExactlyTheseBytes) {
  write_model(object("Root.", parameter("A", "<boolean/>") + parameter("B") +
                                  parameter("C", "<string><enumeration value=\"it's\"/></string>") +
                                  parameter("D", "<boolean/>")) +
              object("Root.E.", parameter("F", "<string><pattern value=\"[0-9]{2}\"/></string>")));
  const RunResult result = build();
  ASSERT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(read_bytes(path("out/regex_file")),
            "config filter 'filter1'\n\toption value '^(false|true|[01])$'\n\n"
            "config filter 'filter2'\n\toption value '^it'\\''s$'\n\n"
            "config filter 'filter3'\n\toption value '^[0-9]{2}$'\n");
  EXPECT_NE(result.out.find("3 filters for 4 parameters; unchecked: nothing\n"), std::string::npos)
      << result.out;
  const ReadFile root = read("Root");
  EXPECT_EQ(find_record(root, "A").param_check, 1u);
  EXPECT_EQ(find_record(root, "B").param_check, 0u);
  EXPECT_EQ(find_record(root, "C").param_check, 2u);
  EXPECT_EQ(find_record(root, "D").param_check, 1u);
  EXPECT_EQ(find_record(read("Root/E"), "F").param_check, 3u);
}

TEST_F(FilterFileTest, IsNotThereWithoutFilters) {
  write_model(object("Root.", parameter("A")));
  ASSERT_EQ(build().code, 0);
  EXPECT_FALSE(fs::exists(path("out/regex_file")));
}

TEST_F(FilterFileTest, IsReplacedWithItsStore) {
  write_model(object("Root.", parameter("A", "<boolean/>")));
  ASSERT_EQ(build().code, 0);
  ASSERT_TRUE(fs::exists(path("out/regex_file")));
  write_model(object("Root.", parameter("A")));
  ASSERT_EQ(build().code, 0);
  EXPECT_FALSE(fs::exists(path("out/regex_file")));
  EXPECT_EQ(leftovers(), std::vector<std::string>({"out"}));
}

TEST_F(FilterFileTest, OnlyTheOneInTheRootBelongsToAStore) {
  write_model(object("Root.", parameter("A", "<boolean/>")));
  ASSERT_EQ(build().code, 0);
  write("out/Root/regex_file", "x");
  EXPECT_EQ(build().code, 1);
  EXPECT_EQ(read_bytes(path("out/Root/regex_file")), "x");
}

TEST_F(FilterFileTest, TemplatesAndInstancesCarryTheNumber) {
  write_model(object("Root.", "") + object("Root.T.{i}.", parameter("A", "<boolean/>"),
                                           "access=\"readOnly\" minEntries=\"1\""));
  ASSERT_EQ(build().code, 0);
  EXPECT_EQ(find_record(read("Root/T/0"), "A").param_check, 1u);
  EXPECT_EQ(find_record(read("Root/T/1"), "A").param_check, 1u);
}

TEST_F(FilterFileTest, AttributesFileHasTheLastWord) {
  write_model(object("Root.", parameter("A", "<boolean/>")));
  write("attributes", "Root.A param_check=0\n");
  ASSERT_EQ(build().code, 0);
  EXPECT_EQ(find_record(read("Root"), "A").param_check, 0u);
}

TEST_F(FilterFileTest, UncheckedParametersAreListedOnlyOnRequest) {
  write_model(object("Root.T.{i}.", parameter("A", "<string><size maxLength=\"100\"/></string>") +
                                        parameter("B", "<string><pathRef/></string>")));
  const RunResult brief = build();
  EXPECT_NE(brief.out.find("0 filters for 0 parameters; unchecked: length 1, reference 1\n"),
            std::string::npos)
      << brief.out;
  EXPECT_EQ(brief.out.find("Root.T"), std::string::npos);
  const RunResult full = run({"--verbose", "--model", path("model.xml"), path("out")});
  EXPECT_EQ(full.out.substr(0, full.out.find("1 objects")),
            "unchecked: Root.T.{i}.A: length\nunchecked: Root.T.{i}.B: reference\n");
}

}  // namespace

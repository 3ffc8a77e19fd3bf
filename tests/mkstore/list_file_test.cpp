// The instances, values and attributes files: what they set, and what they refuse.
#include <filesystem>

#include "tests/mkstore/build_run.h"

namespace fs = std::filesystem;

namespace {

class ListFileTest : public BuildTest {
 protected:
  // Root with a table A of tables B, and a fixed table F of two.
  ListFileTest() {
    write_model(object("Root.", parameter("ANumberOfEntries", "<unsignedInt/>") + parameter("S")) +
                object("Root.A.{i}.",
                       parameter("BNumberOfEntries", "<unsignedInt/>") + parameter("P"),
                       "access=\"readWrite\" minEntries=\"0\" maxEntries=\"4\" "
                       "numEntriesParameter=\"ANumberOfEntries\"") +
                object("Root.A.{i}.B.{i}.", parameter("Q"),
                       "access=\"readWrite\" minEntries=\"0\" maxEntries=\"unbounded\" "
                       "numEntriesParameter=\"BNumberOfEntries\"") +
                object("Root.F.{i}.", parameter("R"),
                       "access=\"readOnly\" minEntries=\"2\" maxEntries=\"2\""));
  }

  void expect_built() const {
    const RunResult result = build();
    ASSERT_EQ(result.code, 0) << result.err;
  }
  bool made(const std::string &object) const { return read(object).well_formed; }
};

TEST_F(ListFileTest, InstancesImplyTheirAncestors) {
  write("instances", "# comment\n\n  Root.A.3.B.200.  \r\nRoot.A.1.\nRoot.A.1.");
  expect_built();
  EXPECT_TRUE(made("Root/A/1"));
  EXPECT_FALSE(fs::exists(path("out/Root/A/2")));
  EXPECT_TRUE(made("Root/A/3/B/200"));
  EXPECT_FALSE(fs::exists(path("out/Root/A/1/B/200")));
  EXPECT_EQ(value("Root", "ANumberOfEntries"), "2");
  EXPECT_EQ(value("Root/A/3", "BNumberOfEntries"), "1");
  EXPECT_EQ(value("Root/A/1", "BNumberOfEntries"), "0");
  EXPECT_EQ(value("Root/A/0", "BNumberOfEntries"), "0");
}

TEST_F(ListFileTest, InstancesOfATemplateComeWithEveryCopy) {
  write("instances", "Root.A.0.B.1.\nRoot.A.2.B.5.\n");
  expect_built();
  EXPECT_TRUE(made("Root/A/0/B/1"));
  EXPECT_TRUE(made("Root/A/2/B/1"));
  EXPECT_TRUE(made("Root/A/2/B/5"));
  EXPECT_EQ(value("Root/A/0", "BNumberOfEntries"), "1");
  EXPECT_EQ(value("Root/A/2", "BNumberOfEntries"), "2");
}

TEST_F(ListFileTest, InstanceAtTheLimitIsMadeAndAboveRefused) {
  write("instances", "Root.A.4.\n");
  expect_built();
  EXPECT_TRUE(made("Root/A/4"));
  fs::remove_all(path("out"));
  write("instances", "Root.A.1.\nRoot.A.5.\n");
  expect_refused("@instances:2: Root.A.5. is above max_instance, which is 4");
}

TEST_F(ListFileTest, InstanceLinesAreChecked) {
  const auto refused = [&](const std::string &line, const std::string &reason) {
    write("instances", "# first\n" + line + "\n");
    expect_refused("@instances:2: " + reason);
  };
  refused("Root.A.1", "\"Root.A.1\" does not end in a dot");
  refused("Root.", "Root. is not an instance of a table");
  refused("Root.A.", "Root.A. is not an instance of a table");
  refused("Root.A.0.", "Root.A.0. is a template, which is always made");
  refused("Root.X.1.", "no object Root.X.1. in the model: \"X\" is unknown here");
  refused("Root.A.B.1.", "no object Root.A.B.1. in the model: \"B\" is unknown here");
  refused("Root.1.", "no object Root.1. in the model: \"1\" is no instance number here");
  refused("Root.A.01.", "no object Root.A.01. in the model: \"01\" is no instance number here");
  refused("Root.A.256.", "no object Root.A.256. in the model: \"256\" is unknown here");
  refused("Root.F.3.", "Root.F.3. is above max_instance, which is 2");
}

TEST_F(ListFileTest, OnlyTheFirstEqualsSignSplitsAndNothingIsTrimmed) {
  write("values", "#Root.S=no\n\nRoot.S= a=b \n");
  expect_built();
  EXPECT_EQ(value("Root", "S"), " a=b ");
}

TEST_F(ListFileTest, LastValueLineNeedsNoLineFeedAndTheLaterLineWins) {
  write("values", "Root.S=one\nRoot.S=two");
  expect_built();
  EXPECT_EQ(value("Root", "S"), "two");
}

TEST_F(ListFileTest, EmptyValueBecomesACarriageReturn) {
  write("values", "Root.S=\n");
  expect_built();
  EXPECT_EQ(value("Root", "S"), "\r");
}

TEST_F(ListFileTest, TemplateValuesAreInheritedAndTheNearestWins) {
  write("instances", "Root.A.1.B.1.\nRoot.A.1.B.2.\nRoot.A.2.B.1.\n");
  write("values",
        "Root.A.1.B.2.Q=own\nRoot.A.1.B.0.Q=near\nRoot.A.0.B.0.Q=far\nRoot.A.0.P=template\n"
        "Root.A.2.P=two\n");
  expect_built();
  EXPECT_EQ(value("Root/A/0/B/0", "Q"), "far");
  EXPECT_EQ(value("Root/A/2/B/1", "Q"), "far");
  EXPECT_EQ(value("Root/A/1/B/0", "Q"), "near");
  EXPECT_EQ(value("Root/A/1/B/1", "Q"), "near");
  EXPECT_EQ(value("Root/A/1/B/2", "Q"), "own");
  EXPECT_EQ(value("Root/A/0", "P"), "template");
  EXPECT_EQ(value("Root/A/1", "P"), "template");
  EXPECT_EQ(value("Root/A/2", "P"), "two");
}

TEST_F(ListFileTest, ValueOf255BytesIsStored) {
  write("values", "Root.S=" + std::string(255, 'x') + "\n");
  expect_built();
  EXPECT_EQ(value("Root", "S"), std::string(255, 'x'));
}

TEST_F(ListFileTest, ValueLinesAreChecked) {
  const auto refused = [&](const std::string &line, const std::string &reason) {
    write("values", "Root.S=fine\n" + line + "\n");
    expect_refused("@values:2: " + reason);
  };
  refused("Root.S", "expected full.parameter.path=value");
  refused("S=1", "\"S\" is not the full path of a parameter");
  refused("Root.X=1", "no parameter Root.X in the model");
  refused(" Root.S=1", "no object  Root. in the model: \" Root\" is unknown here");
  refused("Root.A.P=1", "no parameter Root.A.P in the model");
  refused("Root.A.1.P=1", "no instance Root.A.1. in the store");
  refused("Root.S=" + std::string(256, 'x'), "Root.S: the value has 256 characters, more than 255");
  refused("Root.S=\rx",
          "Root.S: the value begins with a carriage return, which stands for the empty value");
  refused("Root.S=a" + std::string(1, '\0'), "Root.S: the value contains a NUL character");
  refused("Root.ANumberOfEntries=x", "Root.ANumberOfEntries: \"x\" is not of type unsignedInt");
  refused("Root.ANumberOfEntries=3", "Root.ANumberOfEntries counts instances and is 0");
}

TEST_F(ListFileTest, CounterMayBeSetToWhatItCounts) {
  write("instances", "Root.A.2.\n");
  write("values", "Root.ANumberOfEntries=1\n");
  expect_built();
  EXPECT_EQ(value("Root", "ANumberOfEntries"), "1");
}

TEST_F(ListFileTest, EveryParameterAttributeReachesItsField) {
  write("attributes",
        "# comment\n  Root.S rw=3\nRoot.S key=9\nRoot.S encryt=2\nRoot.S noti=11\n"
        "Root.S flash_rw=1\nRoot.S hide=1\nRoot.S noti_rw=0\nRoot.S namechange=1\n"
        "Root.S flash_encryt=1\nRoot.S inform_tr069=1\nRoot.S inform_dbus=200\n"
        "Root.S device_type=129\nRoot.S type=77\nRoot.S param_check=4294967295\n"
        "Root.S accesslist=Subscriber, ACS\nRoot.S\tarea=a=b \n");
  expect_built();
  const ReadRecord r = find_record(read("Root"), "S");
  EXPECT_EQ(r.bytes.substr(0, 8), std::string("\x4d\xc8\x81\x00\xe6\xbd\xa0\x00", 8));
  EXPECT_EQ(r.rw, 3u);
  EXPECT_EQ(r.key, 9u);
  EXPECT_EQ(r.encryt, 2u);
  EXPECT_EQ(r.noti, 11u);
  EXPECT_EQ(r.noti_rw, 0u);
  EXPECT_EQ(r.param_check, 4294967295u);
  EXPECT_EQ(r.accesslist, "Subscriber, ACS");
  EXPECT_EQ(r.area, "a=b ");
}

TEST_F(ListFileTest, EveryObjectAttributeReachesItsField) {
  write("attributes",
        "Root.A. hide=1\nRoot.A. flag0=1\nRoot.A. rw=2\nRoot.A. level3=33\nRoot.A. key=5\n"
        "Root.A. max_instance=7\nRoot.A. device_type=6\nRoot.A. level7=10\nRoot.A. flag8=1\n"
        "Root.A. flag9=1\nRoot.A. flag11=1\nRoot.A. devfunc=wan\nRoot.A. pnoe=X/Y\n"
        "Root.A. extra_text=more\n");
  expect_built();
  const ReadFile a = read("Root/A");
  EXPECT_EQ(a.header.substr(4, 8), std::string("\x00\x07\x06\x21\xe5\xae\x00\x00", 8));
  EXPECT_EQ(a.devfunc, "wan");
  EXPECT_EQ(a.pnoe, "X/Y");
  EXPECT_EQ(a.extra_text, "more");
  EXPECT_EQ(read("Root/A/0").rw, 1u);
}

TEST_F(ListFileTest, TemplateAttributesAreInherited) {
  write("instances", "Root.A.1.\nRoot.A.2.\n");
  write("attributes", "Root.A.2.P hide=0\nRoot.A.0.P hide=1\nRoot.A.0. level3=4\n");
  expect_built();
  EXPECT_EQ(find_record(read("Root/A/0"), "P").hide, 1u);
  EXPECT_EQ(find_record(read("Root/A/1"), "P").hide, 1u);
  EXPECT_EQ(find_record(read("Root/A/2"), "P").hide, 0u);
  EXPECT_EQ(read("Root/A/1").level3, 4u);
  EXPECT_EQ(read("Root/A").level3, 0u);
}

TEST_F(ListFileTest, MaxInstanceOfTheAttributesFileLimitsInstances) {
  write("instances", "Root.A.3.\n");
  write("attributes", "Root.A. max_instance=2\n");
  expect_refused("@instances:1: Root.A.3. is above max_instance, which is 2");
}

TEST_F(ListFileTest, AttributeLinesAreChecked) {
  const auto refused = [&](const std::string &line, const std::string &reason) {
    write("attributes", "\n" + line + "\n");
    expect_refused("@attributes:2: " + reason);
  };
  refused("Root.S", "expected PATH NAME=VALUE");
  refused("Root.S=1", "expected PATH NAME=VALUE");
  refused("Root.S hide", "expected PATH NAME=VALUE");
  refused("Root.S pnoe=x", "a parameter has no attribute \"pnoe\"");
  refused("Root.A. noti=1", "an object has no attribute \"noti\"");
  refused("Root.S hide=2", "hide \"2\" is not a number from 0 to 1");
  refused("Root.S noti=16", "noti \"16\" is not a number from 0 to 15");
  refused("Root.S type=-1", "type \"-1\" is not a number from 0 to 255");
  refused("Root.S type=", "type \"\" is not a number from 0 to 255");
  refused("Root.S param_check=4294967296",
          "param_check \"4294967296\" is not a number from 0 to 4294967295");
  refused("Root.S accesslist=0123456789abcdef",
          "the text of accesslist has 16 characters, more than 15");
  refused("Root.S area=0123456789abcdef0123456789ab",
          "the text of area has 28 characters, more than 27");
  refused("Root.A. pnoe=" + std::string(64, 'x'),
          "the text of pnoe has 64 characters, more than 63");
  refused("Root.A.1.P hide=1", "no instance Root.A.1. in the store");
  refused("Root.X hide=1", "no parameter Root.X in the model");
}

TEST_F(ListFileTest, MissingListFileIsNamed) {
  const RunResult result =
      run({"--model", path("model.xml"), "--values", path("none"), path("out")});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err,
            "zrcfg-mkstore: " + path("none") + ": cannot be read: No such file or directory\n");
  EXPECT_TRUE(leftovers().empty());
}

}  // namespace

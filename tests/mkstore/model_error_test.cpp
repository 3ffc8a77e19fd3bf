// Documents that cannot be built: exact message, exit code 1, nothing left behind.
#include <filesystem>

#include "tests/mkstore/build_run.h"

namespace {

using ModelErrorTest = BuildTest;

TEST_F(ModelErrorTest, MissingFile) {
  expect_refused("@model.xml: cannot be read: No such file or directory");
}

TEST_F(ModelErrorTest, NotXml) {
  write("model.xml", "");
  expect_refused("@model.xml:1: not well-formed XML: No document element found");
  write("model.xml", "just text\n");
  expect_refused("@model.xml:2: not well-formed XML: No document element found");
  write("model.xml", "<a>\n<b>\n</a>\n");
  expect_refused("@model.xml:3: not well-formed XML: Start-end tags mismatch");
}

TEST_F(ModelErrorTest, NotADataModel) {
  write("model.xml", "<?xml version=\"1.0\"?>\n<html/>\n");
  expect_refused(
      "@model.xml:2: <html>: not a data model document, whose root element is dm:document");
  write("model.xml", "<document/>");
  expect_refused("@model.xml: the document has no model");
}

TEST_F(ModelErrorTest, NoSuchModel) {
  write_model(object("Root.", ""));
  const RunResult result =
      run({"--model", path("model.xml"), "--model-name", "Other:1.0", path("out")});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "zrcfg-mkstore: " + path("model.xml") +
                            ": no model named \"Other:1.0\"; the document has Test:1.0\n");
  EXPECT_TRUE(leftovers().empty());
}

TEST_F(ModelErrorTest, SeveralModelsNeedAName) {
  write("model.xml", "<document><model name=\"A:1.0\"/><model name=\"B:1.0\"/></document>");
  expect_refused("@model.xml: several models, choose one with --model-name: A:1.0, B:1.0");
}

TEST_F(ModelErrorTest, ModelWithoutObjects) {
  write_model("");
  expect_refused("@model.xml:2: Test:1.0: the model has no objects");
}

TEST_F(ModelErrorTest, MoreThan255Parameters) {
  std::string parameters;
  for (int i = 0; i < 256; ++i) {
    parameters += parameter("P" + std::to_string(i));
  }
  write_model(object("Root.", "") + object("Root.Big.", parameters));
  expect_refused("@model.xml:5: Root.Big.: 256 parameters, more than 255");
}

TEST_F(ModelErrorTest, NameOver63) {
  const std::string fits(63, 'n');
  const std::string large(64, 'n');
  write_model(object("Root." + fits + ".", parameter(fits)));
  EXPECT_EQ(build().code, 0);
  EXPECT_EQ(read("Root/" + fits).records.at(0).name, fits);
  std::filesystem::remove_all(path("out"));
  write_model(object("Root.", parameter(large)));
  expect_refused("@model.xml:4: Root." + large + ": the name has 64 characters, more than 63");
  write_model(object("Root." + large + ".", ""));
  expect_refused("@model.xml:3: Root." + large + ".: the name " + large +
                 " has 64 characters, more than 63");
}

TEST_F(ModelErrorTest, PathOver255) {
  std::string path_of_240;
  for (const char c : {'a', 'b', 'c', 'd'}) {
    path_of_240 += std::string(59, c) + ".";
  }
  write_model(object(path_of_240 + "123456789abcde.", ""));
  EXPECT_EQ(build().code, 0);
  std::filesystem::remove_all(path("out"));
  write_model(object(path_of_240 + "123456789abcdef.", ""));
  expect_refused("@model.xml:3: " + path_of_240 +
                 "123456789abcdef.: the path has 256 characters, more than 255");
  write_model(object(path_of_240, parameter("P23456789abcdef6")));
  expect_refused("@model.xml:3: " + path_of_240 +
                 "P23456789abcdef6: the path has 256 characters, more than 255");
}

TEST_F(ModelErrorTest, PathOver255WithItsInstanceNumber) {
  const std::string names = std::string(60, 'a') + "." + std::string(60, 'b') + "." +
                            std::string(60, 'c') + "." + std::string(60, 'd') + ".";
  write_model(object(names + "12345x.{i}.", parameter("P"), "access=\"readOnly\""));
  write("instances", names + "12345x.9.\n" + names + "12345x.10.\n");
  EXPECT_EQ(build().code, 0);
  std::filesystem::remove_all(path("out"));
  write("instances", names + "12345x.9.\n" + names + "12345x.100.\n");
  expect_refused("@instances:2: " + names +
                 "12345x.100.P: the path has 256 characters, more than 255");
}

TEST_F(ModelErrorTest, CounterNameOver63) {
  write_model(object("Root.", "") +
              object("Root.T.{i}.", "",
                     "access=\"readOnly\" numEntriesParameter=\"" + std::string(59, 'N') + "\""));
  expect_refused("@model.xml:5: Root.T.{i}.: the counter name Root/" + std::string(59, 'N') +
                 " has 64 characters, more than 63");
}

TEST_F(ModelErrorTest, BrokenObjects) {
  const auto refused = [&](const std::string &elements, const std::string &message) {
    write_model(elements);
    expect_refused("@model.xml:" + message);
  };
  refused(object("Root", ""), "3: Root: the object path does not end in a dot");
  refused(object("Root..A.", ""), "3: Root..A.: \"\" cannot be part of an object path");
  refused(object("Root.1.", ""), "3: Root.1.: \"1\" cannot be part of an object path");
  refused(object("Root.a/b.", ""), "3: Root.a/b.: \"a/b\" cannot be part of an object path");
  refused(object("{i}.", ""), "3: {i}.: \"{i}\" cannot be part of an object path");
  refused("<object base=\"Root.\" access=\"readOnly\"/>\n",
          "3: <object>: no name; only the flattened form of a model can be built");
  refused(object("Root.", "", "access=\"never\""),
          "3: Root.: access \"never\" is not readOnly or readWrite");
  refused(object("Root.", "") + object("Root.", ""),
          "5: Root.: the document has this object already, in line 3");
  refused(object("Root.A.", "") + object("Root.A.{i}.", ""),
          "5: Root.A.{i}.: the document has Root.A. already, in line 3");
  refused(object("Root.A.", "") + object("Root.A.{i}.B.", ""),
          "5: Root.A.{i}.B.: its parent is Root.A. elsewhere in the document");
  refused(object("T.{i}.", "", "access=\"readOnly\" minEntries=\"3\" maxEntries=\"2\""),
          "3: T.{i}.: minEntries is above maxEntries");
  refused(object("T.{i}.", "", "access=\"readOnly\" minEntries=\"256\""),
          "3: T.{i}.: minEntries 256 is above 255");
  refused(object("T.{i}.", "", "access=\"readOnly\" maxEntries=\"many\""),
          "3: T.{i}.: maxEntries \"many\" is not a number");
}

TEST_F(ModelErrorTest, BrokenParameters) {
  const auto refused = [&](const std::string &element, const std::string &message) {
    write_model(object("Root.", element));
    expect_refused("@model.xml:" + message);
  };
  refused(parameter("P") + parameter("P"),
          "5: Root.P: the object has a parameter of this name already");
  refused(parameter("a.b"), "4: Root.a.b: \"a.b\" is not a parameter name");
  refused(parameter("P", "<string/>", ""), "4: Root.P: access \"\" is not readOnly or readWrite");
  refused(parameter("P", "<string/>", "access=\"readOnly\" activeNotify=\"maybe\""),
          "4: Root.P: activeNotify \"maybe\" is not known");
  refused("<parameter name=\"P\" access=\"readOnly\"/>\n", "4: Root.P: it has no syntax");
  refused(parameter("P", "<float/>"), "4: Root.P: its syntax has no type that is known");
  refused(parameter("P", "<dataType ref=\"X\"/>"),
          "4: Root.P: the data type \"X\" is not in the document");
  refused(parameter("P", "<int><range minInclusive=\"low\"/></int>"),
          "4: Root.P: minInclusive \"low\" of range is not a number");
  refused(parameter("P", "<string><size minLength=\"256\"/></string>"),
          "4: Root.P: no permitted value can be derived, and it has no default");
  refused(
      parameter("P", "<string/><default type=\"object\" value=\"" + std::string(256, 'x') + "\"/>"),
      "4: Root.P: the value has 256 characters, more than 255");
  refused(parameter("P", "<string/><default type=\"object\" value=\"a&#10;b\"/>"),
          "4: Root.P: the value contains a line feed");
}

TEST_F(ModelErrorTest, DataTypeDerivedFromItself) {
  write_model(object("Root.", parameter("P", "<dataType ref=\"A\"/>")),
              "<dataType name=\"A\" base=\"B\"/><dataType name=\"B\" base=\"A\"/>");
  expect_refused("@model.xml:4: Root.P: the data type \"A\" is derived from itself");
}

TEST_F(ModelErrorTest, CounterThatDoesNotExistIsAWarning) {
  write_model(object("Root.", "") +
              object("Root.T.{i}.", "", "access=\"readOnly\" numEntriesParameter=\"N\""));
  const RunResult result = build();
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.err, "zrcfg-mkstore: warning: " + path("model.xml") +
                            ": Root.T.{i}.: the counter N is no parameter of Root., so instances "
                            "cannot be added later\n");
  EXPECT_EQ(read("Root/T").pnoe, "Root/N");
}

}  // namespace

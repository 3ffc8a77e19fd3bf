// The output directory and the program itself: replacement, failures, usage, exit codes.
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "tests/mkstore/build_run.h"

namespace fs = std::filesystem;

namespace {

using OutputTest = BuildTest;

TEST_F(OutputTest, EmptyDirectoryIsReplaced) {
  write_model(object("Root.", ""));
  fs::create_directory(path("out"));
  EXPECT_EQ(build().code, 0);
  EXPECT_TRUE(fs::exists(path("out/Root/property.conf")));
  EXPECT_EQ(leftovers(), std::vector<std::string>({"out"}));
}

TEST_F(OutputTest, OldStoreIsReplacedAsAWhole) {
  write_model(object("Old.", ""));
  ASSERT_EQ(build().code, 0);
  write_model(object("New.", ""));
  EXPECT_EQ(build().code, 0);
  EXPECT_TRUE(fs::exists(path("out/New/property.conf")));
  EXPECT_FALSE(fs::exists(path("out/Old")));
  EXPECT_EQ(leftovers(), std::vector<std::string>({"out"}));
}

TEST_F(OutputTest, FailureKeepsTheOldStore) {
  write_model(object("Old.", ""));
  ASSERT_EQ(build().code, 0);
  write("values", "Old.X=1\n");
  EXPECT_EQ(build().code, 1);
  EXPECT_TRUE(fs::exists(path("out/Old/property.conf")));
  EXPECT_EQ(leftovers(), std::vector<std::string>({"out"}));
}

TEST_F(OutputTest, OtherDirectoriesAreNotTouched) {
  write_model(object("Root.", ""));
  fs::create_directory(path("out"));
  write("out/precious.txt", "x");
  const RunResult result = build();
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "zrcfg-mkstore: " + path("out") +
                            ": is not empty and not a store, for it holds " +
                            path("out/precious.txt") + "\n");
  EXPECT_EQ(read_bytes(path("out/precious.txt")), "x");
  EXPECT_EQ(leftovers(), std::vector<std::string>({"out"}));
}

TEST_F(OutputTest, FileInTheWayIsNotTouched) {
  write_model(object("Root.", ""));
  write("out", "x");
  const RunResult result = build();
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "zrcfg-mkstore: " + path("out") + ": exists and is not a directory\n");
  EXPECT_EQ(read_bytes(path("out")), "x");
}

TEST_F(OutputTest, ParentMustExist) {
  write_model(object("Root.", ""));
  const RunResult result = run({"--model", path("model.xml"), path("none/out")});
  EXPECT_EQ(result.code, 1);
  EXPECT_EQ(result.err, "zrcfg-mkstore: " + path("none") +
                            ": cannot make a directory here: No such file or directory\n");
  EXPECT_TRUE(leftovers().empty());
}

TEST_F(OutputTest, TrailingSlashAndAccessRights) {
  write_model(object("Root.", ""));
  const mode_t mask = umask(022);
  const RunResult result = run({"--model", path("model.xml"), path("out/")});
  (void)umask(mask);  // Only puts back what was there.
  EXPECT_EQ(result.code, 0) << result.err;
  EXPECT_EQ(fs::status(path("out")).permissions(), fs::perms(0755));
  EXPECT_EQ(fs::status(path("out/Root")).permissions(), fs::perms(0755));
  EXPECT_EQ(fs::status(path("out/Root/property.conf")).permissions(), fs::perms(0644));
}

TEST_F(OutputTest, UsageErrorsEndWith2) {
  EXPECT_EQ(run({}).code, 2);
  EXPECT_EQ(run({"--model", "x"}).code, 2);
  EXPECT_EQ(run({path("out")}).code, 2);
  EXPECT_EQ(run({"--model", "x", path("out"), "--unknown"}).code, 2);
  const RunResult result = run({"--model", "x", path("out"), "surplus"});
  EXPECT_EQ(result.code, 2);
  EXPECT_NE(result.err.find("surplus"), std::string::npos);
  EXPECT_TRUE(leftovers().empty());
}

TEST_F(OutputTest, HelpAndVersionEndWith0) {
  const RunResult help = run({"--help"});
  EXPECT_EQ(help.code, 0);
  for (const char *option : {"--model", "--model-name", "--instances", "--values", "--attributes",
                             "OUTDIR", "Exit codes"}) {
    EXPECT_NE(help.out.find(option), std::string::npos) << option;
  }
  const RunResult version = run({"--version"});
  EXPECT_EQ(version.code, 0);
  EXPECT_EQ(version.out.substr(0, 14), "zrcfg-mkstore ");
}

TEST_F(OutputTest, ProgramReturnsTheExitCodes) {
  write_model(object("Root.", ""));
  const auto code = [&](const std::string &arguments) {
    const std::string command = std::string(ZRCFG_MKSTORE_PROGRAM) + " " + arguments + " >" +
                                path("stdout") + " 2>" + path("stderr");
    return WEXITSTATUS(std::system(command.c_str()));
  };
  EXPECT_EQ(code("--model " + path("model.xml") + " " + path("out")), 0);
  EXPECT_TRUE(read("Root").well_formed);
  EXPECT_EQ(read_bytes(path("stdout")).substr(0, 10), "1 objects,");
  EXPECT_EQ(read_bytes(path("stderr")), "");
  EXPECT_EQ(code("--model " + path("none") + " " + path("out2")), 1);
  EXPECT_EQ(read_bytes(path("stderr")),
            "zrcfg-mkstore: " + path("none") + ": cannot be read: No such file or directory\n");
  EXPECT_EQ(code(""), 2);
}

TEST_F(OutputTest, FailedWriteLeavesNothing) {
  std::string parameters;
  for (int i = 0; i < 40; ++i) {
    parameters += parameter("P" + std::to_string(i));
  }
  write_model(object("Root.", "") + object("Root.Big.", parameters));
  // Files are limited to two blocks of 512 bytes, which Root fits in and Root.Big does not.
  const std::string command = "trap '' XFSZ; ulimit -f 2; exec " +
                              std::string(ZRCFG_MKSTORE_PROGRAM) + " --model " + path("model.xml") +
                              " " + path("out") + " 2>" + path("instances");
  EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 1);
  const std::string message = read_bytes(path("instances"));
  EXPECT_NE(message.find("/Root/Big/property.conf: cannot be written: File too large\n"),
            std::string::npos)
      << message;
  EXPECT_EQ(leftovers(), std::vector<std::string>());
}

TEST_F(OutputTest, InterruptionLeavesNothing) {
  write_model(
      object("Root.", "") + object("Root.T.{i}.", "", "access=\"readOnly\" minEntries=\"255\"") +
      object("Root.T.{i}.U.{i}.", parameter("P"), "access=\"readOnly\" minEntries=\"250\""));
  const std::string model = path("model.xml");
  const std::string out = path("out");
  const pid_t child = fork();
  if (child == 0) {
    execl(ZRCFG_MKSTORE_PROGRAM, ZRCFG_MKSTORE_PROGRAM, "--model", model.c_str(), out.c_str(),
          nullptr);
    _exit(127);
  }
  ASSERT_GT(child, 0);
  for (int i = 0; i < 10000 && leftovers().empty(); ++i) {
    usleep(1000);
  }
  ASSERT_EQ(leftovers().size(), 1u) << "the program never began to write";
  EXPECT_EQ(leftovers()[0].substr(0, 5), ".out.");
  ASSERT_EQ(kill(child, SIGTERM), 0);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_EQ(leftovers(), std::vector<std::string>());
}

}  // namespace

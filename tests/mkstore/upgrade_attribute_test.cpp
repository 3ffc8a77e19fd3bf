// Upgrades of a store: which attributes come from the old store, the new model and the new list.
#include "tests/mkstore/upgrade_run.h"

namespace {

constexpr char kNoLoss[] =
    "1 objects, 0 instances, 1 values; 0 dropped, 0 refused, 0 damaged, 0 added";

std::string model(const std::string &syntax = "<string/>",
                  const std::string &attributes = kWritable) {
  return object("Root.", parameter("P", syntax, attributes));
}

ReadRecord upgraded(const ReadFile &file) {
  return find_record(file, "P");
}

// Every bit that is not the model's, and the reserved bytes.
const std::string kFlags("\xFF\xA5\x41\x33\xFF\xFF\xFF\x77", 8);

TEST_F(UpgradeTest, RecordTakesStructureFromTheModelAndTheRestFromTheStore) {
  build_old(model());
  set_old("Root", "P", "true");
  poke_record("Root", "P", 0, kFlags);
  poke_record("Root", "P", 72, std::string("abcdefghijklmnop") + std::string(28, 'q'));
  poke_record("Root", "P", 116, std::string("\x00\x00\x00\x07next", 8));
  expect_upgrade(model("<boolean/>"), {}, kNoLoss);
  const std::string &bytes = upgraded(read("Root")).bytes;
  // Type 4; rw 1, key 15, encryt 3; all of the notification byte.
  EXPECT_EQ(bytes.substr(0, 8), std::string("\x04\xA5\x41\x33\x7F\xFF\xFF\x77", 8));
  EXPECT_EQ(bytes.substr(8, 64), "P" + std::string(63, '\0'));
  EXPECT_EQ(bytes.substr(72, 44), "abcdefghijklmnop" + std::string(28, 'q'));
  EXPECT_EQ(bytes.substr(116), std::string("\0\0\0\x01\0\0\0\0", 8));
}

TEST_F(UpgradeTest, NameFieldIsTheModels) {
  build_old(model());
  poke_record("Root", "P", 10, "junk behind the terminator");
  expect_upgrade(model(), {}, kNoLoss);
  EXPECT_EQ(upgraded(read("Root")).bytes.substr(8, 64), "P" + std::string(63, '\0'));
}

TEST_F(UpgradeTest, ReadOnlyRecordHasNoRights) {
  build_old(model());
  poke_record("Root", "P", 4, "\xFD");
  expect_upgrade(model("<string/>", "access=\"readOnly\""), {}, kNoLoss);
  const ReadRecord record = upgraded(read("Root"));
  EXPECT_EQ(record.rw, 0u);
  EXPECT_EQ(record.key, 0u);
  EXPECT_EQ(record.encryt, 1u);
}

TEST_F(UpgradeTest, AttributesFileHoldsForTheProduct) {
  build_old(model());
  poke_record("Root", "P", 5, "\x1E");  // noti 1, flash_rw, hide, noti_rw
  poke_record("Root", "P", 72, std::string("Old\0", 4));
  poke_record("Root", "P", 88, std::string("old\0", 4));
  write("attributes",
        "Root.P noti=2\nRoot.P hide=0\nRoot.P flash_rw=0\nRoot.P accesslist=New\n"
        "Root.P area=new\nRoot.P rw=2\nRoot.P device_type=9\nRoot.P encryt=1\n");
  expect_upgrade(model(), {}, kNoLoss);
  const ReadRecord record = upgraded(read("Root"));
  EXPECT_EQ(record.noti, 1u);
  EXPECT_EQ(record.flash_rw, 1u);
  EXPECT_EQ(record.accesslist, "Old");
  EXPECT_EQ(record.hide, 0u);
  EXPECT_EQ(record.area, "new");
  EXPECT_EQ(record.device_type, 9u);
  EXPECT_EQ(record.rw, 2u);
  EXPECT_EQ(record.encryt, 0u) << "the value is the old one, and not encoded";
}

TEST_F(UpgradeTest, EncodingGoesWithTheValue) {
  build_old(model());
  set_old("Root", "P", "cGFzcw==");
  poke_record("Root", "P", 4, "\x7D");
  poke_record("Root", "P", 6, "\xA0");
  expect_upgrade(model(), {}, kNoLoss);
  EXPECT_EQ(upgraded(read("Root")).encryt, 1u);
  EXPECT_EQ(upgraded(read("Root")).flash_encryt, 1u);
  const RunResult result = upgrade(model("<boolean/>"));
  EXPECT_EQ(result.out.substr(0, 38), "refused value Root.P: \"cGFzcw==\": it d");
  EXPECT_EQ(upgraded(read("Root")).line, "false");
  EXPECT_EQ(upgraded(read("Root")).encryt, 0u);
  EXPECT_EQ(upgraded(read("Root")).flash_encryt, 0u);
  EXPECT_EQ(upgraded(read("Root")).inform_tr069, 1u);
}

TEST_F(UpgradeTest, ForcedNotificationStays) {
  build_old(model());
  const std::string forced =
      model("<string/>", "access=\"readWrite\" activeNotify=\"forceEnabled\"");
  expect_upgrade(forced, {}, kNoLoss);
  EXPECT_EQ(upgraded(read("Root")).noti, 2u);
  poke_record("Root", "P", 5, "\x12");
  expect_upgrade(forced, {"refused attribute Root.P: noti=1: the model forces 2"},
                 "1 objects, 0 instances, 1 values; 0 dropped, 1 refused, 0 damaged, 0 added");
  EXPECT_EQ(upgraded(read("Root")).noti, 2u);
  EXPECT_EQ(upgraded(read("Root")).noti_rw, 0u);
}

TEST_F(UpgradeTest, NotificationThatIsOnlyADefaultDoesNot) {
  build_old(model());
  poke_record("Root", "P", 5, "\x12");
  expect_upgrade(model("<string/>", "access=\"readWrite\" activeNotify=\"forceDefaultEnabled\""),
                 {}, kNoLoss);
  EXPECT_EQ(upgraded(read("Root")).noti, 1u);
  EXPECT_EQ(upgraded(read("Root")).noti_rw, 1u);
}

TEST_F(UpgradeTest, ForcedInformStays) {
  build_old(model());
  expect_upgrade(model("<string/>", "access=\"readWrite\" forcedInform=\"true\""), {}, kNoLoss);
  EXPECT_EQ(upgraded(read("Root")).inform_tr069, 1u);
  poke_record("Root", "P", 6, "\x20");
  expect_upgrade(model(), {}, kNoLoss);
  EXPECT_EQ(upgraded(read("Root")).inform_tr069, 1u);
}

TEST_F(UpgradeTest, FilterNumberOfTheAttributesFileCounts) {
  build_old(model());
  set_old("Root", "P", "text");
  write("attributes", "Root.P param_check=0\n");
  expect_upgrade(model("<boolean/>"), {}, kNoLoss);
  EXPECT_EQ(value("Root", "P"), "text");
  write("attributes", "Root.P param_check=9\n");
  expect_upgrade(model("<boolean/>"), {"refused value Root.P: \"text\": there is no filter 9"},
                 "1 objects, 0 instances, 0 values; 0 dropped, 1 refused, 0 damaged, 0 added");
  // Without any filter there is no file, and then the library takes everything.
  expect_upgrade(model(), {}, kNoLoss);
  EXPECT_EQ(value("Root", "P"), "text");
}

TEST_F(UpgradeTest, HeaderTakesStructureFromTheModelAndTheRestFromTheStore) {
  const std::string table =
      object("Root.T.{i}.", parameter("P"),
             "access=\"readWrite\" maxEntries=\"9\" numEntriesParameter=\"TCount\"");
  const std::string root = object("Root.", parameter("TCount", "<unsignedInt/>"));
  write("instances", "Root.T.1.\n");
  build_old(root + table);
  std::string old_header(184, '\xEE');
  poke_header("Root/T", 0, old_header);
  poke_header("Root/T/1", 0, old_header);
  write("attributes", "Root.T. hide=0\nRoot.T. devfunc=new\n");
  expect_upgrade(root + table, {},
                 "3 objects, 1 instances, 1 values; 0 dropped, 0 refused, 0 damaged, 0 added");
  const ReadFile header = read("Root/T");
  EXPECT_EQ(header.header.substr(0, 10), std::string("\0\0\0\0\0\x09\xEE\xEE\x5F\xEE", 10));
  EXPECT_EQ(header.header.substr(10, 2), "\xEE\xEE");
  EXPECT_EQ(header.header.substr(12, 64), "new" + std::string(61, '\0'));
  EXPECT_EQ(header.pnoe, "Root/TCount");
  EXPECT_EQ(header.header.substr(140, 40), std::string(40, '\xEE'));
  EXPECT_EQ(header.header.substr(180), std::string(4, '\0'));
  const ReadFile instance = read("Root/T/1");
  EXPECT_EQ(instance.header.substr(0, 10), std::string("\0\0\0\0\x01\0\xEE\xEE\xDF\xEE", 10));
  EXPECT_EQ(instance.pnoe, "");
  EXPECT_EQ(instance.header.substr(12, 64), std::string(64, '\xEE'));
}

}  // namespace

#include <gtest/gtest.h>

#include <cerrno>
#include <limits>
#include <thread>

#include "Platform/Posix/PosixFiles.hpp"
#include "Platform/Posix/PosixUserDefaults.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeUserDefaults.hpp"
#include "Tests/Fakes/TemporaryFolder.hpp"

namespace ostrel {
namespace {

constexpr const char* path = "/Users/ana/Library/Preferences/agent.json";

struct PosixUserDefaultsTest : testing::Test {
  FakeFiles files;
  TemporaryFolder place;
  PosixUserDefaults defaults{files, path, place / "lock"};
};

TEST_F(PosixUserDefaultsTest, ChangesOfSeveralProcessesAreAllKept) {
  // Each thread has its own object on the same files.
  PosixFiles disk([](std::string_view macPath) { return std::string(macPath); });
  const auto change = [&](const std::string& key) {
    PosixUserDefaults each(disk, place / "settings.json", place / "lock");
    for (std::int64_t i = 0; i < 50; ++i) EXPECT_TRUE(each.set(key + std::to_string(i), i));
  };
  std::thread other(change, "other");
  change("one");
  other.join();
  const PosixUserDefaults each(disk, place / "settings.json", place / "lock");
  for (std::int64_t i = 0; i < 50; ++i) {
    EXPECT_EQ(each.get<std::int64_t>("one" + std::to_string(i)), i);
    EXPECT_EQ(each.get<std::int64_t>("other" + std::to_string(i)), i);
  }
}

using UserDefaultsContract = PosixUserDefaultsTest;

TEST_F(UserDefaultsContract, GivesEveryValueBackAsItsTypeUntilItIsRemoved) {
  const Date date(std::chrono::milliseconds(1735813200123));
  const DefaultsValue rows[] = {
      true,
      std::numeric_limits<std::int64_t>::min(),
      std::string("täglich\n\"\\"),
      Date::min(),
      std::vector<std::string>{"b", "", "a"},
      std::vector<std::string>{},
      std::vector<double>{780, -0.1, 1e300},
      std::map<std::string, Date>{{"date", date}, {"", Date::min()}},
      std::map<std::string, Date>{},
  };
  FakeUserDefaults fake;
  for (UserDefaults* each : {static_cast<UserDefaults*>(&defaults), static_cast<UserDefaults*>(&fake)}) {
    for (const auto& row : rows) {
      ASSERT_TRUE(each->set("key", row));
      EXPECT_EQ(each->value("key"), row) << row.index();
    }
    EXPECT_EQ(each->get<bool>("key"), std::nullopt);
    EXPECT_TRUE(each->remove("other"));
    ASSERT_TRUE(each->set("other", true));
    EXPECT_TRUE(each->remove("key"));
    EXPECT_EQ(each->value("key"), std::nullopt);
    EXPECT_EQ(each->get<bool>("other"), true);
  }
}

TEST_F(PosixUserDefaultsTest, ADamagedFileHasNoValuesAndIsMovedAsideByTheNextChange) {
  const std::string rows[] = {
      "",
      "{\"key\": true",
      "[]",
      "{\"key\": true} trailing",
      "{\"key\": \"\xff\"}",
      std::string("\0\0\0", 3),
      "{\"key\": " + std::string(100000, '[') + std::string(100000, ']') + "}",
  };
  for (const auto& bytes : rows) {
    files.put(path, bytes);
    EXPECT_EQ(defaults.value("key"), std::nullopt);
    EXPECT_TRUE(defaults.remove("key"));
    EXPECT_EQ(files.read(path), bytes);
    EXPECT_TRUE(defaults.set("new", true));
    EXPECT_EQ(files.read(std::string(path) + ".damaged"), bytes);
    EXPECT_EQ(defaults.get<bool>("new"), true);
  }
}

TEST_F(PosixUserDefaultsTest, AValueOfAnUnknownShapeIsAbsentAndOutlivesOtherChanges) {
  const std::string rows[] = {"1.5",
                              "null",
                              "18446744073709551615",
                              "{}",
                              R"({"date":"x"})",
                              R"({"dates":[1]})",
                              R"({"date":1,"more":2})"};
  for (const auto& row : rows) {
    files.put(path, "{\"key\": " + row + "}");
    EXPECT_EQ(defaults.value("key"), std::nullopt) << row;
    ASSERT_TRUE(defaults.set("other", true));
    auto compact = files.files[path].bytes;
    std::erase_if(compact, [](char c) { return c == ' ' || c == '\n'; });
    EXPECT_EQ(compact, "{\"key\":" + row + ",\"other\":true}");
  }
}

TEST_F(PosixUserDefaultsTest, AListOfMoreThanNumbersKeepsOnlyItsTexts) {
  using Texts = std::vector<std::string>;
  const std::pair<const char*, DefaultsValue> rows[] = {
      {R"([1, "b", null, ["c"], "a", true])", Texts{"b", "a"}},
      {"[1, null]", Texts{}},
      {"[]", Texts{}},
      {"[1, 2.5]", std::vector<double>{1, 2.5}},
  };
  for (const auto& [stored, value] : rows) {
    files.put(path, "{\"key\": " + std::string(stored) + "}");
    EXPECT_EQ(defaults.value("key"), value) << stored;
  }
}

TEST_F(PosixUserDefaultsTest, DatesByNameSkipUnreadableEntries) {
  files.put(path,
            R"({"key": {"dates": {"a": true, "b": 5, "c": 1.5, "d": "x", "e": 18446744073709551615}}})");
  EXPECT_EQ(defaults.value("key"),
            DefaultsValue(std::map<std::string, Date>{{"b", Date(std::chrono::milliseconds(5))}}));
}

TEST_F(PosixUserDefaultsTest, AFailedChangeLosesNothing) {
  const std::string stored = R"({"key": true})";
  const PlatformError denied{posixErrorDomain, EACCES, "denied"};
  files.put(path, stored);
  EXPECT_EQ(defaults.set("text", std::string("\xff")).error().code, EILSEQ);
  files.writeError = denied;
  EXPECT_EQ(defaults.set("key", false).error(), denied);
  EXPECT_EQ(defaults.remove("key").error(), denied);
  files.writeError.reset();
  files.readError = denied;
  EXPECT_EQ(defaults.set("key", false).error(), denied);
  EXPECT_EQ(defaults.remove("key").error(), denied);
  EXPECT_EQ(files.files[path].bytes, stored);
  EXPECT_EQ(defaults.value("key"), std::nullopt);
  files.readError.reset();
  files.files[path].bytes = "damaged";
  files.writeError = denied;
  EXPECT_EQ(defaults.set("key", false).error(), denied);
  EXPECT_EQ(files.files[path].bytes, "damaged");
}

}  // namespace
}  // namespace ostrel

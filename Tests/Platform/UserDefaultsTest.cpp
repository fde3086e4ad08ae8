#include <gtest/gtest.h>

#include <cerrno>
#include <limits>

#include "Platform/Posix/PosixUserDefaults.hpp"
#include "Tests/Fakes/FakeFiles.hpp"
#include "Tests/Fakes/FakeUserDefaults.hpp"

namespace ostrel {
namespace {

constexpr const char* path = "/Users/ana/Library/Preferences/agent.json";

struct PosixHarness {
  FakeFiles files;
  PosixUserDefaults defaults{files, path};
};

struct FakeHarness {
  FakeUserDefaults defaults;
};

template <class Harness>
struct UserDefaultsContract : testing::Test, Harness {};

using Harnesses = testing::Types<PosixHarness, FakeHarness>;
TYPED_TEST_SUITE(UserDefaultsContract, Harnesses);

TYPED_TEST(UserDefaultsContract, GivesEveryValueBackAsTheTypeThatWasStored) {
  const Date date(std::chrono::milliseconds(1735813200123));
  const Date farDate = Date::min();
  const DefaultsValue rows[] = {
      true,
      std::numeric_limits<std::int64_t>::min(),
      std::string("täglich\n\"\\"),
      date,
      farDate,
      std::vector<std::string>{"b", "", "a"},
      std::vector<std::string>{},
      std::map<std::string, Date>{{"date", date}, {"", farDate}},
      std::map<std::string, Date>{},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(this->defaults.set("key", row));
    EXPECT_EQ(this->defaults.value("key"), row) << row.index();
  }
  EXPECT_EQ(this->defaults.value("other"), std::nullopt);
  EXPECT_EQ(this->defaults.template get<bool>("key"), std::nullopt);
}

TYPED_TEST(UserDefaultsContract, RemovesOneKeyAndSucceedsWithoutIt) {
  EXPECT_TRUE(this->defaults.remove("gone"));
  ASSERT_TRUE(this->defaults.set("gone", true));
  ASSERT_TRUE(this->defaults.set("kept", true));
  EXPECT_TRUE(this->defaults.remove("gone"));
  EXPECT_EQ(this->defaults.value("gone"), std::nullopt);
  EXPECT_EQ(this->defaults.template get<bool>("kept"), true);
}

struct PosixUserDefaultsTest : testing::Test, PosixHarness {};

TEST_F(PosixUserDefaultsTest, ADamagedFileHasNoValuesAndIsPutAsideByTheNextChange) {
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
                              "[1]",
                              "{}",
                              R"({"date":"x"})",
                              R"({"dates":{"a":true}})",
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

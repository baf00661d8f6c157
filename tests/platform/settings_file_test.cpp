#include "platform/posix/settings_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/platform/environment.h"
#include "tests/support/temp_folder.h"

namespace tonadex::platform::settings_file_test {

constexpr std::string_view kKey = "tonadex\\";

std::string Query(SettingsFile& settings, std::string_view name = "modelo") {
  const auto value = settings.QueryValue(app::kHkeyClassesRoot, kKey, name);
  return value ? (value->type == app::kRegSz ? "=" : "?") + value->data : "none";
}

bool Set(SettingsFile& settings, std::string_view data, std::string_view name = "modelo") {
  return settings.SetValue(app::kHkeyClassesRoot, kKey, name, {app::kRegSz, std::string(data)});
}

TEST(SettingsFile, KeepsEveryTextByteForByteInReadableUtf8) {
  const test::TempFolder folder;
  const auto file = folder / "a/b/ajustes.ini";
  const std::string all = test::AllBytes();
  for (const std::string& text : {std::string(" Nokia 3310 "), std::string(), all, all + all}) {
    SettingsFile written(file);
    ASSERT_TRUE(Set(written, text));
    SettingsFile read(file);
    EXPECT_EQ(Query(read), "=" + text);
  }
  SettingsFile settings(file);
  ASSERT_TRUE(Set(settings, " caf\xE9 \x80 \"x\" \\ \x81\n"));
  ASSERT_TRUE(settings.SetValue(0x80000001, "otra", "n", {app::kRegSz, "1"}));
  ASSERT_TRUE(Set(settings, "2", "segundo"));
  EXPECT_EQ(folder.Read("a/b/ajustes.ini"),
            "[HKEY_CLASSES_ROOT\\tonadex\\]\n"
            "\"modelo\"=\" café € \\\"x\\\" \\\\ \\x81\\x0A\"\n"
            "[HKEY_80000001\\otra]\n\"n\"=\"1\"\n"
            "[HKEY_CLASSES_ROOT\\tonadex\\]\n\"segundo\"=\"2\"\n");
  EXPECT_EQ(Query(settings, "segundo"), "=2");
  EXPECT_FALSE(settings.SetValue(app::kHkeyClassesRoot, kKey, "modelo", {3, "binary"}));
}

TEST(SettingsFile, WhatCannotBeReadIsMissingAndIsWrittenAnew) {
  const std::string good = "[HKEY_CLASSES_ROOT\\tonadex\\]\n\"modelo\"=\"KWS\"\n";
  const std::size_t rest = kMaxSettingsBytes - good.size();
  std::vector<std::pair<std::string, std::string>> cases = {
      {good + std::string(rest, '#'), "=KWS"}, {good + std::string(rest + 1, '#'), "none"}};
  for (const test::Row& row : test::Table("Settings")) {
    cases.emplace_back(row[0], row[1]);
  }
  for (const auto& [bytes, want] : cases) {
    const test::TempFolder folder;
    folder.Write("f", bytes);
    SettingsFile settings(folder / "f");
    EXPECT_EQ(Query(settings), want) << bytes.substr(0, 80);
    EXPECT_TRUE(Set(settings, "0"));
    EXPECT_EQ(Query(settings), "=0") << bytes.substr(0, 80);
  }
}

TEST(SettingsFile, AFailureLeavesTheOldFileAndNothingElse) {
  const test::TempFolder folder;
  folder.Write("f", "old");
  SettingsFile inAFile(folder / "f/ajustes.ini");  // the parent of the folder is a file
  EXPECT_FALSE(Set(inAFile, "x"));
  SettingsFile tooLong(folder / "f");
  EXPECT_FALSE(Set(tooLong, std::string(kMaxSettingsBytes, 'x')));
  EXPECT_EQ(folder.Read("f"), "old");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  SettingsFile pipe(folder / "pipe");
  EXPECT_EQ(Query(pipe), "none");  // does not wait for a writer
  std::filesystem::create_directory(folder / "d");
  SettingsFile directory(folder / "d");
  EXPECT_FALSE(Set(directory, "x"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 3);
}

TEST(SettingsFile, LiesInTheConfigurationFolder) {
  const test::ScopedVariable home("HOME", "/casa");
  for (const auto& [config, folder] :
       {std::pair<std::optional<std::string>, std::string>{std::nullopt, "/casa/.config"},
        {"relative", "/casa/.config"},
        {"/x y", "/x y"}}) {
    const test::ScopedVariable set("XDG_CONFIG_HOME", config);
    EXPECT_EQ(SettingsFile::DefaultPath(), folder + "/tonadex/ajustes.ini");
  }
}

}  // namespace tonadex::platform::settings_file_test

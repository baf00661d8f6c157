#include "server/search_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "core/text.h"
#include "core/windows1252.h"
#include "tests/core/table.h"

namespace tonadex::server {
namespace {

using std::string;

TEST(Fold, BringsEveryByteToLowerCaseWithoutAccents) {
  string all;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    all += static_cast<char>(byte);
  }
  EXPECT_EQ(core::ToUtf8(Fold("AZaz09@[`{")), "azaz09@[`{");
  EXPECT_EQ(core::ToUtf8(Fold(all)),
            "€\u0081‚ƒ„…†‡ˆ‰s‹œ\u008Dz\u008F\u0090‘’“”•–—˜™s›œ\u009Dzy"
            "\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿"
            "aaaaaaæceeeeiiiiðnooooo×ouuuuyþßaaaaaaæceeeeiiiiðnooooo÷ouuuuyþy");
}

TEST(SearchIndex, FindsNewestFirst) {
  SearchIndex index;
  for (const test::Row& row : test::Table("Searched melodies")) {
    index.Add(core::FromUtf8(row[0]), row[1]);
  }
  for (const test::Row& row : test::Table("Searches")) {
    string found;
    for (const std::uint32_t line : index.Search(core::FromUtf8(row[0]), std::stoul(row[1]))) {
      found += std::to_string(line);
    }
    EXPECT_EQ(found, row[2]) << row[0];
  }
  EXPECT_TRUE(index.Search(string(5000, 'a'), 9).empty());
  EXPECT_TRUE(index.Search("\x01\x81", 9).empty());
}

// Blocks, jumps and the choice of the rarest byte against the plain way.
TEST(SearchIndex, AgreesWithLookingAtEveryLine) {
  std::mt19937 random(7);
  const auto text = [&](std::size_t length) {
    string made(length, ' ');
    std::ranges::generate(made, [&] { return "abcd"[random() % 4]; });
    return made;
  };
  SearchIndex index;
  std::vector<string> lines;
  for (int i = 0; i < 5000; ++i) {
    const string name = text(12);
    index.Add(name, name + ".1");
    lines.push_back(name);
  }
  for (int i = 0; i < 300; ++i) {
    const string first = text(1 + random() % 4), second = text(1 + random() % 3);
    std::vector<std::uint32_t> want;
    for (std::size_t line = lines.size(); line-- > 0;) {
      if (core::Contains(lines[line], first) && core::Contains(lines[line], second)) {
        want.push_back(static_cast<std::uint32_t>(line));
      }
    }
    EXPECT_EQ(index.Search(first + " " + second, lines.size()), want) << first << '/' << second;
  }
}

}  // namespace
}  // namespace tonadex::server

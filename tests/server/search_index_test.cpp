#include "server/search_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "core/text.h"
#include "core/windows1252.h"
#include "server/limits.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/server/ask.h"

namespace tonadex::server::search_index_test {

using std::string;

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

// Compares the index with a linear search: short and long words, repeated ones, words that occur in
// no line, bytes that differ only in their upper bits.
TEST(SearchIndex, AgreesWithLookingAtEveryLine) {
  std::mt19937 random(7);
  const auto text = [&](std::size_t length) {
    string made(length, ' ');
    std::ranges::generate(made, [&] { return "aabbcdq1\xB1"[random() % 9]; });
    return made;
  };
  SearchIndex index;
  std::vector<string> lines;
  for (int i = 0; i < 5000; ++i) {
    lines.push_back(text(1 + random() % 14));
    index.Add(lines.back(), lines.back() + ".1");
  }
  int hits = 0;
  for (int i = 0; i < 600; ++i) {
    std::vector<string> words(1 + random() % 4);
    string query;
    for (string& word : words) {
      word = text(1 + random() % (6 / words.size()));
      query += word + " " + (random() % 4 == 0 ? words[0] + "  " : "");
    }
    std::vector<std::uint32_t> want;
    const std::size_t limit = 1 + random() % 2000;
    for (std::size_t line = lines.size(); line-- > 0 && want.size() < limit;) {
      if (std::ranges::all_of(words, [&](auto& w) { return core::Contains(lines[line], w); })) {
        want.push_back(static_cast<std::uint32_t>(line));
      }
    }
    hits += !want.empty();
    EXPECT_EQ(index.Search(query, limit), want) << query;
  }
  EXPECT_GT(hits, 300);
}

TEST(SearchIndex, BoundsItsQueries) {
  SearchIndex index;
  index.Add("abcdefghijklmnop", "x.1");
  const string sixteen = "a b c d e f g h i j k l m n o p ";
  EXPECT_EQ(index.Search(sixteen + sixteen + "zz", 9).size(), 1u);  // the 17th word is ignored
  EXPECT_EQ(index.Search("a zz " + sixteen, 9).size(), 0u);
  const string longest = test::Repeated("a ", kMaxSearchBytes / 2);
  EXPECT_EQ(index.Search(longest + "zz", 9).size(), 1u);
  EXPECT_EQ(index.Search(longest.substr(4) + "zz", 9).size(), 0u);
  bool looked = false;
  index.Search("a%62", 9, [&] { return looked = true; });
  EXPECT_FALSE(looked) << "blocks were read for a byte that no name holds";
}

// An index in use is copied before a melody is added; the copy shares all blocks except one.
TEST(SearchIndex, StaysAsItIsWhenACopyGrows) {
  SearchIndex index;
  std::size_t melodies = 0;
  const auto add = [](SearchIndex& to, std::size_t i) {
    to.Add("vals" + std::to_string(i), std::to_string(i) + ".1");
  };
  for (const std::size_t next : {1u, 700u, 1023u, 1024u, 1025u, 9000u}) {
    while (melodies < next) {
      add(index, melodies++);
    }
    const string listing = test::Joined(index.Records());
    SearchIndex grown = index;
    add(grown, melodies);
    EXPECT_EQ(index.Search("vals", 9999).size(), next);
    EXPECT_EQ(grown.Search("vals", 9999).size(), next + 1);
    EXPECT_EQ(test::Joined(index.Records()), listing);
    const auto before = index.Records(), after = grown.Records();
    EXPECT_TRUE(std::equal(before.begin(), before.end() - 1, after.begin()));
    const string longer = test::Joined(after);
    EXPECT_TRUE(longer.starts_with(listing));
    add(grown, melodies + 1);
    EXPECT_EQ(test::Joined(after), longer);  // the texts of earlier replies are unchanged
  }
  EXPECT_TRUE(index.Search("vals", 9999, [] { return true; }).empty());
}

}  // namespace tonadex::server::search_index_test

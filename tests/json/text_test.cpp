#include "json/text.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>

#include "core/windows1252.h"

namespace tonadex::json {
namespace {

// Every character alone, and texts in which runs of plain and escaped characters alternate.
TEST(AppendJson, WritesWhatTheLibraryWrites) {
  std::mt19937 random(5);
  for (unsigned i = 0; i < 20'000; ++i) {
    std::string text(i < 256 ? 1 : random() % 90, static_cast<char>(i));
    for (char& c : text) {
      c = i < 256 ? c : static_cast<char>(random() % 8 != 0 ? 'a' + random() % 26 : random());
    }
    std::string json;
    AppendJson(json, text);
    ASSERT_EQ(json, nlohmann::json(core::ToUtf8(text)).dump()) << i;
  }
}

}  // namespace
}  // namespace tonadex::json

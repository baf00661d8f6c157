#include "json/text.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>

#include "core/text.h"
#include "core/windows1252.h"
#include "json/catalogue.h"
#include "json/conversion.h"
#include "json/melody.h"

namespace tonadex::json::text_test {

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

// A converter remembers the instructions that the notices of its lines begin with.
TEST(LineConverter, AnswersEachLineAsTheFirst) {
  LineConverter lines(" IMelody", "", true);
  for (const char* line : {"V:d=3,o=5,b=9:c", "V:d=4,o=5,b=9:c", "V:d=4,o=5,b=9:8c,3c.,p", "x:y"}) {
    std::string json, first;
    lines.Append(json, line);
    LineConverter(" IMelody", "", true).Append(first, line);
    EXPECT_EQ(json, first);
  }
}

TEST(Json, SaysWhereAFaultIsAndWhatANoteAndAKeyAre) {
  for (const auto& [json, part] :
       {std::pair{CheckJson("V:d=4,o=5,b=125:c,x"), R"("desde":18,"hasta":19,"nota":2)"},
        {NotesJson("V:d=4,o=5,b=125:c,p", " Pulsaciones"),
         R"({"nota":2,"inicio":480.0,"duracion":480.0,"tono":null,"nombre":"silencio")"},
        {KeypadJson(" Pulsaciones"), R"("palabra":"más corta","fila":2,"columna":1)"}}) {
    EXPECT_TRUE(core::Contains(json, part)) << json;
  }
}

}  // namespace tonadex::json::text_test

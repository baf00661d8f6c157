#include "cli/line_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

namespace tonadex::cli::line_stream_test {

constexpr std::string_view kModel = " Compositor";

// A stream buffer that delivers a text in pieces, like a pipe.
class Pieces : public std::streambuf {
 public:
  Pieces(std::string text, std::ptrdiff_t length) : text_(std::move(text)), length_(length) {}

 protected:
  int underflow() override {
    char* const end = text_.data() + text_.size();
    char* const begin = egptr() == nullptr ? text_.data() : egptr();
    setg(begin, begin, begin + std::min(length_, end - begin));
    return begin == end ? traits_type::eof() : traits_type::to_int_type(*begin);
  }

 private:
  std::string text_;
  std::ptrdiff_t length_;
};

TEST(ConvertLines, AnswersEveryLineInItsPlace) {
  constexpr int kLines = 5000;
  std::string input;
  for (int i = 0; i < kLines; ++i) {
    const std::string name = "m" + std::to_string(i);
    input += i % 7 == 3 ? name : name + ":d=4,o=5,b=9:c,8djuh9hay";
    input += i % 3 == 0 ? "\r\n" : i % 3 == 1 ? "\n" : "\r";
  }
  for (const std::ptrdiff_t piece : {1, 7, 100'000}) {
    Pieces pieces(input, piece);
    std::istream in(&pieces);
    std::ostringstream out;
    EXPECT_TRUE(ConvertLines(in, out, kModel, ""));
    std::istringstream answers(out.str());
    int i = 0;
    for (std::string line; std::getline(answers, line); ++i) {
      const auto json = nlohmann::json::parse(line);
      const bool bad = i % 7 == 3;
      ASSERT_EQ(json["resultado"], bad ? "" : "4c2 8#d2 ") << i;
      ASSERT_EQ(json["mensajes"].size(), bad ? 2u : 0u) << i;
      const std::string title =
          "Melodia m" + std::to_string(i) + " para Nokia en formato de compositor.";
      ASSERT_TRUE(bad || json["titulo"] == title) << line;
    }
    EXPECT_EQ(i, kLines);
  }
}

TEST(ConvertLines, TakesEndlessAndEmptyLines) {
  std::istringstream in(std::string(3'000'000, 'x') + "\n\nx:d=4,o=5,b=9:c");
  std::ostringstream out;
  EXPECT_TRUE(ConvertLines(in, out, kModel, "Mi fila"));
  std::istringstream answers(out.str());
  std::string line;
  std::getline(answers, line);
  EXPECT_EQ(line, R"({"titulo":"","resultado":"","avisos":"","tempo":"","mensajes":)"
                  R"(["La línea pasa de 1 MiB y no puede ser una melodía."]})");
  std::getline(answers, line);
  EXPECT_EQ(nlohmann::json::parse(line)["resultado"], "");
  std::getline(answers, line);
  EXPECT_EQ(nlohmann::json::parse(line)["titulo"],
            "Melodia Mi fila para Nokia en formato de compositor.");
}

}  // namespace tonadex::cli::line_stream_test

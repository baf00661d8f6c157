#include "cli/convert_line.h"

#include "cli/json.h"

namespace tonadex::cli {
namespace {

class FixedAnswer : public phones::SaveFileQuestion {
 public:
  explicit FixedAnswer(const std::optional<std::string>& file) : file_(file) {}
  std::optional<std::string> AskSaveFile(const phones::SaveRequest&) override { return file_; }

 private:
  const std::optional<std::string>& file_;
};

}  // namespace

phones::Conversion ConvertLoaded(core::RTTTLMelody& melody, std::string_view model,
                                 std::string_view row, const std::optional<std::string>& file) {
  FixedAnswer answer(file);
  return phones::ConvertSelectedMelody(melody, model, row, answer);
}

Steps StepsOf(const phones::Conversion& conversion, std::string_view model,
              const core::RTTTLMelody& melody) {
  return conversion.page ? phones::TypingSteps(model, conversion.page->result, melody) : Steps();
}

void ConversionJson::Append(std::string& json, const phones::Conversion& conversion) {
  static const phones::ConversionPage kKept;
  const phones::ConversionPage& page = conversion.page ? *conversion.page : kKept;
  if (notices_.empty() || !page.notices.starts_with(notices_)) {
    notices_ = page.notices;
    noticesJson_.clear();
    AppendEscaped(noticesJson_, notices_);
  }
  AppendJson(json += R"("titulo":)", page.title);
  AppendJson(json += R"(,"resultado":)", page.result);
  json.append(R"(,"avisos":")").append(noticesJson_);
  AppendEscaped(json, std::string_view(page.notices).substr(notices_.size()));
  AppendJson(json += R"(","tempo":)", page.tempo);
  json += R"(,"mensajes":[)";
  for (const core::Message& message : conversion.messages) {
    AppendJson(json += json.back() == '[' ? "" : ",", message.text);
  }
  json += ']';
}

}  // namespace tonadex::cli

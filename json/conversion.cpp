#include "json/conversion.h"

#include "core/melody_file.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "json/steps.h"
#include "json/text.h"

namespace tonadex::json {
namespace {

using namespace core::literals;

phones::Conversion TooLong() {
  phones::Conversion conversion;
  conversion.messages.push_back(
      {std::string(u8"La línea pasa de 1 MiB y no puede ser una melodía."_w)});
  return conversion;
}

class FixedAnswer : public phones::SaveFileQuestion {
 public:
  explicit FixedAnswer(const std::optional<std::string>& file) : file_(file) {}
  std::optional<std::string> AskSaveFile(const phones::SaveRequest&) override { return file_; }

 private:
  const std::optional<std::string>& file_;
};

}  // namespace

void LoadMelody(core::RTTTLMelody& melody, std::string_view line) {
  core::InitMelody(melody, "");
  melody.Text = line;
  core::ReplaceAll(melody.Text, core::kSharpEscape, "#");
}

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

phones::Conversion LineConverter::Convert(std::string_view line) {
  if (line.size() > core::kMaxLineBytes) {
    return TooLong();
  }
  LoadMelody(melody_, core::FromOutside(line));
  const std::string row(row_.empty() ? melody_.Text.substr(0, melody_.Text.find(':')) : row_);
  return ConvertLoaded(melody_, model_, row, std::nullopt);
}

void LineConverter::Append(std::string& json, std::string_view line) {
  const phones::Conversion conversion = Convert(line);
  writer_.Append(json += '{', conversion);
  if (steps_) {
    AppendStepsJson(json, StepsOf(conversion, model_, melody_));
  }
  json += '}';
}

}  // namespace tonadex::json

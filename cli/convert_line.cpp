#include "cli/convert_line.h"

#include "cli/context.h"
#include "cli/json.h"
#include "core/windows1252.h"

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

phones::Conversion ConvertLine(core::RTTTLMelody& melody, std::string_view line,
                               std::string_view model, std::string_view row,
                               const std::optional<std::string>& file) {
  FixedAnswer answer(file);
  LoadMelody(melody, line);
  return phones::ConvertSelectedMelody(melody, model, row, answer);
}

Steps StepsOf(const phones::Conversion& conversion, std::string_view model,
              const core::RTTTLMelody& melody) {
  return conversion.page ? phones::TypingSteps(model, conversion.page->result, melody) : Steps();
}

std::string ConversionJson(const phones::Conversion& conversion, std::string_view file,
                           std::string_view model) {
  static const phones::ConversionPage kKept;
  const phones::ConversionPage& page = conversion.page ? *conversion.page : kKept;
  std::string json = "{";
  if (!file.empty()) {
    json += JsonMembers({{"fichero", std::string(file)}, {"modelo", core::ToUtf8(model)}}) + ",";
  }
  json += JsonMembers({{"titulo", core::ToUtf8(page.title)},
                       {"resultado", core::ToUtf8(page.result)},
                       {"avisos", core::ToUtf8(page.notices)},
                       {"tempo", core::ToUtf8(page.tempo)}});
  std::string messages;
  for (const core::Message& message : conversion.messages) {
    messages += (messages.empty() ? "" : ",") + JsonText(core::ToUtf8(message.text));
  }
  return json + ",\"mensajes\":[" + messages + "]";
}

}  // namespace tonadex::cli

#include "cli/convert_line.h"

#include <nlohmann/json.hpp>

#include "cli/context.h"
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

std::string ConversionJson(const phones::Conversion& conversion, std::string_view file,
                           std::string_view model) {
  static const phones::ConversionPage kKept;
  const phones::ConversionPage& page = conversion.page ? *conversion.page : kKept;
  nlohmann::ordered_json json;
  if (!file.empty()) {
    json = {{"fichero", file}, {"modelo", core::ToUtf8(model)}};
  }
  json["titulo"] = core::ToUtf8(page.title);
  json["resultado"] = core::ToUtf8(page.result);
  json["avisos"] = core::ToUtf8(page.notices);
  json["tempo"] = core::ToUtf8(page.tempo);
  nlohmann::ordered_json& messages = json["mensajes"] = nlohmann::ordered_json::array();
  for (const platform::Message& message : conversion.messages) {
    messages.push_back(core::ToUtf8(message.text));
  }
  return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
}

}  // namespace tonadex::cli

#include "cli/conversion_record.h"

#include <algorithm>

#include "cli/context.h"
#include "core/windows1252.h"

namespace tonadex::cli {
namespace {

class FixedAnswer : public core::SaveFileQuestion {
 public:
  explicit FixedAnswer(const std::optional<std::string>& file) : file_(file) {}
  std::optional<std::string> AskSaveFile(const core::SaveRequest&) override { return file_; }

 private:
  const std::optional<std::string>& file_;
};

}  // namespace

ConversionRecord ConvertLine(core::RTTTLMelody& melody, std::string_view line,
                             std::string_view model, std::string_view row,
                             const std::optional<std::string>& file) {
  platform::RecordingMessages messages;
  const platform::ScopedMessageSink scope(messages);
  FixedAnswer answer(file);
  LoadMelody(melody, line);
  ConversionRecord record;
  record.page = core::ConvertSelectedMelody(melody, model, row, answer);
  record.messages = std::move(messages.messages);
  return record;
}

bool HasErrors(const ConversionRecord& record) {
  return !record.page || std::ranges::any_of(record.messages, [](const platform::Message& message) {
    return message.icon != platform::Icon::kInformation;
  });
}

nlohmann::ordered_json ToJson(const ConversionRecord& record) {
  static const core::ConversionPage kKept;
  const core::ConversionPage& page = record.page ? *record.page : kKept;
  nlohmann::ordered_json json = {{"titulo", core::ToUtf8(page.title)},
                                 {"resultado", core::ToUtf8(page.result)},
                                 {"avisos", core::ToUtf8(page.notices)},
                                 {"tempo", core::ToUtf8(page.tempo)}};
  nlohmann::ordered_json& messages = json["mensajes"] = nlohmann::ordered_json::array();
  for (const platform::Message& message : record.messages) {
    messages.push_back(core::ToUtf8(message.text));
  }
  return json;
}

}  // namespace tonadex::cli

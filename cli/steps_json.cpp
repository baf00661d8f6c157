#include "cli/steps_json.h"

#include "cli/json.h"
#include "core/windows1252.h"

namespace tonadex::cli {
namespace {

void AppendText(std::string& json, std::string_view text) {
  json += JsonText(core::ToUtf8(text));
}

void AppendKeys(std::string& json, const phones::TypingStep& step) {
  for (const auto& [key, times, hold] : step.keys) {
    json += json.ends_with('[') ? "" : ",";
    AppendText(json += R"({"tecla":)", std::string_view(&key, 1));
    json.append(R"(,"veces":)").append(std::to_string(times));
    json.append(R"(,"mantener":)").append(hold ? "true}" : "false}");
  }
}

}  // namespace

void AppendStepsJson(std::string& json, std::span<const phones::TypingStep> steps) {
  json += R"(,"pasos":[)";
  for (const phones::TypingStep& step : steps) {
    json += json.ends_with('[') ? "" : ",";
    AppendText(json += R"({"grupo":)", step.group);
    json += R"(,"teclas":[)";
    AppendKeys(json, step);
    json.append(R"(],"nota":)").append(std::to_string(step.note + 1));
    AppendText(json += R"(,"palabras":)", step.words);
    if (!step.display.empty()) {
      AppendText(json += R"(,"pantalla":)", step.display);
    }
    json += '}';
  }
  json += ']';
}

}  // namespace tonadex::cli

#include "json/steps.h"

#include "json/text.h"

namespace tonadex::json {
namespace {

void AppendKeys(std::string& json, const phones::TypingStep& step) {
  for (const auto& [key, times, hold] : step.keys) {
    json += json.ends_with('[') ? "" : ",";
    AppendJson(json += R"({"tecla":)", std::string_view(&key, 1));
    json.append(R"(,"veces":)").append(std::to_string(times));
    json.append(R"(,"mantener":)").append(hold ? "true}" : "false}");
  }
}

}  // namespace

void AppendStepsJson(std::string& json, std::span<const phones::TypingStep> steps) {
  json += R"(,"pasos":[)";
  for (const phones::TypingStep& step : steps) {
    json += json.ends_with('[') ? "" : ",";
    AppendJson(json += R"({"grupo":)", step.group);
    json += R"(,"teclas":[)";
    AppendKeys(json, step);
    json.append(R"(],"nota":)").append(std::to_string(step.note + 1));
    AppendJson(json += R"(,"palabras":)", step.words);
    if (!step.display.empty()) {
      AppendJson(json += R"(,"pantalla":)", step.display);
    }
    json += '}';
  }
  json += ']';
}

}  // namespace tonadex::json

#include <algorithm>
#include <fstream>
#include <iterator>

#include "cli/commands.h"
#include "cli/line_stream.h"
#include "cli/steps_list.h"
#include "core/windows1252.h"
#include "files/write.h"
#include "json/conversion.h"
#include "json/steps.h"
#include "json/text.h"
#include "phones/catalogue.h"
#include "phones/formats.h"
#include "phones/keypads.h"
#include "phones/phone_finder.h"

namespace tonadex::cli {
namespace {

// For typing steps a make is specific enough if only one of its catalogue rows gives keys: returns
// that row, else `found`.
std::vector<phones::CatalogueRow> WithKeys(const std::vector<phones::CatalogueRow>& found) {
  std::vector<phones::CatalogueRow> withKeys;
  std::ranges::copy_if(phones::CatalogueRows(), std::back_inserter(withKeys), [&](const auto& row) {
    return phones::FindKeypad(row.model) != nullptr &&
           std::ranges::find(found, row.brand, &phones::CatalogueRow::brand) != found.end();
  });
  return withKeys.size() == 1 ? withKeys : found;
}

std::string PhoneModel(const std::string& name, bool steps) {
  std::vector<phones::CatalogueRow> found = phones::FindPhones(core::FromUtf8(name));
  if (steps) {
    found = WithKeys(found);
  }
  if (found.size() == 1) {
    return std::string(found.front().model);
  }
  std::string words = found.empty() ? "ningún móvil del catálogo coincide con «" + name +
                                          "»; mira «tonadex-cli modelos»"
                                    : "«" + name + "» puede ser:";
  for (const phones::CatalogueRow& row : found) {
    words += "\n  " + std::string(row.brand) + ": \"" + std::string(row.model) + "\"";
  }
  throw Failure{ExitCode::kWrongUse, words};
}

std::vector<std::string> ChosenModels(const Arguments& arguments) {
  if (!arguments.allModels) {
    return {ChosenModel(arguments)};
  }
  std::vector<std::string> models;
  for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
    if (!arguments.steps || phones::FindKeypad(row.model) != nullptr) {
      models.emplace_back(row.model);
    }
  }
  return models;
}

// Typing steps exist only for results of keys.
void CheckHasSteps(const std::string& model) {
  const phones::CatalogueRow* phone = phones::FindModel(model);
  if (phone == nullptr || phones::FindKeypad(model) != nullptr) {
    return;
  }
  std::string words = "el resultado para «" + model + "» no son teclas; --pasos sirve para:";
  for (const phones::CatalogueRow& row : phones::CatalogueRows()) {
    if (phones::FindKeypad(row.model) != nullptr) {
      words.append("\n  ").append(row.brand).append(": \"").append(row.model).append("\"");
    }
  }
  throw Failure{ExitCode::kWrongUse, words};
}

// `shown` is the result, or its steps as a table.
void PrintPage(Context& context, const phones::ConversionPage& page, const std::string& shown,
               bool resultOnly) {
  if (resultOnly) {
    context.out << ForTerminal(shown) << '\n';
    return;
  }
  if (!page.title.empty()) {
    context.out << ForTerminal(page.title) << "\n\n" << ForTerminal(shown) << "\n\n";
  }
  context.out << ForTerminal(page.notices);
  context.out << (page.notices.ends_with('\n') ? "" : "\n");
  if (!page.tempo.empty()) {
    context.out << "Tempo: " << ForTerminal(page.tempo) << '\n';
  }
}

// Also writes a text result to --salida; formats that are files are already written. An empty
// result leaves the file unchanged.
void SaveResult(const std::string& file, const std::string& model, const std::string& result) {
  if (file.empty() || result.empty() || phones::SavesFile(model)) {
    return;
  }
  FailOnError(ExitCode::kSystemFailed, "",
              [&] { files::WriteBytes(ArgumentPath(file), core::ToUtf8(result)); });
}

// The exit code of a conversion. With all models, those that need a file name are skipped.
ExitCode CodeOf(phones::Outcome outcome, bool allModels) {
  switch (outcome) {
    case phones::Outcome::kConverted:
      return ExitCode::kDone;
    case phones::Outcome::kCancelled:
      return allModels ? ExitCode::kDone : ExitCode::kNotConverted;
    case phones::Outcome::kDiskFailure:
      return ExitCode::kSystemFailed;
    default:
      return ExitCode::kNotConverted;
  }
}

// Returns whether the melody could not be read, or not completely.
bool ConvertOne(Context& context, const Arguments& arguments, const MelodyInput& input,
                const std::string& model) {
  using phones::Outcome;
  core::RTTTLMelody melody;
  const std::string output = arguments.output.value_or("");
  std::optional<std::string> file;
  if (!output.empty()) {
    file = core::FromUtf8(output);
  }
  const std::string row = arguments.row.empty() ? input.row : core::FromUtf8(arguments.row);
  json::LoadMelody(melody, input.line);
  const auto conversion = json::ConvertLoaded(melody, model, row, file);
  Fail(context, CodeOf(conversion.outcome, arguments.allModels));
  const auto steps = arguments.steps ? json::StepsOf(conversion, model, melody) : json::Steps();
  if (arguments.json) {
    std::string json =
        "{" + json::JsonMembers({{"fichero", input.name}, {"modelo", core::ToUtf8(model)}}) + ",";
    json::ConversionJson().Append(json, conversion);
    if (arguments.steps) {
      json::AppendStepsJson(json, steps);
    }
    context.out << json << "}\n";
  } else {
    ShowMessages(context, conversion.messages);
    if (conversion.page) {
      PrintPage(context, *conversion.page,
                arguments.steps ? StepsList(steps) : conversion.page->result, arguments.resultOnly);
    }
  }
  if (conversion.outcome == Outcome::kNoModel) {
    throw Failure{
        ExitCode::kNotConverted,
        "«" + core::ToUtf8(model) + "» no es un modelo del catálogo; mira «tonadex-cli modelos»"};
  }
  if (conversion.outcome == Outcome::kCancelled) {
    context.err << "tonadex-cli: \"" << core::ToUtf8(model)
                << "\" graba un fichero: indica dónde con --salida FICHERO\n";
  } else if (conversion.page) {
    SaveResult(output, model, conversion.page->result);
  }
  return conversion.outcome == Outcome::kIncomplete ||
         conversion.outcome == Outcome::kCannotConvert;
}

void ConvertFiles(Context& context, const Arguments& arguments,
                  const std::vector<std::string>& models) {
  if (arguments.output && FilesOrInput(arguments.words).size() * models.size() > 1) {
    throw Failure{ExitCode::kWrongUse, "--salida sirve para una sola melodía y un solo modelo"};
  }
  bool first = true;
  ForEachMelody(context, arguments.words, [&](const MelodyInput& input) {
    bool unread = false;
    for (const std::string& model : models) {
      if (!first && !arguments.json && !arguments.resultOnly) {
        context.out << "\n----\n\n";
      }
      first = false;
      unread = ConvertOne(context, arguments, input, model) || unread;
    }
    if (unread && !arguments.json) {
      NameCommandFor(context, input);
    }
  });
}

void ConvertLineFiles(Context& context, const Arguments& arguments,
                      const std::vector<std::string>& models) {
  if (models.size() != 1 || arguments.output) {
    throw Failure{ExitCode::kWrongUse, "--lineas pide un solo modelo y no admite --salida"};
  }
  const std::string row = core::FromUtf8(arguments.row);
  for (const std::string& file : FilesOrInput(arguments.words)) {
    bool written = true;
    Attempt(context, [&] {
      std::ifstream opened;
      written = ConvertLines(OpenInput(context, file, opened), context.out, models.front(), row,
                             arguments.steps);
    });
    if (!written) {
      throw Failure{ExitCode::kSystemFailed, "no se puede escribir el resultado"};
    }
  }
}

}  // namespace

std::string ChosenModel(const Arguments& arguments) {
  return arguments.phone ? PhoneModel(*arguments.phone, arguments.steps)
                         : core::FromUtf8(arguments.model.value_or(""));
}

void Convert(Context& context, const Arguments& arguments) {
  if (arguments.format) {
    if (arguments.allModels || arguments.phone || arguments.model || arguments.steps ||
        arguments.lines) {
      throw Failure{ExitCode::kWrongUse, "--formato no admite móvil, --todos, --pasos ni --lineas"};
    }
    return ConvertToFiles(context, arguments);
  }
  if (arguments.allModels ? arguments.phone || arguments.model : !arguments.HasOnePhone()) {
    throw Failure{ExitCode::kWrongUse, "elige el móvil con --telefono, --modelo o --todos"};
  }
  const std::vector<std::string> models = ChosenModels(arguments);
  if (arguments.steps && !arguments.allModels) {
    CheckHasSteps(models.front());
  }
  (arguments.lines ? ConvertLineFiles : ConvertFiles)(context, arguments, models);
}

}  // namespace tonadex::cli

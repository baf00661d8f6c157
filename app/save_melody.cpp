#include "app/save_melody.h"

#include <algorithm>
#include <vector>

#include "app/melody_notes.h"
#include "app/pdf.h"
#include "app/typing_sheet.h"
#include "app/words.h"
#include "core/melody_file.h"
#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "files/paths.h"
#include "files/write.h"
#include "net/file_name.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/file_formats.h"
#include "phones/formats.h"
#include "phones/keypads.h"
#include "phones/typing_steps.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::string_view kCannotSave = u8"No se puede guardar así: "_w;
constexpr std::string_view kSavedAs =
    u8"Ya había un fichero con ese nombre. Se ha guardado como "_w;
constexpr std::string_view kSheetKind = "Hoja para imprimir (*.pdf)";
constexpr std::string_view kSheetExtension = "pdf";

// A kind that the dialog offers. The last one is the sheet, which has no format.
struct Kind {
  std::string shown, extension;
  const phones::FileFormat* format = nullptr;
};

std::vector<Kind> KindsFor(std::string_view model) {
  std::vector<Kind> kinds;
  for (const phones::FileFormat* format : phones::FormatsToSave(model)) {
    std::string shown(format->label);
    shown.append(format->limits.empty() ? "" : ": ").append(format->limits);
    shown.append(" (*.").append(format->extension).append(")");
    kinds.push_back({shown, std::string(format->extension), format});
  }
  kinds.push_back({std::string(kSheetKind), std::string(kSheetExtension)});
  return kinds;
}

// The kind to write and the file with its extension. A typed extension selects its kind, except
// "txt", which suits every kind. If the user chose another kind than the first, the first one's
// extension comes from the proposed name and is replaced.
struct Meant {
  const Kind& kind;
  std::filesystem::path file;
};
Meant WhatIsMeant(const std::vector<Kind>& kinds, const SaveChoice& choice) {
  // Windows drops the dots and blanks at the end of a name.
  auto name = choice.file.filename().native();
  while (name.size() > 1 && (name.back() == '.' || name.back() == ' ')) {
    name.pop_back();
  }
  std::filesystem::path file = std::filesystem::path(choice.file).replace_filename(name);
  const std::string typed = ExtensionOf(file);
  const Kind& chosen = kinds[std::min(choice.kind, kinds.size() - 1)];
  if (typed.empty()) {
    return {chosen, file += "." + chosen.extension};
  }
  if (choice.kind > 0 && typed == kinds.front().extension) {
    return {chosen, file.replace_extension("." + chosen.extension)};
  }
  const auto meant = std::ranges::find(kinds, typed, &Kind::extension);
  return {meant == kinds.end() || typed == "txt" ? chosen : *meant, file};
}

// The dialog has asked whether to replace the typed file, but not one with another extension: that
// one is saved under a free name, and a message box says so. Returns the file, if it was written.
std::optional<std::filesystem::path> Write(const std::filesystem::path& typed,
                                           const std::filesystem::path& file,
                                           const std::string& bytes) {
  std::optional<std::filesystem::path> written;
  if (typed != file) {
    written = files::MakeUnderFreeName(
        file, [&](const std::filesystem::path& free) { return files::Create(free, bytes); });
  } else if (core::SkipErrors([&] { files::WriteBytes(file, bytes); })) {
    written = file;
  }
  if (!written) {
    core::MsgBox(words::kNotSaved, core::Icon::kExclamation);
  } else if (*written != file) {
    core::MsgBox(std::string(kSavedAs) + files::TextFromPath(written->filename()) + ".",
                 core::Icon::kInformation);
  }
  return written;
}

// The result's groups as steps: words, or the notes of RTTTL.
std::vector<phones::TypingStep> StepsOf(std::string_view result) {
  std::vector<phones::TypingStep> steps;
  for (std::size_t at = 0; at < result.size();) {
    const std::size_t end = std::min(result.find_first_of(" ,\r\n", at), result.size() - 1) + 1;
    const std::string_view group = core::Trim(result.substr(at, end - at));
    if (group.find_first_not_of("\r\n") != std::string_view::npos) {
      steps.push_back({.group = std::string(group.substr(0, group.find_first_of("\r\n"))),
                       .after = "",
                       .keys = {},
                       .words = "",
                       .display = ""});
    }
    at = end;
  }
  return steps;
}

}  // namespace

std::string ExtensionOf(const std::filesystem::path& file) {
  const std::string extension = core::ToLower(files::TextFromPath(file.extension()));
  return extension.empty() ? extension : extension.substr(1);
}

std::string FileStem(std::string_view row) {
  std::string name(core::RowStem(row));
  for (char& c : name) {
    if (!net::IsSafeFileName(std::string_view(&c, 1)) && c != ' ' && c != '.') {
      c = '_';
    }
  }
  return !name.empty() && net::IsSafeFileName(name + ".x") ? name : "melodia";
}

std::string SheetTitle(std::string_view rtttl, std::string_view phone, std::string_view tempo) {
  std::string title(core::Trim(rtttl.substr(0, rtttl.find(':'))));
  title.append(phone.empty() ? "" : ", para ").append(phone);
  return title.append(tempo.empty() ? "" : ", tempo ").append(tempo);
}

std::string SheetPdf(std::string_view rtttl, std::string_view model) {
  core::RTTTLMelody melody;
  const auto page = phones::ConvertQuietly(melody, rtttl, model);
  const std::string result =
      page && phones::FindFormat(model) != nullptr ? page->result : std::string(rtttl);
  const phones::Keypad* keypad = phones::FindKeypad(model);
  const auto steps =
      keypad == nullptr ? StepsOf(result) : phones::TypingSteps(model, result, melody);
  const phones::CatalogueRow* phone = phones::FindModel(model);
  return PdfFile(
      LayOutTypingSheet({SheetTitle(rtttl, phone == nullptr ? "" : phone->brand, melody.Beats),
                         keypad, steps, MelodyDrawing(std::string(rtttl), std::string(model))}));
}

std::optional<std::filesystem::path> SaveMelodyAs(FileDialogs& dialogs, std::string_view rtttl,
                                                  std::string_view model) {
  const std::vector<Kind> kinds = KindsFor(model);
  std::vector<std::string> shown;
  std::ranges::transform(kinds, std::back_inserter(shown), &Kind::shown);
  const std::string name = FileStem(core::Trim(rtttl.substr(0, rtttl.find(':'))));
  const auto choice =
      dialogs.AskSaveAs(words::kSaveAs, name + "." + kinds.front().extension, shown);
  if (!choice) {
    return std::nullopt;
  }
  const auto [kind, file] = WhatIsMeant(kinds, *choice);
  try {
    phones::MelodyFileBytes melody;
    if (kind.format == nullptr) {
      melody.bytes = SheetPdf(rtttl, model);
    } else {
      melody = phones::WriteMelodyFile(*kind.format, rtttl);
    }
    if (!melody.notices.empty() && kind.format->write != nullptr) {
      core::MsgBox(melody.notices, core::Icon::kInformation);
    }
    return Write(choice->file, file, melody.bytes);
  } catch (const core::RunTimeError& error) {
    core::MsgBox(std::string(kCannotSave) + error.what() + ".", core::Icon::kExclamation);
    return std::nullopt;
  }
}

}  // namespace tonadex::app

#include <memory>

#include "app/print_sheet.h"
#include "cli/commands.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "json/conversion.h"
#include "phones/formats.h"
#include "platform/common/program_folder.h"
#ifdef _WIN32
#include "platform/win32/rich_text_box.h"
#endif
#ifdef TONADEX_CLI_QT
#include "platform/qt/rich_text_box.h"
#endif

namespace tonadex::cli {
namespace {

#ifdef TONADEX_CLI_QT

std::unique_ptr<app::RichTextBox> MakeBox(const Arguments& arguments) {
  return platform::MakeWindowlessRichTextBox(
      {.printer = core::FromUtf8(arguments.printer), .pdf = ArgumentPath(arguments.pdf)});
}

#elif defined(_WIN32)

std::unique_ptr<app::RichTextBox> MakeBox(const Arguments& arguments) {
  if (!arguments.pdf.empty() || !arguments.printer.empty()) {
    throw Failure{ExitCode::kWrongUse, "en Windows se imprime en la impresora predeterminada"};
  }
  return std::make_unique<platform::RichEditBox>();
}

#else

std::unique_ptr<app::RichTextBox> MakeBox(const Arguments& /*arguments*/) {
  throw Failure{ExitCode::kSystemFailed,
                "este tonadex-cli no puede imprimir: se compiló sin el programa de escritorio"};
}

#endif

void PrintPage(Context& context, const Arguments& arguments, const app::SheetValues& values) {
  core::RecordingMessages messages;
  const core::ScopedMessageSink scope(messages);
  try {
    const auto box = MakeBox(arguments);
    app::PrintSheet(*box, platform::PrepareProgramFolder() / app::kSheetTemplate, values);
  } catch (const core::RunTimeError& error) {
    Fail(context, {ExitCode::kSystemFailed, WordsOf(error)});
  }
  ShowMessages(context, messages.messages);
}

}  // namespace

void Print(Context& context, const Arguments& arguments) {
  if (!arguments.pdf.empty() && !arguments.printer.empty()) {
    throw Failure{ExitCode::kWrongUse, "elige --pdf o --impresora"};
  }
  if (!arguments.HasOnePhone()) {
    throw Failure{ExitCode::kWrongUse, "elige el móvil con --telefono o --modelo"};
  }
  const std::string model = ChosenModel(arguments);
  const MelodyInput input = ReadMelody(context, arguments.file);
  if (phones::SavesFile(model)) {
    throw Failure{ExitCode::kWrongUse,
                  "«" + core::ToUtf8(model) + "» graba un fichero que no se imprime"};
  }
  core::RTTTLMelody melody;
  json::LoadMelody(melody, input.line);
  const auto conversion = json::ConvertLoaded(melody, model, input.row, std::nullopt);
  ShowMessages(context, conversion.messages);
  if (conversion.outcome != phones::Outcome::kConverted &&
      conversion.outcome != phones::Outcome::kNoModel) {
    Fail(context, ExitCode::kNotConverted);
    return;
  }
  const phones::ConversionPage& page = *conversion.page;
  if (page.result.empty()) {
    throw Failure{ExitCode::kNotConverted, core::ToUtf8(page.notices)};
  }
  PrintPage(context, arguments,
            {.title = input.row,
             .instructions = page.notices,
             .tempo = page.tempo,
             .melody = page.result,
             .model = model});
}

}  // namespace tonadex::cli

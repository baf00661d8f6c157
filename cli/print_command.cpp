#include <CLI/CLI.hpp>
#include <memory>

#include "app/print_sheet.h"
#include "cli/context.h"
#include "cli/convert_line.h"
#include "cli/shared_options.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "phones/formats.h"
#ifdef TONADEX_CLI_QT
#include "platform/posix/program_folder.h"
#include "shell/qt/print/rich_text_box.h"
#elif defined(_WIN32)
#include "platform/win32/program_folder.h"
#include "platform/win32/rich_text_box.h"
#endif

namespace tonadex::cli {
namespace {

struct PrintOptions {
  PhoneChoice phone;
  std::string file, pdf, printer;
};

#ifdef TONADEX_CLI_QT

void PrintPage(Context& context, const PrintOptions& options, const app::SheetValues& values) {
  platform::RecordingMessages messages;
  const platform::ScopedMessageSink scope(messages);
  try {
    const auto box = shell::MakeWindowlessRichTextBox(
        {.printer = core::FromUtf8(options.printer), .pdf = ArgumentPath(options.pdf)});
    app::PrintSheet(*box, platform::PrepareProgramFolder() / app::kSheetTemplate, values);
  } catch (const core::RunTimeError& error) {
    Fail(context, ExitCode::kSystemFailed, core::ToUtf8(error.what()));
  }
  ShowMessages(context, messages.messages);
}

#elif defined(_WIN32)

void PrintPage(Context& context, const PrintOptions& options, const app::SheetValues& values) {
  if (!options.pdf.empty() || !options.printer.empty()) {
    Fail(context, ExitCode::kWrongUse, "en Windows se imprime en la impresora predeterminada");
    return;
  }
  try {
    platform::RichEditBox box;
    app::PrintSheet(box, platform::PrepareProgramFolder() / app::kSheetTemplate, values);
  } catch (const core::RunTimeError& error) {
    Fail(context, ExitCode::kSystemFailed, core::ToUtf8(error.what()));
  }
}

#else

void PrintPage(Context& context, const PrintOptions& /*options*/,
               const app::SheetValues& /*values*/) {
  Fail(context, ExitCode::kSystemFailed,
       "este tonadex-cli no puede imprimir: se compiló sin el programa de escritorio");
}

#endif

void Print(Context& context, const PrintOptions& options) {
  if (!options.pdf.empty() && !options.printer.empty()) {
    Fail(context, ExitCode::kWrongUse, "elige --pdf o --impresora");
    return;
  }
  if (!options.phone.IsOne()) {
    Fail(context, ExitCode::kWrongUse, "elige el móvil con --telefono o --modelo");
    return;
  }
  const auto model = ChosenModel(context, options.phone);
  MelodyInput input;
  if (!model || !ReadMelody(context, options.file, input)) {
    return;
  }
  if (phones::SavesFile(*model)) {
    Fail(context, ExitCode::kWrongUse,
         "«" + core::ToUtf8(*model) + "» graba un fichero que no se imprime");
    return;
  }
  core::RTTTLMelody melody;
  const auto conversion = ConvertLine(melody, input.line, *model, input.row, std::nullopt);
  ShowMessages(context, conversion.messages);
  if (conversion.outcome != phones::Outcome::kConverted &&
      conversion.outcome != phones::Outcome::kNoModel) {
    Fail(context, ExitCode::kNotConverted);
    return;
  }
  const phones::ConversionPage& page = *conversion.page;
  if (page.result.empty()) {
    Fail(context, ExitCode::kNotConverted, core::ToUtf8(page.notices));
    return;
  }
  PrintPage(context, options,
            {.title = input.row,
             .instructions = page.notices,
             .tempo = page.tempo,
             .melody = page.result,
             .model = *model});
}

}  // namespace

void AddImprimir(CLI::App& app, Context& context) {
  auto options = std::make_shared<PrintOptions>();
  CLI::App& command = *app.add_subcommand(
      "imprimir", "Imprime la hoja de una melodía convertida, para guardarla junto al móvil");
  AddPhone(command, options->phone);
  command.add_option("--pdf", options->pdf, "Escribe un PDF en vez de imprimir")
      ->type_name("SALIDA");
  command.add_option("--impresora", options->printer, "Impresora, en vez de la predeterminada")
      ->type_name("NOMBRE");
  AddMelody(command, options->file);
  command.callback([&context, options] { Print(context, *options); });
}

}  // namespace tonadex::cli

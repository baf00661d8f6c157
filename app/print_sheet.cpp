#include "app/print_sheet.h"

#include <algorithm>
#include <array>

#include "core/text.h"

namespace tonadex::app {
namespace {

struct ModelLabel {
  std::string_view model, label;
};

// As printed on the sheets, capital letters and missing full stops included.
constexpr auto kLabels = std::to_array<ModelLabel>({
    {" RTTTL (cable)", "Nokia>RTTTL."},
    {" RTTTL (cable-Tempo125)", "Nokia>RTTTL, tempo 125."},
    {" Compositor", "Nokia>Compositor."},
    {"3210,3310,3330,3390,8250", "Nokia>Compositor."},
    {" Pulsaciones", "Nokia>Pulsaciones."},
    {" Emelody", "Emelody"},
    {"R520,R600", "Emelody"},
    {"T20e,T29,T39,T66,T68m", "Emelody"},
    {" Imelody", "Imelody."},
    {"T65,T68u,T68i,T300", "Imelody."},
    {"2119,2135,2255,2235,3035", "KWS."},
    {" KWS", "KWS."},
    {" Pulsaciones tipo 1", "Samsung>Pulsaciones tipo 1."},
    {"R220,R225,N105,N400", "Samsung>Pulsaciones tipo 1."},
    {"A200,A288,Q300", "Samsung>Pulsaciones tipo 1."},
    {"S100,T100,V100", "Samsung>Pulsaciones tipo 1."},
    {" Pulsaciones tipo 2", "Samsung>Pulsaciones tipo 2."},
    {"A300,A308,A400,A408", "Samsung>Pulsaciones tipo 2."},
    {"Q100,Q105,Q200", "Samsung>Pulsaciones tipo 2."},
    {"MDY (cable)", "MItsubushi Trium>MDY."},
    {" Motorola por SMS", "Motorola>SMS"},
    {"v100,v50,T193,T191", "Motorola>SMS"},
    {" Motorola Pulsaciones Tipo 1", "Motorola>Pulsaciones Tipo 1"},
    {"p280,v60,v66,v120c", "Motorola>Pulsaciones Tipo 1"},
    {" Motorola iMelody", "Motorola>Imelody"},
});

void Fill(platform::RichTextBox& box, std::string_view placeholder, std::string_view value) {
  std::string source = box.TextRTF();
  box.SetTextRTF(core::ReplaceAll(source, placeholder, value));
}

}  // namespace

std::string_view FormatLabel(std::string_view model) {
  const auto found = std::ranges::find(kLabels, model, &ModelLabel::model);
  return found == kLabels.end() ? std::string_view() : found->label;
}

void PrintSheet(platform::RichTextBox& box, const std::filesystem::path& sheetTemplate,
                const SheetValues& values) {
  box.LoadFile(sheetTemplate);
  Fill(box, "cambiatitulo", values.title);
  Fill(box, "cambiainstrucciones", values.instructions);
  Fill(box, "cambiatempo", values.tempo);
  Fill(box, "cambiamelodia", values.melody);
  Fill(box, "cambiamodelo", FormatLabel(values.model));
  box.SelPrint();
}

}  // namespace tonadex::app

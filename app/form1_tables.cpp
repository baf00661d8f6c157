#include "app/form1_tables.h"

#include <algorithm>
#include <array>

#include "core/windows1252.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using Kind = ControlKind;
using F = Form1;

// The mnemonics are free of clashes among the navigation row and any one page.
constexpr auto kControls = std::to_array<ControlInfo>({
    // The navigation row.
    {"cmdinicio", Kind::kButton, &F::cmdinicio, "&Inicio",
     u8"Componer una melodía o pegarla en RTTTL, escucharla y subirla"_w, ""},
    {"cmdbuscar", Kind::kButton, &F::cmdbuscar, "&Buscar",
     u8"Buscar melodías en el servidor y descargarlas"_w, ""},
    {"cmdrepertorio", Kind::kButton, &F::cmdrepertorio, "&Repertorio",
     u8"Escuchar, convertir e imprimir tus melodías"_w, ""},
    {"cmd906", Kind::kButton, &F::cmd906, "I&nternet", u8"La página del servidor de melodías"_w,
     ""},
    {"cmdopciones", Kind::kButton, &F::cmdopciones, "&Opciones", u8"Elegir tu móvil"_w, ""},
    {"cmdayuda", Kind::kButton, &F::cmdayuda, "A&yuda", "El manual de Tonadex (F1)", ""},
    {"navbanner", Kind::kWebView, &F::navbanner, "", "", "Anuncio del servidor"},
    {"WebBrowser1", Kind::kWebView, &F::WebBrowser1, "", "", u8"Página del servidor de melodías"_w},
    {"Timer1", Kind::kTimer, &F::Timer1, "", "", ""},
    // Search.
    {"txtbuscar", Kind::kTextBox, &F::txtbuscar, "", u8"Palabras del nombre de la melodía"_w,
     u8"Palabras que buscar"_w},
    {"picabuscar", Kind::kPictureButton, &F::picabuscar, "Bu&scar",
     "Buscar estas palabras en el servidor", ""},
    {"picazar", Kind::kPictureButton, &F::picazar, "Al a&zar", u8"Unas melodías al azar"_w, ""},
    {"List1", Kind::kListBox, &F::List1, "", "", u8"Melodías"_w},
    {"picdescargar", Kind::kPictureButton, &F::picdescargar, "&Descargar",
     u8"Guardar la melodía elegida en tu repertorio"_w, ""},
    // Repertoire.
    {"picreproducir", Kind::kPictureButton, &F::picreproducir, "Re&producir",
     u8"Escuchar la melodía elegida"_w, ""},
    {"picconvertir", Kind::kPictureButton, &F::picconvertir, "&Convertir",
     u8"Convertir la melodía elegida para tu móvil"_w, ""},
    {"picimprimir", Kind::kPictureButton, &F::picimprimir, "I&mprimir",
     u8"Imprimir la melodía convertida"_w, ""},
    {"lbltextresult", Kind::kLabel, &F::lbltextresult, "", "", ""},
    {"textresultado", Kind::kResultBox, &F::textresultado, "", "",
     u8"Resultado de la conversión"_w},
    {"Label1", Kind::kLabel, &F::Label1, "&Tempo", "", ""},
    {"texttempo", Kind::kTextBox, &F::texttempo, "", "", "Tempo en pulsos por minuto"},
    {"Label2", Kind::kLabel, &F::Label2, "Instrucciones y a&visos", "", ""},
    {"Textavisos", Kind::kResultBox, &F::Textavisos, "", "", "Instrucciones y avisos"},
    // Options.
    {"Label3", Kind::kLabel, &F::Label3, "&Marca", "", ""},
    {"cmbmarcas", Kind::kComboBox, &F::cmbmarcas, "", "", u8"Marca del móvil"_w},
    {"Label4", Kind::kLabel, &F::Label4, "Mo&delo o formato", "", ""},
    {"cmbformatos", Kind::kComboBox, &F::cmbformatos, "", "", "Modelo o formato"},
    // Composer.
    {"lbltitulocompo", Kind::kLabel, &F::lbltitulocompo, "Compositor", "", ""},
    {"lblporfacomprueba", Kind::kLabel, &F::lblporfacomprueba,
     u8"Por favor, escucha la melodía antes de subirla."_w, "", ""},
    {"lblnombremelodiasube", Kind::kLabel, &F::lblnombremelodiasube, "No&mbre", "", ""},
    {"txtcomponombremelodia", Kind::kTextBox, &F::txtcomponombremelodia, "", "",
     u8"Nombre de la melodía"_w},
    {"lbltemposube", Kind::kLabel, &F::lbltemposube, "&Tempo", "", ""},
    {"txtcompoTempo", Kind::kComboBox, &F::txtcompoTempo, "", "Pulsos por minuto",
     "Tempo en pulsos por minuto"},
    {"lblformatocompo", Kind::kLabel, &F::lblformatocompo,
     u8"Not&as, como en el compositor de Nokia: 8c1 4.#f2 2-"_w, "", ""},
    {"txtmelodiacompo", Kind::kTextArea, &F::txtmelodiacompo, "", "", u8"Notas de la melodía"_w},
    {"lblMsg", Kind::kLabel, &F::lblMsg, "", "", ""},
    {"cmdscuchacumpo", Kind::kButton, &F::cmdscuchacumpo, "&Escuchar",
     u8"Escuchar la melodía compuesta"_w, u8"Escuchar la melodía compuesta"_w},
    {"cmdsubecompo", Kind::kButton, &F::cmdsubecompo, "&Subir",
     u8"Subir al servidor la melodía compuesta"_w, u8"Subir al servidor la melodía compuesta"_w},
    // RTTTL box.
    {"lbltitulortttl", Kind::kLabel, &F::lbltitulortttl, u8"Melodía en RTTTL"_w, "", ""},
    {"labelformatortttl", Kind::kLabel, &F::labelformatortttl, "Te&xto RTTTL", "", ""},
    {"txtrtttlsube", Kind::kTextArea, &F::txtrtttlsube, "", "", "Texto RTTTL"},
    {"cmdscuchartttl", Kind::kButton, &F::cmdscuchartttl, "Esc&uchar", "Escuchar el texto RTTTL",
     "Escuchar el texto RTTTL"},
    {"cmdsubirmelortttl", Kind::kButton, &F::cmdsubirmelortttl, "Subir RTTT&L",
     "Subir al servidor el texto RTTTL", "Subir al servidor el texto RTTTL"},
    // Never shown.
    {"Text1", Kind::kStorage, &F::Text1, "", "", ""},
    {"Text2", Kind::kStorage, &F::Text2, "", "", ""},
    {"Text3", Kind::kStorage, &F::Text3, "", "", ""},
    {"rtf", Kind::kStorage, &F::rtf, "", "", ""},
});

constexpr auto kHandlers = std::to_array<HandlerInfo>({
    {&F::cmdinicio, Event::kClick, &F::cmdinicio_Click},
    {&F::cmdbuscar, Event::kClick, &F::cmdbuscar_Click},
    {&F::cmdrepertorio, Event::kClick, &F::cmdrepertorio_Click},
    {&F::cmd906, Event::kClick, &F::cmd906_Click},
    {&F::cmdopciones, Event::kClick, &F::cmdopciones_Click},
    {&F::cmdayuda, Event::kClick, &F::cmdayuda_Click},
    {&F::Timer1, Event::kTick, &F::Timer1_Timer},
    {&F::navbanner, Event::kNavigation, &F::navbanner_BeforeNavigate},
    {&F::picabuscar, Event::kClick, &F::picabuscar_Click},
    {&F::txtbuscar, Event::kEnter, &F::picabuscar_Click},
    {&F::picazar, Event::kClick, &F::picazar_Click},
    {&F::picdescargar, Event::kClick, &F::picdescargar_Click},
    {&F::List1, Event::kClick, &F::List1_Click},
    {&F::List1, Event::kActivate, &F::List1_DblClick},
    {&F::picreproducir, Event::kClick, &F::picreproducir_Click},
    {&F::picconvertir, Event::kClick, &F::picconvertir_Click},
    {&F::picimprimir, Event::kClick, &F::picimprimir_Click},
    {&F::cmbmarcas, Event::kClick, &F::cmbmarcas_Click},
    {&F::cmdscuchacumpo, Event::kClick, &F::cmdscuchacumpo_Click},
    {&F::cmdsubecompo, Event::kClick, &F::cmdsubecompo_Click},
    {&F::cmdscuchartttl, Event::kClick, &F::cmdscuchartttl_Click},
    {&F::cmdsubirmelortttl, Event::kClick, &F::cmdsubirmelortttl_Click},
    {&F::txtmelodiacompo, Event::kChange, &F::txtmelodiacompo_Change},
    {&F::txtcompoTempo, Event::kChange, &F::txtmelodiacompo_Change},
    {&F::txtrtttlsube, Event::kChange, &F::txtrtttlsube_Change},
});

using Member = Control Form1::*;

constexpr auto kSearchControls = std::to_array<Member>(
    {&F::picabuscar, &F::picazar, &F::picdescargar, &F::txtbuscar, &F::List1});
constexpr auto kWebControls = std::to_array<Member>({&F::WebBrowser1});
constexpr auto kRepertoireControls = std::to_array<Member>(
    {&F::List1, &F::lbltextresult, &F::Label1, &F::Label2, &F::picreproducir, &F::picconvertir,
     &F::picimprimir, &F::Textavisos, &F::textresultado, &F::texttempo});
constexpr auto kOptionsControls =
    std::to_array<Member>({&F::cmbmarcas, &F::cmbformatos, &F::Label3, &F::Label4});
constexpr auto kStartControls = std::to_array<Member>(
    {&F::lblporfacomprueba, &F::lbltitulocompo, &F::lblMsg, &F::lblformatocompo,
     &F::labelformatortttl, &F::lbltitulortttl, &F::lblnombremelodiasube, &F::lbltemposube,
     &F::txtcompoTempo, &F::cmdsubecompo, &F::txtmelodiacompo, &F::txtcomponombremelodia,
     &F::txtrtttlsube, &F::cmdsubirmelortttl, &F::cmdscuchartttl, &F::cmdscuchacumpo});

struct Page {
  std::int16_t number;
  std::span<const Member> controls;
};

constexpr auto kPages = std::to_array<Page>({
    {kSearchPage, kSearchControls},
    {kStartUpPage, kWebControls},
    {kRepertoirePage, kRepertoireControls},
    {kInternetPage, kWebControls},
    {kOptionsPage, kOptionsControls},
    {kStartPage, kStartControls},
});

constexpr auto kNavigation = std::to_array<NavigationInfo>({
    {&F::cmdinicio, kStartPage, '1'},
    {&F::cmdbuscar, kSearchPage, '2'},
    {&F::cmdrepertorio, kRepertoirePage, '3'},
    {&F::cmd906, kInternetPage, '4'},
    {&F::cmdopciones, kOptionsPage, '5'},
    {&F::cmdayuda, kNoPage, '\0'},
});

}  // namespace

std::span<const ControlInfo> Controls() {
  return kControls;
}

const ControlInfo* FindControl(std::string_view name) {
  const auto found = std::ranges::find(kControls, name, &ControlInfo::name);
  return found == kControls.end() ? nullptr : &*found;
}

std::span<const HandlerInfo> Handlers() {
  return kHandlers;
}

std::span<Control Form1::*const> PageControls(std::int16_t page) {
  const auto found = std::ranges::find(kPages, page, &Page::number);
  return found == kPages.end() ? std::span<const Member>() : found->controls;
}

std::span<const NavigationInfo> NavigationRow() {
  return kNavigation;
}

bool IsNavigation(Control Form1::*control) {
  return std::ranges::find(kNavigation, control, &NavigationInfo::button) != kNavigation.end();
}

}  // namespace tonadex::app

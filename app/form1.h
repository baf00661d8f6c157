#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/controls.h"
#include "app/melody_drawing.h"
#include "app/program.h"
#include "app/result_groups.h"
#include "app/rtttl_check.h"

namespace tonadex::nokia3210 {
class CNokia;
}

namespace tonadex::app {

// Page numbers; the gaps are part of the numbering.
inline constexpr std::int16_t kNoPage = 0;
inline constexpr std::int16_t kSearchPage = 1;
inline constexpr std::int16_t kStartUpPage = 2;  // the server's start page in WebBrowser1
inline constexpr std::int16_t kRepertoirePage = 3;
inline constexpr std::int16_t kInternetPage = 5;  // also WebBrowser1
inline constexpr std::int16_t kOptionsPage = 6;
inline constexpr std::int16_t kStartPage = 8;  // composer and RTTTL box

// Which drawing's melody sounds, while PlayMelody keeps its message box open.
enum class Sounding { kNothing, kRepertoire, kComposer, kRtttl };

// The main window's model. A shell copies what the user did into the controls (text, listIndex),
// calls the handlers through RunHandler of program.h, and draws the controls and plain data below
// afterwards. All texts are Windows-1252. The tables of controls and handlers are in
// form1_tables.h.
//
// Errors that a handler does not skip leave it as core::RunTimeError.
class Form1 {
 public:
  explicit Form1(Program& program);
  ~Form1();
  Form1(const Form1&) = delete;
  Form1& operator=(const Form1&) = delete;

  // ---- Handlers ---------------------------------------------------------------------------------
  // Hides all pages but the start-up page and sends WebBrowser1 there.
  void Form_Load();
  // The user closes the window: the program ends at once, or, while a request runs, gives that up
  // and ends after it. Called directly, not through RunHandler.
  void Form_QueryUnload();

  void cmdinicio_Click();
  void cmdbuscar_Click();
  void cmdrepertorio_Click();
  void cmd906_Click();
  void cmdopciones_Click();
  void cmdayuda_Click();
  void Timer1_Timer();
  // The banner was told by a click in it to go elsewhere. The shell stops that navigation and
  // raises this; a navigation that the program asked for never raises it.
  void navbanner_BeforeNavigate();

  void picabuscar_Click();
  void picazar_Click();
  void picdescargar_Click();

  void picreproducir_Click();
  void picconvertir_Click();
  void picimprimir_Click();
  // The selection in List1 changed: redraws `repertoireDrawing`. Never throws.
  void List1_Click();
  // Enter or a double click on a row: plays in the repertoire, downloads on the search page.
  void List1_DblClick();

  // A brand was chosen (`listIndex` and `text` are set).
  void cmbmarcas_Click();

  void cmdscuchacumpo_Click();
  void cmdsubecompo_Click();
  void cmdscuchartttl_Click();
  void cmdsubirmelortttl_Click();
  // A character was typed into the tempo box, before it gets there: KeyAscii is its Windows-1252
  // code (8 is Backspace) and becomes 0 when it is refused. Pasting is not typing.
  void txtcompoTempo_KeyPress(std::int16_t& KeyAscii);
  // The text of a box changed: checks and drawings follow. Never throw, show nothing.
  void txtmelodiacompo_Change();
  void txtrtttlsube_Change();

  // ---- Methods ----------------------------------------------------------------------------------
  void ocultapagina();
  void FillModelList();
  void ConvertSelectedMelody();
  void convierteCompositor();
  // Uploads `melodiasube` under the name.
  void subemelodia(const std::string& nombre);

  // ---- For the shell, drawn as it stands --------------------------------------------------------
  std::int16_t paginaactual = kNoPage;
  Drawing repertoireDrawing;  // of the row selected on the repertoire page
  Drawing composerDrawing;
  Drawing rtttlDrawing;
  Check composerCheck;  // the count of notes beside the limit of 50
  Check rtttlCheck;     // beside txtrtttlsube
  Sounding sounding = Sounding::kNothing;

  // The navigation button of the page shown; none on the start-up page.
  const Control* NavigationButton() const;
  // The chosen phone at the end of the navigation row: "Nokia 3210, 3310 …" or "Elige tu móvil".
  std::string PhoneLabel() const;
  // Under the two lists of the options page: what the phone chosen there gets.
  std::string OptionsSentence() const;
  // What the page says while its list or result is empty; "" when there is nothing to say.
  std::string EmptySentence() const;
  // What the repertoire's result panel says while it shows no result; "" when it shows one.
  std::string EmptyResultSentence() const;
  // Whether the empty page offers a button that leads to the search page (cmdbuscar_Click).
  bool OffersSearch() const;
  // The result in runs that are not torn apart, and whether they are keys to press.
  std::vector<ResultGroup> ResultGroupsShown() const;
  bool ResultIsKeyPresses() const;
  // Whether textresultado holds a text that can be copied and saved, and a name for its file.
  bool ResultCanBeSaved() const;
  std::string SuggestedResultName() const;

  // ---- Controls ---------------------------------------------------------------------------------
  Control cmdinicio, cmdbuscar, cmdrepertorio, cmd906, cmdopciones, cmdayuda;
  Control navbanner, WebBrowser1;
  Control Timer1;  // refreshes the banner, every 60 s

  Control txtbuscar, picabuscar, picazar, picdescargar;
  Control List1;  // of the search and the repertoire page

  Control lbltextresult, textresultado;  // the result and its title
  Control Label1, texttempo;             // tempo
  Control Label2, Textavisos;            // instructions and notices
  Control picreproducir, picconvertir, picimprimir;

  Control Label3, cmbmarcas;    // make
  Control Label4, cmbformatos;  // model or format; its text is any text

  Control lbltitulocompo, lblporfacomprueba;
  Control lblnombremelodiasube, txtcomponombremelodia;
  Control lbltemposube, txtcompoTempo;
  Control lblformatocompo, txtmelodiacompo;
  Control lblMsg, cmdscuchacumpo, cmdsubecompo;
  Control lbltitulortttl, labelformatortttl, txtrtttlsube;
  Control cmdscuchartttl, cmdsubirmelortttl;

  Control Text1, Text2, Text3;  // raw reply, current record, its number; never shown
  Control rtf;                  // the converted RTTTL notes; never shown

  std::string melodiasube;  // the RTTTL text to be uploaded or played

 private:
  bool LeaveFor(std::int16_t page);
  void ShowPage(std::int16_t page);
  void NavigateBanner();
  void Navigate(Control& view, std::string_view path);
  void RestoreSavedModel();
  void FillRepertoire();
  void ReadListing(std::string_view address, bool stemAlone);
  void Play(Sounding what);
  bool BuildComposedMelody();
  std::filesystem::path SelectedFile() const;
  nokia3210::CNokia& Converter();

  Program& program_;
  bool formReady_ = false;
  std::string resultRow_, resultModel_;           // of what the result panel shows
  std::unique_ptr<nokia3210::CNokia> converter_;  // created with the first visit to the start page
};

}  // namespace tonadex::app

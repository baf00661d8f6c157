#include "app/form1.h"

#include <array>
#include <exception>
#include <filesystem>
#include <system_error>

#include "app/form1_tables.h"
#include "app/settings.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "net/addresses.h"
#include "nokia3210/cnokia.h"
#include "phones/catalogue.h"
#include "phones/formats.h"
#include "phones/phone_words.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::uint32_t kBannerIntervalMs = 60'000;
constexpr std::array<std::int16_t, 4> kHiddenAtStart = {kSearchPage, kRepertoirePage, kInternetPage,
                                                        kOptionsPage};
constexpr std::array<std::string_view, 10> kUsualTempos = {"63",  "80",  "100", "112", "125",
                                                           "140", "160", "180", "200", "225"};
constexpr std::string_view kFirstTempo = "125";

constexpr std::string_view kHelpFile = "TONADEX.HLP";
// The mark of the separate updating arrangement: only which of the two names exists matters.
constexpr std::string_view kNoUpdateMark = "noactualiza.tdx";
constexpr std::string_view kUpdateMark = "actualiza.tdx";

constexpr std::string_view kEmptySearch =
    u8"Escribe unas palabras y pulsa Buscar, o prueba suerte con Al azar."_w;
constexpr std::string_view kEmptyRepertoire =
    u8"Tu repertorio está vacío. Busca melodías en el servidor y descárgalas: aparecerán aquí."_w;
constexpr std::string_view kChoosePhoneFirst =
    u8"Elige tu móvil en Opciones; después podrás convertir tus melodías."_w;
constexpr std::string_view kConvertFirst =
    u8"Elige una melodía y pulsa Convertir: aquí verás lo que necesita tu móvil."_w;

void RenameMark(const std::filesystem::path& folder) {
  std::error_code ignored;
  if (!std::filesystem::exists(folder / kUpdateMark, ignored)) {
    std::filesystem::rename(folder / kNoUpdateMark, folder / kUpdateMark, ignored);
  }
}

}  // namespace

Form1::Form1(Program& program) : program_(program) {
  for (const ControlInfo& info : Controls()) {
    Control& control = this->*info.member;
    control.caption = info.caption;
    control.visible = info.kind != ControlKind::kStorage;
  }
  for (const auto member : PageControls(kStartPage)) {
    (this->*member).visible = false;
  }
  lbltextresult.useMnemonic = lblMsg.useMnemonic = false;
  Timer1.interval = kBannerIntervalMs;
  picimprimir.enabled = false;
  for (const std::string_view tempo : kUsualTempos) {
    txtcompoTempo.AddRow(tempo);
  }
  txtcompoTempo.text = kFirstTempo;
  core::InitMelody(program.gMelody, program.services.shell.TempPath());
  txtmelodiacompo_Change();
  txtrtttlsube_Change();
}

Form1::~Form1() = default;

void Form1::Form_Load() {
  for (const std::int16_t page : kHiddenAtStart) {
    paginaactual = page;
    ocultapagina();
  }
  paginaactual = kStartUpPage;
  WebBrowser1.visible = true;
  navbanner.visible = false;
  Navigate(WebBrowser1, net::StartPageAddress(program_.gVersion));
  formReady_ = true;
}

void Form1::Form_QueryUnload() {
  if (program_.busy) {
    program_.closing = true;
    GiveUpRequest(program_);
  } else {
    program_.services.shell.End();
  }
}

void Form1::ocultapagina() {
  for (const auto member : PageControls(paginaactual)) {
    (this->*member).visible = false;
  }
  if (paginaactual == kOptionsPage && formReady_) {
    program_.gPhoneModel = cmbformatos.text;
    RegWriteString(program_.services.registry, kHkeyClassesRoot, kSettingKey, kModelSetting,
                   program_.gPhoneModel);
  }
}

void Form1::Navigate(Control& view, std::string_view path) {
  view.address = program_.serverBase + std::string(path);
  ++view.navigations;
  const auto id = &view == &navbanner ? WebViewId::kNavbanner : WebViewId::kWebBrowser1;
  try {
    program_.services.webViews.Navigate(id, view.address);
  } catch (const std::exception&) {
    // A web view that fails never keeps a page from being shown.
  }
}

void Form1::NavigateBanner() {
  Navigate(navbanner, net::kBannerPath);
}

// False when the page is shown already: a second click does nothing.
bool Form1::LeaveFor(std::int16_t page) {
  if (paginaactual == page) {
    return false;
  }
  navbanner.visible = true;
  NavigateBanner();
  return true;
}

void Form1::ShowPage(std::int16_t page) {
  ocultapagina();
  for (const auto member : PageControls(page)) {
    (this->*member).visible = true;
  }
  paginaactual = page;
}

void Form1::cmdinicio_Click() {
  if (LeaveFor(kStartPage)) {
    ShowPage(kStartPage);
    core::SkipErrors([this] { Converter(); });
    txtmelodiacompo_Change();  // the chosen phone may be another one now
    txtrtttlsube_Change();
  }
}

void Form1::cmdbuscar_Click() {
  RenameMark(program_.ProgramFolder());
  if (LeaveFor(kSearchPage)) {
    ShowPage(kSearchPage);
    List1.Clear();
  }
}

void Form1::cmdrepertorio_Click() {
  if (LeaveFor(kRepertoirePage)) {
    core::InitMelody(program_.gMelody, program_.services.shell.TempPath());
    FillRepertoire();
    ShowPage(kRepertoirePage);
    List1_Click();
  }
}

void Form1::cmd906_Click() {
  if (paginaactual == kInternetPage) {
    return;
  }
  if (paginaactual != kStartUpPage) {  // there the large web view is in place already
    WebBrowser1.visible = true;
    navbanner.visible = false;
    ocultapagina();
  }
  Navigate(WebBrowser1, net::kInternetPagePath);
  paginaactual = kInternetPage;
}

void Form1::cmdopciones_Click() {
  if (LeaveFor(kOptionsPage)) {
    ShowPage(kOptionsPage);
    RestoreSavedModel();
  }
}

void Form1::cmdayuda_Click() {
  program_.services.shell.OpenHelp(program_.ProgramFolder() / kHelpFile);
}

void Form1::Timer1_Timer() {
  if (navbanner.visible) {
    NavigateBanner();
  }
}

void Form1::navbanner_BeforeNavigate() {
  NavigateBanner();
}

void Form1::FillModelList() {
  cmbformatos.Clear();
  for (const std::string_view model :
       phones::ModelsOfBrand(program_.PhoneCatalogue, cmbmarcas.SelectedText())) {
    cmbformatos.AddRow(model);
  }
  cmbformatos.Select(0);
}

void Form1::cmbmarcas_Click() {
  FillModelList();
}

void Form1::RestoreSavedModel() {
  std::vector<std::string> brands;
  program_.PhoneCatalogue = phones::LoadPhoneCatalogue(brands);
  cmbmarcas.Clear();
  for (const std::string& brand : brands) {
    cmbmarcas.AddRow(brand);
  }
  cmbmarcas.Select(0);
  FillModelList();
  program_.services.shell.DoEvents();
  const std::string saved = program_.gPhoneModel;
  if (const auto brand = phones::RestoredBrand(saved)) {
    cmbmarcas.Select(static_cast<int>(*brand));
    FillModelList();
  }
  if (!saved.empty()) {
    cmbformatos.SetText(saved);
  }
}

const Control* Form1::NavigationButton() const {
  for (const NavigationInfo& info : NavigationRow()) {
    if (info.page != kNoPage && info.page == paginaactual) {
      return &(this->*info.button);
    }
  }
  return nullptr;
}

std::string Form1::PhoneLabel() const {
  // On the page of the options the model is saved when the page is left.
  return phones::PhoneName(paginaactual == kOptionsPage ? cmbformatos.text : program_.gPhoneModel);
}

std::string Form1::OptionsSentence() const {
  return phones::PhoneGets(cmbformatos.text);
}

std::string Form1::EmptySentence() const {
  if (!List1.visible || !List1.rows.empty()) {
    return {};
  }
  return std::string(paginaactual == kSearchPage ? kEmptySearch : kEmptyRepertoire);
}

std::string Form1::EmptyResultSentence() const {
  if (!textresultado.visible || !textresultado.text.empty()) {
    return {};
  }
  return std::string(phones::FindModel(program_.gPhoneModel) != nullptr ? kConvertFirst
                                                                        : kChoosePhoneFirst);
}

bool Form1::OffersSearch() const {
  return paginaactual == kRepertoirePage && List1.rows.empty();
}

std::vector<ResultGroup> Form1::ResultGroupsShown() const {
  return ResultGroups(textresultado.text);
}

bool Form1::ResultIsKeyPresses() const {
  return IsKeyPresses(resultModel_);
}

bool Form1::ResultCanBeSaved() const {
  return !textresultado.text.empty() && !phones::SavesFile(resultModel_);
}

std::string Form1::SuggestedResultName() const {
  return SuggestedFileName(resultRow_, resultModel_);
}

}  // namespace tonadex::app

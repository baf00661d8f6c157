#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "app/form1.h"
#include "app/form1_tables.h"
#include "core/runtime_error.h"
#include "tests/core/table.h"
#include "tests/support/test_program.h"

namespace tonadex::app {
namespace {

constexpr std::string_view kBanner = "navbanner http://servidor/banners.php";

class Form1Pages : public testing::Test {
 protected:
  void SetUp() override {
    form.Form_Load();
    test.webViews.log.clear();
  }
  // The visible controls outside the navigation row, timers left out.
  std::set<std::string_view> Visible() const {
    std::set<std::string_view> names;
    for (const ControlInfo& info : Controls()) {
      const bool navigation = std::ranges::any_of(
          NavigationRow(), [&](const auto& each) { return each.button == info.member; });
      const bool visible = (form.*info.member).visible;
      EXPECT_TRUE(visible || !navigation) << info.name;
      if (visible && !navigation && info.kind != ControlKind::kTimer) {
        names.insert(info.name);
      }
    }
    return names;
  }

  test::TestProgram test;
  Form1 form{test.program};
};

using Names = std::set<std::string_view>;
const Names kSearch = {"List1", "navbanner", "picabuscar", "picazar", "picdescargar", "txtbuscar"};
const Names kRepertoire = {"Label1",        "Label2",        "List1",        "Textavisos",
                           "lbltextresult", "navbanner",     "picconvertir", "picimprimir",
                           "picreproducir", "textresultado", "texttempo"};
const Names kOptions = {"Label3", "Label4", "cmbformatos", "cmbmarcas", "navbanner"};
const Names kStart = {"cmdscuchacumpo",    "cmdscuchartttl",        "cmdsubecompo",
                      "cmdsubirmelortttl", "labelformatortttl",     "lblMsg",
                      "lblformatocompo",   "lblnombremelodiasube",  "lblporfacomprueba",
                      "lbltemposube",      "lbltitulocompo",        "lbltitulortttl",
                      "navbanner",         "txtcomponombremelodia", "txtcompoTempo",
                      "txtmelodiacompo",   "txtrtttlsube"};
const Names kWeb = {"WebBrowser1"};

TEST_F(Form1Pages, StartWithTheServersStartPage) {
  test.program.gVersion = "1.0";
  Form1 fresh(test.program);
  fresh.Form_Load();
  EXPECT_EQ(test.webViews.log,
            std::vector<std::string>{"WebBrowser1 http://servidor/mini.php?version=1.0"});
  EXPECT_EQ(form.paginaactual, 2);
  EXPECT_EQ(Visible(), kWeb);
  EXPECT_EQ(form.NavigationButton(), nullptr);
  form.cmd906_Click();
  EXPECT_EQ(Visible(), kWeb);
  EXPECT_EQ(form.WebBrowser1.address, "http://servidor/mini906.php");
  EXPECT_EQ(test.registry.writes, 0);
}

// From every page to every page: what is shown, which page is marked, and where the web views went.
TEST_F(Form1Pages, ShowTheirControlsAlone) {
  struct Step {
    void (Form1::*click)();
    std::int16_t page;
    const Names& shown;
    const Control* marked;
  };
  const std::vector<Step> steps = {
      {&Form1::cmdbuscar_Click, 1, kSearch, &form.cmdbuscar},
      {&Form1::cmdrepertorio_Click, 3, kRepertoire, &form.cmdrepertorio},
      {&Form1::cmd906_Click, 5, kWeb, &form.cmd906},
      {&Form1::cmdopciones_Click, 6, kOptions, &form.cmdopciones},
      {&Form1::cmdinicio_Click, 8, kStart, &form.cmdinicio},
  };
  for (const Step& from : steps) {
    for (const Step& to : steps) {
      (form.*from.click)();
      test.webViews.log.clear();
      (form.*to.click)();
      EXPECT_EQ(Visible(), to.shown) << from.page << " to " << to.page;
      EXPECT_EQ(form.paginaactual, to.page);
      EXPECT_EQ(form.NavigationButton(), to.marked);
      const std::string_view went =
          to.page == 5 ? "WebBrowser1 http://servidor/mini906.php" : kBanner;
      EXPECT_EQ(test.webViews.log, from.page == to.page
                                       ? std::vector<std::string>{}
                                       : std::vector<std::string>{std::string(went)});
    }
  }
}

TEST_F(Form1Pages, IgnoreFailingWebViews) {
  test.webViews.broken = true;
  for (const auto click : {&Form1::cmdbuscar_Click, &Form1::cmd906_Click, &Form1::Timer1_Timer,
                           &Form1::cmdopciones_Click, &Form1::Form_Load}) {
    EXPECT_NO_THROW((form.*click)());
  }
}

TEST_F(Form1Pages, RefreshTheBannerWhileItIsShown) {
  EXPECT_EQ(form.Timer1.interval, 60000u);
  form.Timer1_Timer();
  EXPECT_TRUE(test.webViews.log.empty());
  form.cmdbuscar_Click();
  form.Timer1_Timer();
  form.navbanner_BeforeNavigate();
  EXPECT_EQ(test.webViews.log, std::vector<std::string>(3, std::string(kBanner)));
  EXPECT_EQ(form.navbanner.navigations, 3);
}

TEST_F(Form1Pages, RenameTheUpdateMarkWithEveryClickOnSearch) {
  test.folder.Write("noactualiza.tdx", "1");
  form.cmdbuscar_Click();
  EXPECT_EQ(test.folder.Read("actualiza.tdx"), "1");
  test.folder.Write("noactualiza.tdx", "2");
  form.cmdbuscar_Click();  // the new name exists: nothing is renamed
  EXPECT_EQ(test.folder.Read("actualiza.tdx"), "1");
  EXPECT_EQ(test.folder.Read("noactualiza.tdx"), "2");
  std::filesystem::remove(test.folder / "actualiza.tdx");
  form.cmdbuscar_Click();  // though the page is shown already
  EXPECT_EQ(test.folder.Read("actualiza.tdx"), "2");
  EXPECT_EQ(test.webViews.log.size(), 1u);
}

TEST_F(Form1Pages, OpenTheHelpAndEndTheProgram) {
  form.cmdayuda_Click();
  EXPECT_EQ(test.shell.help, std::vector<std::filesystem::path>{test.folder / "TONADEX.HLP"});
  form.Form_QueryUnload();
  EXPECT_EQ(test.shell.ends, 1);
}

TEST_F(Form1Pages, HaveNoMnemonicTwice) {
  const auto count = [this](Control Form1::*member, std::map<char, int>& used) {
    const std::string& caption = (form.*member).caption;
    const std::size_t mark = caption.find('&');
    if (mark != std::string::npos) {
      ++used[static_cast<char>(std::tolower(caption[mark + 1]))];
    }
  };
  for (const std::int16_t page : {kSearchPage, kRepertoirePage, kOptionsPage, kStartPage}) {
    std::map<char, int> used;
    for (const NavigationInfo& info : NavigationRow()) {
      count(info.button, used);
    }
    for (const auto member : PageControls(page)) {
      count(member, used);
    }
    for (const auto& [letter, times] : used) {
      EXPECT_EQ(times, 1) << letter << " on page " << page;
    }
  }
}

TEST(CmdopcionesClick, RestoresTheSavedModel) {
  for (const test::Row& row : test::Table("Saved models")) {
    SCOPED_TRACE(row[0]);
    test::TestProgram test;
    test.program.gPhoneModel = row[0];
    Form1 form(test.program);
    form.Form_Load();
    form.cmdopciones_Click();
    EXPECT_EQ(form.cmbmarcas.rows.size(), 8u);
    EXPECT_EQ(std::to_string(form.cmbmarcas.listIndex), row[1]);
    EXPECT_EQ(form.cmbmarcas.text, form.cmbmarcas.SelectedText());
    EXPECT_EQ(form.cmbformatos.text, row[2]);
    EXPECT_EQ(std::to_string(form.cmbformatos.listIndex), row[3]);
    EXPECT_EQ(test.shell.doEvents, 1);
    form.cmdbuscar_Click();
    EXPECT_EQ(test.program.gPhoneModel, row[2]);
    EXPECT_EQ(test.registry.values["2147483648/tonadex\\/modelo"].data, row[2]);
  }
}

TEST_F(Form1Pages, ListTheModelsOfTheBrandAndSaveOnceOnLeaving) {
  form.cmdopciones_Click();
  form.cmbmarcas.Select(6);
  form.cmbmarcas_Click();
  ASSERT_EQ(form.cmbformatos.rows.size(), 1u);
  EXPECT_EQ(form.cmbformatos.text, "MDY (cable)");
  form.cmdopciones_Click();  // the page is shown: the choice stays
  EXPECT_EQ(form.cmbmarcas.listIndex, 6);
  EXPECT_EQ(test.registry.writes, 0);
  form.cmd906_Click();
  EXPECT_EQ(test.program.gPhoneModel, "MDY (cable)");
  form.cmdbuscar_Click();
  EXPECT_EQ(test.registry.writes, 1);
}

TEST_F(Form1Pages, ReportWhatNoHandlerCatches) {
  EXPECT_FALSE(RunHandler(test.program, [] {
    throw core::RunTimeError(core::ErrorNumber::kFileNotFound, "no hay fichero");
  }));
  EXPECT_EQ(test.boxes.messages,
            (std::vector<platform::Message>{{"Se ha producido un error inesperado y el programa "
                                             "debe cerrarse:\r\nno hay fichero",
                                             "Tonadex", platform::Icon::kExclamation}}));
  EXPECT_EQ(test.shell.ends, 1);
  EXPECT_EQ(test.program.exitCode, 1);
}

TEST_F(Form1Pages, DropEventsWhileARequestRuns) {
  form.cmdbuscar_Click();
  std::vector<bool> busy;
  test.program.busyChanged = [&] { busy.push_back(test.program.busy); };
  test.http.during = [&] {
    EXPECT_TRUE(RunHandler(test.program, [&] { form.cmdrepertorio_Click(); }));
  };
  EXPECT_TRUE(RunHandler(test.program, [&] { form.picazar_Click(); }));
  EXPECT_EQ(form.paginaactual, 1);
  EXPECT_EQ(busy, (std::vector<bool>{true, false}));
}

}  // namespace
}  // namespace tonadex::app

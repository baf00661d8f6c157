#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/composer_keys.h"
#include "app/form1.h"
#include "app/layout.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/test_program.h"

namespace tonadex::app::form1_test {

struct Form1Window : testing::Test {
  void SetUp() override {
    form.Form_Load();
    test.webViews.log.clear();
  }
  // The visible controls, without the navigation row and timers, in alphabetical order.
  std::string Visible() const {
    std::set<std::string_view> names;
    for (const ControlInfo& info : Controls()) {
      const bool navigation = info.look == Look::kNavigation || info.look == Look::kLink;
      const bool visible = (form.*info.member).visible;
      EXPECT_TRUE(visible || !navigation) << info.name;
      if (visible && !navigation && info.look != Look::kTimer) {
        names.insert(info.name);
      }
    }
    std::string text;
    for (const std::string_view name : names) {
      text.append(text.empty() ? "" : " ").append(name);
    }
    return text;
  }
  void Click(const test::Row& page) {
    (form.*HandlerOf(*FindControl(page[0]), Event::kClick))();
    form.Refresh();
  }

  test::TestProgram test;
  Form1 form{test.program};
};

struct WhileShown : core::MessageSink {
  explicit WhileShown(std::function<void(const core::Message&)> look) : look_(std::move(look)) {}
  void Show(const core::Message& message) override { look_(message); }

 private:
  std::function<void(const core::Message&)> look_;
};

// From every page to every page: checks the visible controls, the marked page, and the URLs of the
// web views.
TEST_F(Form1Window, ShowsTheControlsOfEachPageAlone) {
  EXPECT_EQ(Visible(), "WebBrowser1");
  const std::vector<test::Row> pages = test::Table("Pages");
  for (const test::Row& from : pages) {
    for (const test::Row& to : pages) {
      SCOPED_TRACE(from[0] + " to " + to[0]);
      Click(from);
      test.webViews.log.clear();
      Click(to);
      EXPECT_EQ(Visible(), to[2]);
      EXPECT_EQ(std::to_string(form.paginaactual), to[1]);
      for (const test::Row& page : pages) {
        EXPECT_EQ((form.*FindControl(page[0])->member).checked, page[0] == to[0]) << page[0];
      }
      const std::string went = to[1] == "5" ? "WebBrowser1 http://servidor/mini906.php"
                                            : "navbanner http://servidor/banners.php";
      EXPECT_EQ(test.webViews.log, std::vector(from[0] == to[0] ? 0 : 1, went));
    }
  }
}

TEST_F(Form1Window, HasNoMnemonicTwice) {
  for (const std::int16_t page :
       {kSearchPage, kRepertoirePage, kOptionsPage, kStartPage, kTypingPage, kMidiPage}) {
    std::set<char> used;
    for (const auto member : ControlsIn(WindowLayout(PageLayout(page)))) {
      const std::string& caption = (form.*member).caption;
      const std::size_t mark = caption.find('&') + 1;
      EXPECT_TRUE(mark == 0 || used.insert(core::ToLower(caption[mark])).second) << caption;
      std::set<char> inMenu;
      for (const MenuItem& item : InfoOf(member).menu) {
        const std::size_t at = item.caption.find('&') + 1;
        EXPECT_TRUE(at == 0 || inMenu.insert(core::ToLower(item.caption[at])).second)
            << item.caption;
      }
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
    EXPECT_EQ(test.registry.values["2147483648/tonadex\\/modelo"].data, row[2]);
  }
}

TEST_F(Form1Window, TheDisplayFollowsTheMelodyOfItsResultAlone) {
  test.folder.Write("melodias/vals.20", "Vals:d=4,o=5,b=60:c,p,8e.,c");
  form.cmdrepertorio_Click();
  form.List1.Select(0);
  form.List1_Click();
  const std::pair<std::string_view, std::string_view> cases[] = {
      {" Pulsaciones", "(3)8"}, {" Compositor", "8.e2"}, {" Motorola Pulsaciones Tipo 1", "33"}};
  for (const auto& [model, group] : cases) {
    SCOPED_TRACE(model);
    test.program.gPhoneModel = model;
    form.picconvertir_Click();
    WhileShown look([&](const core::Message& message) {
      EXPECT_TRUE(form.ShowPlaying(message));
      EXPECT_TRUE(form.FollowPlaying(2500));
      EXPECT_EQ(form.playingPosition.caption, "0:02 de 0:04");
      const auto groups = form.ResultGroupsShown();
      ASSERT_GE(form.textresultado.marked, 0);
      const auto text = groups.at(static_cast<std::size_t>(form.textresultado.marked)).text;
      EXPECT_EQ(form.textresultado.text.substr(text.from, text.to - text.from), group);
      test.program.gPhoneModel = "T65,T68u,T68i,T300";
      form.FollowPlaying(2500);
      EXPECT_EQ(form.textresultado.marked, -1) << "it is another phone's";
      form.stopButton_Click();
    });
    const core::ScopedMessageSink sink(look);
    form.picreproducir_Click();
    form.Refresh();
    EXPECT_FALSE(form.stopButton.visible);
  }
}

TEST_F(Form1Window, ReportsWhatNoHandlerCatches) {
  EXPECT_FALSE(RunHandler(test.program, [] {
    throw core::RunTimeError(core::ErrorNumber::kFileNotFound, "no hay fichero");
  }));
  ASSERT_EQ(test.boxes.messages.size(), 1u);
  EXPECT_EQ(test::BoxText(test.boxes.messages[0]),
            "!Se ha producido un error inesperado y el programa debe cerrarse:\r\nno hay fichero");
  EXPECT_EQ(test.shell.ends, 1);
  EXPECT_EQ(test.program.exitCode, 1);
}

// A cancelled download writes no file, shows no message box, and starts no further request.
TEST_F(Form1Window, ACancelledRequestHasNoEffect) {
  for (const bool close : {false, true}) {
    form.List1.Clear();
    form.List1.AddRow("Vals (vals)", 120);
    form.List1.Select(0);
    test.http.during = [&] {
      close ? form.Form_QueryUnload() : GiveUpRequest(test.program);
      CheckGivenUp(test.program);
    };
    EXPECT_TRUE(RunHandler(test.program, [&] {
      form.picdescargar_Click();
      ADD_FAILURE() << "the handler went on";
    }));
    EXPECT_EQ(test.shell.ends, close ? 1 : 0);
    EXPECT_TRUE(test.boxes.messages.empty());
    EXPECT_FALSE(std::filesystem::exists(test.folder / "melodias" / "vals.120"));
  }
  test.http.during = nullptr;
  EXPECT_NO_THROW(CheckGivenUp(test.program)) << "the request was given up, not the next one";
  test.program.closing = true;
  EXPECT_THROW(Request(test.program, "/"), RequestGivenUp);
}

// The melody is marked as sounding while its message box is open.
TEST_F(Form1Window, MarksTheMelodyThatSounds) {
  std::vector<Sounding> seen;
  WhileShown look([&](const core::Message&) { seen.push_back(form.sounding); });
  const core::ScopedMessageSink sink(look);
  test.folder.Write("melodias/vals.120", "Vals:d=4,o=5,b=100:c");
  form.cmdrepertorio_Click();
  form.List1.Select(0);
  form.picreproducir_Click();
  form.txtrtttlsube.text = "Vals:d=4,o=5,b=100:c";
  form.cmdscuchartttl_Click();
  form.txtcomponombremelodia.text = "x";
  form.txtmelodiacompo.text = "4c1";
  form.cmdscuchacumpo_Click();
  EXPECT_EQ(seen, (std::vector{Sounding::kRepertoire, Sounding::kRtttl, Sounding::kComposer}));
  EXPECT_EQ(form.sounding, Sounding::kNothing);
}

TEST_F(Form1Window, ListsFortyOfTheNewestMelodies) {
  form.cmdinicio_Click();
  test.http.replies.emplace_back(test::Repeated("a (a.1)498", 41));
  form.newsTimer_Timer();
  EXPECT_EQ(form.newsList.rows.size(), 40u);
}

TEST_F(Form1Window, WarnsBeyondFiftyNotes) {
  form.txtcomponombremelodia.text = "Tema";
  for (const auto& [notes, warning, verdict] :
       {std::tuple{50, "", Verdict::kGood},
        {51, "ADVERTENCIA: La melodia tiene mas de 50 notas.", Verdict::kBad}}) {
    form.txtmelodiacompo.text = test::Repeated("4c1 ", notes);
    form.txtmelodiacompo_Change();
    EXPECT_EQ(form.composerCheck.verdict, verdict);
    form.cmdscuchacumpo_Click();
    EXPECT_EQ(form.lblMsg.caption, warning);
  }
  EXPECT_EQ(test.boxes.messages.size(), 2u) << "both are played";
}

TEST_F(Form1Window, FiltersTheKeysOfTheTempoBox) {
  for (const auto& [typed, passing] : {std::pair{"12", "\b0123456789"}, {"123", "\b"}}) {
    std::string keys;
    for (std::int16_t key = 1; key < 256; ++key) {
      form.txtcompoTempo.text = typed;
      std::int16_t code = key;
      form.txtcompoTempo_KeyPress(code);
      keys += code == key ? std::string(1, static_cast<char>(key)) : "";
    }
    EXPECT_EQ(keys, passing);
  }
  EXPECT_EQ(test.shell.beeps, 244 + 254);
}

// "!" in front of a key means that it is held down.
TEST(PressKey, ActsAsThePhone) {
  for (const test::Row& row : test::Table("Keys")) {
    const std::size_t cursor = row[0].find('^');
    ComposerText text{row[0], cursor};
    text.text.erase(cursor, 1);
    bool held = false;
    for (const char key : row[1]) {
      if (key != '!') {
        text = PressKey(text, std::string_view(&key, 1), held);
      }
      held = key == '!';
    }
    text.text.insert(text.cursor, "^");
    EXPECT_EQ(text.text, row[2]) << row[0] << " " << row[1];
  }
}

}  // namespace tonadex::app::form1_test

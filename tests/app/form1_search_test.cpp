#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/form1.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "tests/support/test_program.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using Rows = std::vector<ListRow>;

const Rows kHints = {
    {std::string(u8"No se encontró ninguna melodía"_w), 0, true},
    {std::string(u8"Inténtalo de nuevo con menos palabras o quita/pon acentos."_w), 0, true}};

class Form1Search : public testing::Test {
 protected:
  void SetUp() override {
    form.Form_Load();
    form.cmdbuscar_Click();
  }

  test::TestProgram test;
  Form1 form{test.program};
};

TEST_F(Form1Search, SendsTheWordsAsTyped) {
  test.http.replies = {"solo (solo.77)498"};
  form.txtbuscar.text = u8"mi canción & más"_w;
  form.picabuscar_Click();
  EXPECT_EQ(test.http.urls,
            std::vector<std::string>{"http://servidor/listatonos.php?cadenadebusqueda=" +
                                     form.txtbuscar.text});
  EXPECT_EQ(form.List1.rows, (Rows{{"solo", 77}}));
  EXPECT_EQ(form.Text1.text + "/" + form.Text2.text + "/" + form.Text3.text, "/solo (solo)/77");
  EXPECT_EQ(test.shell.doEvents, 1);
}

TEST_F(Form1Search, PicksAtRandom) {
  test.http.replies = {"solo (solo.77)498rest"};
  form.picazar_Click();
  EXPECT_EQ(test.http.urls, std::vector<std::string>{"http://servidor/azar.php"});
  EXPECT_EQ(form.List1.rows, (Rows{{"solo (solo)", 77}}));
  EXPECT_EQ(form.Text1.text, "rest");
}

TEST_F(Form1Search, ReadsWhatText1HeldAfterAFailedRequest) {
  form.Text1.text = "Vals (vals.120)498";
  form.picabuscar_Click();
  EXPECT_EQ(form.List1.rows, (Rows{{"Vals (vals)", 120}}));
  form.picabuscar_Click();
  EXPECT_EQ(form.List1.rows, kHints);
}

TEST_F(Form1Search, GivesHintsThatCannotBeDownloaded) {
  test.http.replies = {""};
  form.picazar_Click();
  EXPECT_EQ(form.List1.rows, kHints);
  for (const int row : {-1, 0, 1}) {
    form.List1.Select(row);
    form.picdescargar_Click();
  }
  EXPECT_EQ(test.http.urls.size(), 1u);
  EXPECT_TRUE(test.boxes.messages.empty());
}

TEST_F(Form1Search, DownloadsIntoTheRepertoire) {
  test.http.replies = {"Vals (vals.28)498Mal (../mal.1)498", "Vals:d=4,o=5,b=100:cjuh9hay\n", "x"};
  form.picabuscar_Click();
  form.List1.Select(0);
  form.List1_DblClick();
  EXPECT_EQ(test.http.urls.back(), "http://servidor/tonos/vals.28");
  EXPECT_EQ(test.folder.Read("melodias/vals.28"), "Vals:d=4,o=5,b=100:cjuh9hay\r\n");
  form.List1.Select(1);
  form.picdescargar_Click();  // the name leads out of the folder
  EXPECT_EQ(test.folder.Read("mal.1"), "(none)");
  form.List1.Select(0);
  form.picdescargar_Click();  // the request fails
  EXPECT_EQ(test.folder.Read("melodias/vals.28"), "x\r\n");
  const platform::Message downloaded{
      std::string(u8"La melodía se ha bajado correctamente. Puedes verla en tu repertorio"_w),
      "Tonadex", platform::Icon::kInformation};
  EXPECT_EQ(test.boxes.messages, std::vector<platform::Message>(3, downloaded));
}

TEST_F(Form1Search, UploadsTheRtttlText) {
  form.cmdinicio_Click();
  form.lblMsg.caption = "before";
  form.txtrtttlsube.text = "Tema:d=4,o=5,b=100:c,d#,e";
  test.http.replies = {"nothing", "whatever"};
  form.cmdsubirmelortttl_Click();
  EXPECT_EQ(test.http.urls,
            (std::vector<std::string>{"http://servidor/todoslostonos.php",
                                      "http://servidor/uploadertonos.php?filename=Tema.25&contents="
                                      "Tema:d=4,o=5,b=100:c,djuh9hay,e"}));
  EXPECT_EQ(form.melodiasube, "Tema:d=4,o=5,b=100:c,djuh9hay,e");
  EXPECT_EQ(form.Text1.text, "nothing");
  EXPECT_EQ(form.lblMsg.caption, "");
  EXPECT_EQ(test.boxes.messages.size(), 1u);
}

TEST_F(Form1Search, FailsToUploadATextWithoutName) {
  form.txtrtttlsube.text = "c,d,e";
  EXPECT_THROW(form.cmdsubirmelortttl_Click(), core::RunTimeError);
  form.txtrtttlsube.text = "Tema:d=4,o=5,b=100:c";
  EXPECT_THROW(form.cmdsubirmelortttl_Click(), core::RunTimeError);  // no reply
  EXPECT_TRUE(test.boxes.messages.empty());
}

}  // namespace
}  // namespace tonadex::app

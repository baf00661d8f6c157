#include <gtest/gtest.h>

#include "app/form1.h"
#include "core/windows1252.h"
#include "platform/http/http_client.h"
#include "server/embedded_server.h"
#include "tests/support/test_program.h"
#include "tests/win32/windows_process.h"

namespace tonadex::test {
namespace {

using namespace core::literals;

// The search page over real sockets, the server in the same program as in the desktop program.
TEST(Network, SearchesDownloadsAndUploadsOverLoopback) {
  TestProgram test;
  server::EmbeddedServer embedded(test.folder / "servidor", BuildFile("share/tonadex/servidor"));
  platform::HttpClient http;
  app::Services services = test.program.services;
  app::Program program({services.registry, services.fileDialogs, services.sequencer, http,
                        services.webViews, services.RichTextBox1, services.shell},
                       embedded.BaseAddress());
  app::Form1 form(program);
  form.Form_Load();
  form.cmdbuscar_Click();
  form.txtbuscar.text = std::string(u8"cumpleaños"_w);
  form.picabuscar_Click();
  ASSERT_EQ(form.List1.rows.size(), 1U);
  EXPECT_EQ(form.List1.rows[0].text, std::string(u8"Cumpleaños Feliz (CumpleanosFeliz)"_w));
  form.List1.Select(0);
  form.picdescargar_Click();
  const std::string file = "CumpleanosFeliz." + std::to_string(form.List1.rows[0].itemData);
  EXPECT_TRUE(test.folder.Read("melodias/" + file).starts_with("Cumplea"));

  form.cmdinicio_Click();
  form.txtrtttlsube.text = "Prueba:d=4,o=5,b=125:c,8d#,e,f,g,a,b,c6,d6,e6,f6,g6";
  form.cmdsubirmelortttl_Click();
  form.cmdbuscar_Click();
  form.txtbuscar.text = "prueba";
  form.picabuscar_Click();
  ASSERT_FALSE(test.boxes.messages.empty());
  EXPECT_EQ(form.List1.rows.at(0).text, "Prueba") << test.boxes.messages.back().text;
}

}  // namespace
}  // namespace tonadex::test

#include <gtest/gtest.h>

#include "app/form1.h"
#include "platform/http/http_client.h"
#include "server/embedded_server.h"
#include "tests/support/test_program.h"
#include "tests/win32/windows_process.h"

namespace tonadex::test::network_test {

// Over real sockets, with the embedded server as in the desktop program.
TEST(Network, UploadsOverLoopbackAndFindsItAgain) {
  TestProgram test;
  server::EmbeddedServer embedded(test.folder / "servidor", BuildFile("share/tonadex/servidor"));
  platform::HttpClient http;
  app::Services services = test.program.services;
  app::Program program({services.registry, services.fileDialogs, services.sequencer, http,
                        services.newest, services.webViews, services.RichTextBox1, services.shell},
                       embedded.BaseAddress());
  app::Form1 form(program);
  form.Form_Load();
  form.cmdinicio_Click();
  form.txtrtttlsube.text = "Prueba:d=4,o=5,b=125:c,8d#,e,f,g,a,b,c6,d6,e6,f6,g6";
  form.cmdsubirmelortttl_Click();
  form.cmdbuscar_Click();
  form.txtbuscar.text = "prueba";
  form.picabuscar_Click();
  ASSERT_FALSE(test.boxes.messages.empty());
  EXPECT_EQ(form.List1.rows[0].text, "Prueba") << test.boxes.messages.back().text;
}

}  // namespace tonadex::test::network_test

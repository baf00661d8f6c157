#include <gtest/gtest.h>
#include <winsock2.h>

#include <windows.h>

#include <functional>
#include <memory>

#include "core/text.h"
#include "core/windows1252.h"
#include "tests/midi/smf_bytes.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_program.h"
#include "tests/win32/user.h"
#include "tests/win32/windows_process.h"

namespace tonadex::test::window_test {

using namespace core::literals;
using app::Form1;

constexpr wchar_t kMainClass[] = L"TonadexForm1";

// The unpacked program with a single melody in the repertoire.
class WindowTest : public testing::Test {
 protected:
  WindowTest() {
    ForgetModel();
    UnpackProgram("shell/win32/tonadex.exe", folder.path());
    std::filesystem::remove_all(folder / "melodias");
    folder.Write("melodias/prueba.33", "Prueba:d=4,o=5,b=90:c,8d#.6,2p,g");
  }
  ~WindowTest() override { ForgetModel(); }
  static void ForgetModel() {
    RegDeleteKeyA(HKEY_CLASSES_ROOT, "tonadex");
    RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\Classes\\tonadex");
  }

  void Start(const std::wstring& arguments = {}) {
    program = std::make_unique<RunningProgram>(folder / "tonadex.exe", arguments);
    window = WaitForWindow(kMainClass, program->id());
    ASSERT_NE(window, nullptr);
    const HWND splash = FindWindowW(L"TonadexInicio", nullptr);
    ASSERT_TRUE(Eventually([splash] { return IsWindow(splash) == 0; }));
    SetForegroundWindow(window);
  }
  HWND Of(app::Control Form1::*member) const { return ControlWindow(window, member); }
  bool Shows(app::Control Form1::*member) const {
    return Eventually([&] { return IsWindowVisible(Of(member)) != 0; });
  }
  bool Reads(app::Control Form1::*member, std::string_view text) const {
    return Eventually([&] { return TextIn(Of(member)) == text; });
  }
  bool ListSays(app::Control Form1::*list, UINT question, int answer) const {
    return Eventually([&] { return SendMessageW(Of(list), question, 0, 0) == answer; });
  }
  // Clicks the rows of the brand and of the number or format.
  void ChoosePhone(int brand, app::Control Form1::*list, int row) {
    Click(Of(&Form1::cmdopciones));
    ASSERT_TRUE(Shows(list));
    ClickRow(Of(&Form1::cmbmarcas), brand);
    ASSERT_TRUE(ListSays(&Form1::cmbmarcas, LB_GETCURSEL, brand));
    ClickRow(Of(list), row);
    ASSERT_TRUE(ListSays(list, LB_GETCURSEL, row));
  }
  void ChooseMelody() {
    Click(Of(&Form1::cmdrepertorio));
    ASSERT_TRUE(Shows(&Form1::textresultado));
    ClickRow(Of(&Form1::List1), 0);
    ASSERT_TRUE(ListSays(&Form1::List1, LB_GETCURSEL, 0));
  }

  TempFolder folder;
  std::unique_ptr<RunningProgram> program;
  HWND window = nullptr;
};

TEST_F(WindowTest, ConvertsForTheChosenPhoneAndKeepsItAcrossARestart) {
  Start();
  EXPECT_EQ(TextIn(Of(&Form1::phoneButton)), std::string(u8"Elige tu móvil"_w));
  ChoosePhone(0, &Form1::modelList, 0);
  ChooseMelody();
  Click(Of(&Form1::picconvertir));
  EXPECT_TRUE(
      Reads(&Form1::lbltextresult, "Melodia Prueba (prueba) para Nokia en formato de compositor."));
  EXPECT_EQ(TextIn(Of(&Form1::textresultado)), "1  4c1    8.#d2  2-     4g1 ");
  PostMessageW(window, WM_CLOSE, 0, 0);
  EXPECT_EQ(program->WaitForEnd(), 0U);

  Start();
  EXPECT_EQ(TextIn(Of(&Form1::phoneButton)), std::string(u8"Nokia 3210, 3310 …"_w));
  Click(Of(&Form1::cmdopciones));
  ASSERT_TRUE(ListSays(&Form1::modelList, LB_GETCURSEL, 0));
  // A click on the marked make lists its models again.
  ClickRow(Of(&Form1::cmbmarcas), 0);
  EXPECT_TRUE(ListSays(&Form1::formatList, LB_GETCURSEL, 0));
  Press('O', kCtrl);
  EXPECT_NE(WaitForWindow(L"#32770", program->id()), nullptr) << "opens files on each page";
}

TEST_F(WindowTest, TheGuideIsWalkedThroughByItsKeys) {
  Start();
  ChoosePhone(0, &Form1::formatList, 3);
  ChooseMelody();
  Click(Of(&Form1::picconvertir));
  ASSERT_TRUE(Eventually([&] { return IsWindowEnabled(Of(&Form1::teclearButton)) != 0; }));
  Press(VK_F5);
  ASSERT_TRUE(Shows(&Form1::stepView));
  const auto stands = [&](std::string_view at) {
    return Eventually([&] { return TextIn(Of(&Form1::stepView)).starts_with(at); });
  };
  EXPECT_TRUE(stands("1 de 4: "));
  constexpr std::pair<WORD, std::string_view> kKeys[] = {
      {VK_SPACE, "2 de 4"}, {VK_RETURN, "3 de 4"}, {VK_LEFT, "2 de 4"}, {VK_RIGHT, "3 de 4"},
      {VK_BACK, "2 de 4"},  {VK_END, "4 de 4"},    {VK_HOME, "1 de 4"}, {VK_SPACE, "2 de 4"}};
  for (const auto& [key, at] : kKeys) {
    Press(key);
    EXPECT_TRUE(stands(at)) << key << TextIn(Of(&Form1::stepView));
  }
  Click(Of(&Form1::previousGroup));
  EXPECT_TRUE(stands("1 de 4"));
  Press(VK_SPACE);
  EXPECT_TRUE(stands("2 de 4")) << "a click leaves the keys to the guide";
  Click(Of(&Form1::keypadView));
  EXPECT_TRUE(stands("3 de 4"));
  AttachThreadInput(GetCurrentThreadId(), GetWindowThreadProcessId(window, nullptr), TRUE);
  SetFocus(Of(&Form1::previousGroup));
  Press(VK_SPACE);
  EXPECT_TRUE(stands("2 de 4")) << "a focused button keeps its keys";
  Press(VK_ESCAPE);
  EXPECT_TRUE(Shows(&Form1::textresultado));
}

TEST_F(WindowTest, AClickInThePictureOfAMidiFileSelectsAVoice) {
  folder.Write("dos.mid", SmfOf({{{0, 48, 72, 1, 64}}, {{0, 96, 48, 0, 64}}}, 48));
  Start(L"\"" + (folder / "dos.mid").wstring() + L"\"");
  ASSERT_TRUE(Shows(&Form1::midiVoicesView));
  EXPECT_TRUE(Reads(&Form1::midiText, "dos:d=4,o=6,b=120:c"));
  RECT view{};
  GetClientRect(Of(&Form1::midiVoicesView), &view);
  const std::vector<app::VoiceRoll> rolls(2);
  for (const app::Shape& shape : app::VoicesPicture(rolls, 0, view.right, view.bottom)) {
    if (shape.hit == 1) {
      ClickAt(Of(&Form1::midiVoicesView), static_cast<int>(shape.box.x) + 5,
              static_cast<int>(shape.box.y) + 5);
    }
  }
  EXPECT_TRUE(Reads(&Form1::midiText, "dos:d=2,o=4,b=120:c"));
  EXPECT_TRUE(ListSays(&Form1::midiVoices, LB_GETCURSEL, 1));
}

TEST_F(WindowTest, SearchesDownloadsAndShowsTheMelodyByKeyboardAlone) {
  Start();
  Press('B', kAlt);
  ASSERT_TRUE(Shows(&Form1::txtbuscar));
  EXPECT_TRUE(std::filesystem::exists(folder / "actualiza.tdx"));
  // On Windows a Spanish keyboard types "|@#~€" here; under Wine these keys type nothing.
  for (const char digit : std::string_view("12345")) {
    Press(static_cast<WORD>(digit), kAltGr);
  }
  Type(L"cumpleaños");
  ASSERT_TRUE(Reads(&Form1::txtbuscar, u8"cumpleaños"_w)) << "AltGr is no shortcut";
  Press(VK_RETURN);
  ASSERT_TRUE(ListSays(&Form1::List1, LB_GETCOUNT, 1));
  Press(VK_DOWN);
  ASSERT_TRUE(ListSays(&Form1::List1, LB_GETCURSEL, 0));
  Press(VK_RETURN);
  EXPECT_EQ(
      AnswerBox(program->id()),
      std::string(u8"La melodía se ha bajado correctamente. Puedes verla en tu repertorio"_w));
  Press('R', kAlt);
  ASSERT_TRUE(Shows(&Form1::textresultado));
  EXPECT_TRUE(ListSays(&Form1::List1, LB_GETCOUNT, 2));
  Press('I', kAlt);
  ASSERT_TRUE(Shows(&Form1::txtrtttlsube));
  Press('X', kAlt);  // the mnemonic of its label
  Type(L"Vals");
  EXPECT_TRUE(Reads(&Form1::txtrtttlsube, "Vals"));
  Press('4', kCtrl);
  EXPECT_TRUE(Shows(&Form1::WebBrowser1));
  Press(VK_F1);
  EXPECT_NE(WaitForWindow(L"TonadexAyuda", program->id()), nullptr);
}

// What the window adds to the model: keys and the menu.
TEST_F(WindowTest, TheRepertoireIsKeptInOrder) {
  folder.Write("melodias/aire.20", "Aire:d=4,o=5,b=60:c,g");
  Start();
  Press('3', kCtrl);
  ASSERT_TRUE(Shows(&Form1::textresultado));
  const auto list = [&](UINT question, int answer) {
    return ListSays(&Form1::List1, question, answer);
  };
  Type(L"a");
  ASSERT_TRUE(list(LB_GETCURSEL, 0));
  Press(VK_F10, {VK_SHIFT});
  ASSERT_NE(WaitForWindow(L"#32768", program->id()), nullptr);
  Press('D');
  EXPECT_TRUE(list(LB_GETCOUNT, 3));
  for (const int next : {1, 0}) {
    Sleep(1'100);  // what is typed after a second begins anew
    Type(L"a");
    EXPECT_TRUE(list(LB_GETCURSEL, next));
  }
  Press(VK_F2);
  ASSERT_TRUE(Shows(&Form1::entryBox));
  Press(VK_ESCAPE);
  ASSERT_TRUE(Eventually([&] { return !IsWindowVisible(Of(&Form1::entryBox)); }));
  Press(VK_F2);
  ASSERT_TRUE(Reads(&Form1::entryBox, "Aire 2"));
  Type(L"Zambra");
  ASSERT_TRUE(Reads(&Form1::entryBox, "Zambra"));
  Press(VK_RETURN);
  EXPECT_TRUE(list(LB_GETCURSEL, 2));
  Press(VK_DELETE);
  EXPECT_TRUE(list(LB_GETCURSEL, 1));
  Press('F', kCtrl);
  Type(L"ai");
  EXPECT_TRUE(list(LB_GETCOUNT, 1));
}

// Accepts connections and never answers.
struct MuteServer {
  MuteServer() {
    WSADATA data{};
    WSAStartup(MAKEWORD(2, 2), &data);
    const SOCKET listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);  // until the tests end
    sockaddr_in place{};
    place.sin_family = AF_INET;
    place.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof place;
    bind(listener, reinterpret_cast<const sockaddr*>(&place), size);
    listen(listener, SOMAXCONN);
    getsockname(listener, reinterpret_cast<sockaddr*>(&place), &size);
    argument = L"--servidor http://127.0.0.1:" + std::to_wstring(ntohs(place.sin_port));
  }
  std::wstring argument;
};

class GivingUp : public WindowTest {
 protected:
  bool Waits(bool still = true) const {
    return Eventually([&] { return (IsWindowVisible(Of(&Form1::waitingLine)) != 0) == still; });
  }
  void Search() {
    Press('B', kAlt);
    ASSERT_TRUE(Shows(&Form1::txtbuscar));
    Press(VK_RETURN);
    ASSERT_TRUE(Waits());
  }
  MuteServer server;
};

TEST_F(GivingUp, EscEndsARequestThatTheWindowShows) {
  Start(server.argument);
  Search();
  EXPECT_TRUE(Eventually([&] {
    RECT line{};
    return GetClientRect(Of(&Form1::waitingLine), &line) != 0 && line.bottom > 12;
  })) << "room for its words";
  Press(VK_ESCAPE);
  EXPECT_TRUE(Waits(false));
  EXPECT_NE(IsWindowEnabled(window), 0) << "there is nothing to say";
}

TEST_F(GivingUp, AWindowClosedMeanwhileCloses) {
  const std::pair<const char*, std::function<void()>> ways[] = {
      {"Alt+F4", [] { Press(VK_F4, kAlt); }},
      {"the task manager", [this] { PostMessageW(window, WM_CLOSE, 0, 0); }},
      {"the end of the session",
       [this] { EXPECT_NE(SendMessageW(window, WM_QUERYENDSESSION, 0, 0), 0); }}};
  for (const auto& [name, close] : ways) {
    SCOPED_TRACE(name);
    Start(server.argument);
    Search();
    close();
    EXPECT_EQ(program->WaitForEnd(), 0U);
  }
}

TEST_F(WindowTest, PlaysWhileItsBarIsUp) {
  Start();
  ChooseMelody();
  for (const WORD key : {WORD{VK_RETURN}, WORD{VK_ESCAPE}, WORD{VK_SPACE}}) {
    Click(Of(&Form1::picreproducir));
    ASSERT_TRUE(Shows(&Form1::stopButton));
    EXPECT_EQ(TextIn(Of(&Form1::playingText)), "Reproduciendo melodia: Prueba");
    Click(Of(&Form1::cmdinicio));  // ignored while a message box is open
    EXPECT_TRUE(Shows(&Form1::picreproducir));
    Press(key);
    EXPECT_TRUE(Eventually([&] { return IsWindowVisible(Of(&Form1::stopButton)) == 0; }));
  }
  EXPECT_TRUE(std::filesystem::exists(std::filesystem::temp_directory_path() / "rtlTmpFile.mid"));
}

TEST_F(WindowTest, TheWindowsPlaceOutlivesAKilledProgram) {
  Start();
  SetWindowPos(window, nullptr, 20, 10, 1010, 710, SWP_NOZORDER);
  ASSERT_TRUE(Eventually([&] {
    return core::Contains(folder.Read("estado.ini"), "20 10 1010 710");
  })) << folder.Read("estado.ini");
  program.reset();  // kills it

  Start();
  RECT place{};
  GetWindowRect(window, &place);
  EXPECT_EQ(place.left, 20);
  EXPECT_EQ(place.right, 20 + 1010);
}

TEST_F(WindowTest, TheTempoBoxTakesThreeDigitsAndNothingElse) {
  Start();
  Click(Of(&Form1::cmdinicio));
  ASSERT_TRUE(Shows(&Form1::txtcompoTempo));
  ClickAt(Of(&Form1::txtcompoTempo), 12, 10);
  Press(VK_END);
  for (int i = 0; i < 3; ++i) {
    Press(VK_BACK);
  }
  Type(L"1x2ñ34");
  EXPECT_TRUE(Reads(&Form1::txtcompoTempo, "123")) << TextIn(Of(&Form1::txtcompoTempo));
}

TEST_F(WindowTest, AnUnhandledErrorIsReportedAndEndsTheProgram) {
  Start();
  ChooseMelody();
  std::filesystem::remove(folder / "melodias/prueba.33");
  Click(Of(&Form1::picreproducir));
  EXPECT_TRUE(AnswerBox(program->id())
                  .starts_with("Se ha producido un error inesperado y el programa debe cerrarse:"));
  EXPECT_EQ(program->WaitForEnd(), 1U);
}

}  // namespace tonadex::test::window_test

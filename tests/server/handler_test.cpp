#include "server/handler.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

#include "app/look.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "net/addresses.h"
#include "net/upload.h"
#include "server/embedded_file.h"
#include "server/pages.h"
#include "server/shelf.h"
#include "tests/core/table.h"
#include "tests/server/ask.h"
#include "tests/support/temp_folder.h"

namespace tonadex::server::handler_test {

using namespace core::literals;
using std::string;
using test::Joined;
using test::TempFolder;

TEST(Handle, Answers) {
  for (const test::Row& row : test::Table("Targets")) {
    SCOPED_TRACE(row[0]);
    const TempFolder folder;
    folder.Write("secreto.12", "outside");
    folder.Write("servidor/vals.120", "Vals:d=4,o=5,b=63:c");
    folder.Write("servidor/anil.8", string(u8"Añil:d=4"_w));
    folder.Write("servidor/.candado", "");
    const auto now = std::filesystem::last_write_time(folder / "servidor/anil.8");
    std::filesystem::last_write_time(folder / "servidor/vals.120", now - std::chrono::hours(1));
    Shelf shelf(folder / "servidor", ShelfAccess::kReadWrite);
    for (const std::string_view target : core::SplitText(row[0], ' ')) {
      const Reply reply = Handle({core::FromUtf8(target), "client", {}, 1}, shelf);
      EXPECT_EQ(std::to_string(reply.status), row[1]) << target;
      EXPECT_EQ(core::ToUtf8(Joined(reply.body)), row[2]) << target;
      EXPECT_EQ(reply.contentType, kTextType);
      EXPECT_EQ(std::to_string(reply.maxAgeSeconds), row[3].empty() ? "0" : row[3]) << target;
    }
  }
}

// As the programs send it: only what would break the request line is escaped.
string AsTyped(const string& text) {
  string sent = text;
  return core::ReplaceAll(sent, " ", "%20");
}

// As a browser sends it.
string Encoded(const string& text) {
  string encoded;
  for (const char c : text) {
    std::array<char, 16> escape{};
    std::snprintf(escape.data(), escape.size(), "%%%02X", unsigned(core::Code(c)));
    encoded +=
        core::IsDigit(c) || c == '.' || (c >= 'a' && c <= 'z') ? string(1, c) : escape.data();
  }
  return encoded;
}

TEST(Handle, TakesAndGivesNamesAsTypedOrEncoded) {
  for (const char* sent : {"Mi téma", "100%de rebaja", "Oferta%", "a%20b"}) {
    const string name = core::FromUtf8(sent);
    const string text = name + ":d=4,o=5,b=100:c,djuh9hay,e";
    const string key = net::UploadKey(name, name + ":d=4,o=5,b=100:c,d#,e");
    for (const auto& write : {AsTyped, Encoded}) {
      const TempFolder folder;
      Shelf shelf(folder.path(), ShelfAccess::kReadWrite);
      const auto get = [&](const string& target) {
        return Handle({target, "client", {}, 1}, shelf);
      };
      const string upload = net::UploadAddress(write(key), write(text));
      EXPECT_EQ(Joined(get(upload).body), u8"La melodía está en el servidor. ¡Gracias!"_w)
          << upload;
      EXPECT_EQ(folder.Read(files::PathFromText(key)), text);
      EXPECT_EQ(get(upload).status, 409);
      for (const auto& ask : {AsTyped, Encoded}) {
        EXPECT_EQ(Joined(get(net::MelodyAddress(ask(key))).body), text) << ask(key);
        EXPECT_EQ(Joined(get(net::SearchAddress(ask(name))).body), name + " (" + key + ")498");
      }
    }
  }
}

struct EmptyShelf : testing::Test {
  Reply Ask(const string& target, bool post = false, const std::function<bool()>& abandoned = {}) {
    return Handle({target, "client", {}, 1, abandoned, post}, shelf);
  }
  const TempFolder folder;
  Shelf shelf{folder.path(), ShelfAccess::kReadOnly};
};

TEST_F(EmptyShelf, TakesNoBodyOutsideTheInterface) {
  for (const char* target : {"/", "/azar.php", "/tonos/x.1", "/api"}) {
    EXPECT_EQ(Ask(target, true).status, 405) << target;
  }
}

TEST_F(EmptyShelf, StopsASearchThatNobodyWaitsFor) {
  EXPECT_EQ(Ask("/listatonos.php", false, [] { return false; }).status, 200);
  EXPECT_EQ(Ask("/listatonos.php", false, [] { return true; }).status, 503);
}

TEST_F(EmptyShelf, HasPagesThatMayBeKeptForAMinute) {
  for (const char* page : {"/banners.php", "/mini906.php", "/mini.php?version=1"}) {
    EXPECT_EQ(Ask(page).maxAgeSeconds, 60) << page;
    EXPECT_EQ(Ask(page).contentType, kHtmlType) << page;
  }
}

TEST(UndoEscapes, KeepsWhatIsNoEscape) {
  EXPECT_EQ(UndoEscapes("%41%4a%4A%zz%4%%34%1g%"), "AJJ%zz%4%4%1g%");
}

TEST(Pages, EscapeWhatComesFromOutside) {
  const TempFolder folder;
  folder.Write("x.1", "<b>&\"x\":d=4");
  const Shelf shelf(folder.path(), ShelfAccess::kReadOnly);
  for (const string& page : {StartPage(shelf, "<i>9"), InternetPage(shelf)}) {
    EXPECT_NE(page.find("<li>&lt;b&gt;&amp;&quot;x&quot;</li>"), page.npos);
    EXPECT_EQ(page.find("<i>"), page.npos);
    EXPECT_TRUE(core::IsUtf8(page));
    EXPECT_EQ(page.find("http"), page.npos);  // no external resources
  }
  EXPECT_NE(StartPage(shelf, "").find("1 melodía en el servidor"), string::npos);
  EXPECT_NE(BannerPage(shelf).find("1 melodía<"), string::npos);
  for (int i = 0; i < 1234; ++i) {
    folder.Write(std::to_string(i) + ".1", "x");
  }
  const Shelf large(folder.path(), ShelfAccess::kReadOnly);
  EXPECT_NE(BannerPage(large).find("1.235 melodías<"), string::npos) << BannerPage(large);
}

// Colours and font size are those of the window that contains the pages.
TEST_F(EmptyShelf, HasPagesThatLookAsTheWindowDoes) {
  namespace look = app::look;
  const string page = StartPage(shelf, "");
  const auto code = [](look::Rgb colour) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "#%06x", colour);
    return string(text.data());
  };
  for (const auto& c :
       {look::MixColours(look::kLightGrounds, look::kLightTones, look::kLightShares, code),
        look::MixColours(look::kDarkGrounds, look::kDarkTones, look::kDarkShares, code)}) {
    for (const string& colour :
         {c.window, c.card, c.text, c.muted, c.accent, c.border, c.displayGround, c.displayInk}) {
      EXPECT_TRUE(core::Contains(page, colour)) << colour;
      EXPECT_TRUE(core::Contains(EmbeddedFile("pagina.css"), colour)) << colour;
    }
    EXPECT_TRUE(core::Contains(EmbeddedFile("pagina.css"), c.accentWash)) << c.accentWash;
  }
  for (const int pixels : {look::kType[0], look::kType[2], look::kType[3]}) {
    EXPECT_TRUE(core::Contains(page, std::to_string(pixels) + "px")) << pixels;
  }
  EXPECT_TRUE(
      core::Contains(BannerPage(shelf), "height: " + std::to_string(look::kBannerHeight) + "px"));
}

TEST_F(EmptyShelf, SaysWhetherTheVersionIsCurrent) {
  for (test::Row row : test::Table("Versions")) {
    for (string& field : row.fields) {
      core::ReplaceAll(field, "%", TONADEX_VERSION);
    }
    EXPECT_NE(StartPage(shelf, row[0]).find(row[1]), string::npos) << row[0];
  }
}

}  // namespace tonadex::server::handler_test

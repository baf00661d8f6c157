#include "server/handler.h"

#include <gtest/gtest.h>

#include <string>

#include "core/windows1252.h"
#include "server/pages.h"
#include "tests/core/table.h"
#include "tests/server/ask.h"
#include "tests/support/temp_folder.h"

namespace tonadex::server {
namespace {

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
    const Reply reply = Handle({core::FromUtf8(row[0]), "client", {}, 1}, shelf);
    EXPECT_EQ(std::to_string(reply.status), row[1]);
    EXPECT_EQ(core::ToUtf8(Joined(reply.body)), row[2]);
    EXPECT_EQ(reply.contentType, kTextType);
  }
}

TEST(Handle, StoresWhatIsUploaded) {
  const TempFolder folder;
  Shelf shelf(folder.path(), ShelfAccess::kReadWrite);
  const string target =
      "/uploadertonos.php?filename=Mi%20t\xE9ma%25.29&contents=Mi%20t\xE9ma%25:d=4,o=5,b=100:c,"
      "djuh9hay,e";
  EXPECT_EQ(Joined(Handle({target, "client", {}, 1}, shelf).body),
            u8"La melodía está en el servidor. ¡Gracias!"_w);
  const string stored = string(u8"Mi téma%:d=4,o=5,b=100:c,djuh9hay,e"_w);
  EXPECT_EQ(folder.Read(u8"Mi téma%.29"), stored);
  EXPECT_EQ(Joined(Handle({"/tonos/Mi%20t\xE9ma%.29", "client", {}, 1}, shelf).body), stored);
  EXPECT_EQ(Handle({target, "client", {}, 1}, shelf).status, 409);
}

TEST(Handle, StopsASearchThatNobodyWaitsFor) {
  const TempFolder folder;
  Shelf shelf(folder.path(), ShelfAccess::kReadOnly);
  for (const bool gone : {false, true}) {
    EXPECT_EQ(Handle({"/listatonos.php", "client", {}, 1, [&] { return gone; }}, shelf).status,
              gone ? 503 : 200);
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
    EXPECT_EQ(page.find("http"), page.npos);  // nothing from elsewhere
  }
  EXPECT_NE(StartPage(shelf, "").find("1 melodía en el servidor"), string::npos);
  EXPECT_NE(BannerPage(shelf).find("1 melodía<"), string::npos);
  for (int i = 0; i < 1234; ++i) {
    folder.Write(std::to_string(i) + ".1", "x");
  }
  const Shelf large(folder.path(), ShelfAccess::kReadOnly);
  EXPECT_NE(BannerPage(large).find("1.235 melodías<"), string::npos) << BannerPage(large);
}

TEST(StartPage, SaysWhetherTheVersionIsCurrent) {
  const TempFolder folder;
  const Shelf shelf(folder.path(), ShelfAccess::kReadOnly);
  for (test::Row row : test::Table("Versions")) {
    for (string& field : row.fields) {
      core::ReplaceAll(field, "%", TONADEX_VERSION);
    }
    EXPECT_NE(StartPage(shelf, row[0]).find(row[1]), string::npos) << row[0];
  }
}

}  // namespace
}  // namespace tonadex::server

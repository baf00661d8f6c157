// Every format offered by the dialog can be saved; all except sound and sheet can be opened again.
#include "app/save_melody.h"

#include <gtest/gtest.h>

#include <set>

#include "core/text.h"
#include "files/paths.h"
#include "import/open_melody.h"
#include "phones/catalogue.h"
#include "tests/core/test_melody.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tonadex::app::save_melody_test {

// Long enough that its keys are valid for only one make.
constexpr std::string_view kMelody =
    "Un vals muy largo:d=4,o=5,b=113:8c#,2d6,8e,p,16f#7,16g,8a,c6,2b,8p,d,8e6,f";

// The extension in an offered kind, "RTTTL (*.rtttl)".
std::string ExtensionIn(std::string_view kind) {
  const std::size_t at = kind.rfind("(*.") + 3;
  return std::string(kind.substr(at, kind.size() - at - 1));
}

TEST(SaveMelodyAs, WritesEachKindForPhonesOfEachFormat) {
  std::set<std::string_view> codes;
  for (const phones::CatalogueRow& phone : phones::CatalogueRows()) {
    if (!codes.insert(phone.code).second) {
      continue;
    }
    const test::Boxes boxes;
    const test::TempFolder folder;
    test::FakeFileDialogs dialogs;
    SaveMelodyAs(dialogs, kMelody, phone.model);  // cancelled
    const std::vector<std::string> kinds = dialogs.offered;
    EXPECT_GE(kinds.size(), 10u) << phone.model;
    EXPECT_EQ(dialogs.proposed.back(), "Un vals muy largo." + ExtensionIn(kinds.front()));
    std::set<std::string> extensions;
    for (std::size_t i = 0; i < kinds.size(); ++i) {
      const std::string extension = ExtensionIn(kinds[i]);
      SCOPED_TRACE(testing::Message() << phone.model << " " << kinds[i]);
      EXPECT_TRUE(extensions.insert(extension).second) << "two kinds of one extension";
      // A typed name, one that ends in a dot, and the proposed name, which keeps its own.
      const std::string name = "m" + std::to_string(i);
      const std::size_t way = extension == "txt" ? 1 + i % 2 : i % 3;
      dialogs.chosen = way == 0 ? 0 : i;
      dialogs.answers = {
          files::TextFromPath(folder / (name + (way == 0   ? "." + extension
                                                : way == 1 ? ". "
                                                           : "." + ExtensionIn(kinds.front()))))};
      SaveMelodyAs(dialogs, kMelody, phone.model);
      const std::string bytes = folder.Read(name + "." + extension);
      if (extension == "pdf" || extension == "wav") {
        EXPECT_TRUE(bytes.starts_with(extension == "pdf" ? "%PDF" : "RIFF"));
      } else {
        EXPECT_EQ(import::OpenMelodyFile(bytes, "x").melodies.size(), 1u);
      }
    }
    EXPECT_NE(boxes.Text().find("El tempo 113 no existe"), std::string::npos);
  }
}

TEST(SaveMelodyAs, ReplacesNoFileThatTheDialogDidNotAskAbout) {
  const test::Boxes boxes;
  const test::TempFolder folder;
  test::FakeFileDialogs dialogs;
  folder.Write("m.rtttl", "mine");
  dialogs.answers = {files::TextFromPath(folder / "m"), files::TextFromPath(folder / "m.rtttl")};
  SaveMelodyAs(dialogs, kMelody, "");
  EXPECT_EQ(folder.Read("m.rtttl") + folder.Read("m 2.rtttl"), "mine" + std::string(kMelody));
  EXPECT_EQ(boxes.Text(), "iYa había un fichero con ese nombre. Se ha guardado como m 2.rtttl.");
  SaveMelodyAs(dialogs, kMelody, "");
  EXPECT_EQ(folder.Read("m.rtttl"), kMelody);
}

}  // namespace tonadex::app::save_melody_test

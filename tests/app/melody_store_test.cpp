#include "app/melody_store.h"

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "tests/core/table.h"
#include "tests/support/temp_folder.h"
#ifndef _WIN32
#include "tests/support/full_disk.h"
#endif

namespace tonadex::app::melody_store_test {

struct Store : testing::Test {
  // The melodies of the folder, in UTF-8, as "file=text;".
  std::string Held(const char* name = "m") const {
    std::map<std::string, std::string> held;
    std::error_code none;
    for (const auto& file : std::filesystem::directory_iterator(folder / name, none)) {
      const std::string text = core::UndoSharpEscape(files::ReadMelodyLine(file.path()));
      held[core::ToUtf8(files::TextFromPath(file.path().filename()))] = core::ToUtf8(text);
    }
    std::string all;
    for (const auto& [file, text] : held) {
      all.append(file).append("=").append(text).append(";");
    }
    return all;
  }
  // Why the step is refused, in UTF-8; "" if it is accepted.
  template <typename Step>
  static std::string Refusal(Step step) {
    try {
      step();
    } catch (const core::RunTimeError& error) {
      return core::ToUtf8(error.what());
    }
    return {};
  }

  const test::TempFolder folder;
  const MelodyStore store{folder / "m", folder / "bin"};
};

// Each saved file can be opened by its row, and saving a melody again creates no second file.
TEST_F(Store, SavesUnderNameAndLength) {
  for (const test::Row& row : test::Table("Saved melodies")) {
    const std::string text = core::FromUtf8(row[0]);
    std::string file;
    const std::string refusal = Refusal([&] { file = store.Save(text); });
    EXPECT_EQ(refusal.empty() ? core::ToUtf8(file) : refusal, row[1]) << row[0];
    if (refusal.empty()) {
      const core::MelodyRow listed = core::RepertoireRow(text, file);
      EXPECT_EQ(core::MelodyFileName(listed.text, listed.number), file);
      EXPECT_EQ(store.Save(text + "\r\nmore"), file);
    }
  }
}

TEST_F(Store, ReplacesNoOtherMelody) {
  const std::string one = "Vals:d=4,o=5,b=90:c#,d", other = "Vals:d=4,o=5,b=90:e#,f";
  EXPECT_EQ(store.Save(one), "Vals.22");
  EXPECT_EQ(store.Save(other), "Vals 2.22");
  EXPECT_EQ(store.Duplicate("Vals.22"), "Vals 2.24");
  EXPECT_EQ(store.Duplicate("Vals.22"), "Vals 3.24");
  EXPECT_EQ(store.Duplicate("Vals.22", -12), "Vals -12.26");
  EXPECT_EQ(store.Rename("Vals 2.22", "Vals"), "Vals 2.22") << "it has this name already";
  const std::string before = Held();
  EXPECT_EQ(before, "Vals -12.26=Vals -12:d=4,o=4,b=90:c#,d;Vals 2.22=" + other +
                        ";Vals 2.24=Vals 2:d=4,o=5,b=90:c#,d;Vals 3.24=Vals 3:d=4,o=5,b=90:c#,d;"
                        "Vals.22=" +
                        one + ";");
  EXPECT_EQ(store.Restore(store.Delete("Vals.22"), "Vals.22"), "Vals.22");
  EXPECT_EQ(Held(), before);
  const auto binned = store.Delete("Vals.22");
  EXPECT_EQ(store.Save(other), "Vals 2.22") << "it is there already";
  folder.Write("m/Vals.22", other);
  EXPECT_EQ(store.Restore(binned, "Vals.22"), "Vals 3.22");
  EXPECT_EQ(store.Rename("Vals 3.24", "Vals 2"), "Vals 2 2.24") << "an equal one stays";
}

TEST_F(Store, RenamesMelodyAndFile) {
  const std::string rest = ":d=4,o=5,b=90:c#,d";
  std::string file = store.Save("Vals" + rest);
  for (const char* name : {"vals", " Mi \"niño\" ", "AC/DC", "L'été"}) {
    file = store.Rename(file, core::FromUtf8(name));
    EXPECT_EQ(files::ReadMelodyLine(folder / "m" / files::PathFromText(file)),
              std::string(core::Trim(core::FromUtf8(name))) + ":d=4,o=5,b=90:cjuh9hay,d");
  }
  EXPECT_EQ(Held(), "L'été.23=L'été" + rest + ";");
  EXPECT_EQ(Refusal([&] { store.Rename(file, " "); }), "la melodía necesita un nombre");
  EXPECT_EQ(Refusal([&] { store.Rename(file, "a:b"); }), "el nombre no puede llevar puntos ni «:»");
  EXPECT_EQ(Refusal([&] { store.Rename("gone.1", "a"); }), "el fichero ya no se puede leer");
}

TEST_F(Store, AddsTheMelodiesOfFilesOfAnyFormat) {
  folder.Write(u8"Añejo.txt", "Sr. Vals:d=4,o=5,b=90:c\r\n\r\nPolca: d=4,o=5,b=90:cjuh9hay\n");
  folder.Write("carta.txt", "Querida Ana: te escribo: hoy");
  folder.Write("Mi (vals).imy", "BEGIN:IMELODY\nBEAT:90\nMELODY:c2*5d3\nEND:IMELODY");
  const std::vector files{folder / "carta.txt", folder / u8"Añejo.txt", folder / "gone",
                          folder / "Mi (vals).imy"};
  MelodyStore::Added added;
  store.Add(files, added);
  EXPECT_EQ(added.last, "Mi vals.26");
  EXPECT_EQ(core::ToUtf8(added.refused),
            "\r\ncarta.txt: no se reconoce ninguna melodía."
            "\r\ngone: no se puede leer o pasa de 16 MiB.");
  EXPECT_TRUE(
      core::ToUtf8(added.remarks).starts_with("\r\nAñejo.txt: El nombre pasa a «Sr Vals»."));
  EXPECT_EQ(Held(),
            "Mi vals.26=Mi vals:d=4,o=5,b=90:c,8d6;Polca.21=Polca:d=4,o=5,b=90:c#;"
            "Sr Vals.22=Sr Vals:d=4,o=5,b=90:c;");
}

#ifndef _WIN32
TEST_F(Store, LosesNothingOnAFullDisk) {
  store.Save("Vals:d=4,o=5,b=90:c");
  const std::string before = Held();
  {
    const test::FullDisk full(4);
    for (const auto& refusal : {Refusal([&] { store.Save("Polca:d=4,o=5,b=90:c"); }),
                                Refusal([&] { store.Rename("Vals.19", "Polca"); }),
                                Refusal([&] { store.Rename("Vals.19", "vALS"); }),
                                Refusal([&] { store.Duplicate("Vals.19", 1); })}) {
      EXPECT_TRUE(refusal.starts_with("no se puede escribir")) << refusal;
    }
    EXPECT_EQ(Held(), before);
    store.Delete("Vals.19");  // moving needs no space
  }
  EXPECT_EQ(Held("bin"), before);
}
#endif

// If the bin cannot be written, no file leaves the folder.
TEST_F(Store, KeepsWhatCannotGoToTheBin) {
  folder.Write("bin", "a file");
  store.Save("Vals:d=4,o=5,b=90:c");
  const std::string before = Held();
  EXPECT_NE(Refusal([&] { store.Delete("Vals.19"); }), "");
  EXPECT_NE(Refusal([&] { store.Rename("Vals.19", "Polca"); }), "");
  EXPECT_EQ(Held(), before);
}

}  // namespace tonadex::app::melody_store_test

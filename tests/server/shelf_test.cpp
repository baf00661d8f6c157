#include "server/shelf.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>

#include "core/windows1252.h"
#include "server/file_system.h"
#include "tests/core/table.h"
#include "tests/server/ask.h"
#include "tests/support/parsed_listing.h"
#include "tests/support/temp_folder.h"

namespace tonadex::server::shelf_test {

using namespace core::literals;
using std::string;
using test::Joined;
using test::TempFolder;
namespace fs = std::filesystem;

constexpr Clock::time_point kNow{};
const string kTema = "Tema:d=4,o=5,b=100:c,djuh9hay,e";

TEST(Shelf, ServesWhatTheFolderHoldsNewestFirst) {
  const TempFolder folder;
  const auto now = fs::file_time_type::clock::now();
  for (const test::Row& row : test::Table("Shelf")) {
    folder.Write(row[0], row[1]);
    fs::last_write_time(folder / row[0], now - std::chrono::hours(std::stoi(row[2])));
  }
  const Shelf shelf(folder.path(), ShelfAccess::kReadOnly);
  const string nandu = string(u8"Ñandú (Ñandú.7)498"_w);
  EXPECT_EQ(shelf.size(), 4u);
  EXPECT_EQ(shelf.Search(""),
            "Vals (vals.120)498empty (empty.0)498" + nandu + "Antigua (old.10)498");
  EXPECT_EQ(Joined(shelf.FullListing()),
            "Antigua (old.10)498" + nandu + "empty (empty.0)498Vals (vals.120)498");
  for (const test::Row& row : test::Table("Shelf")) {
    const auto melody = shelf.Melody(core::FromUtf8(row[0]));
    EXPECT_EQ(melody.value_or("none"), row[3] == "served" ? row[1] : "none") << row[0];
  }
  for (const char* none : {"deep.12", "../vals.120", "x.1", ""}) {
    EXPECT_EQ(shelf.Melody(none), std::nullopt) << none;
  }
}

TEST(Shelf, ServesWholeFilesOfItsFolderAlone) {
  const TempFolder folder, outside;
  outside.Write("secreto.12", "outside");
  folder.Write("longest.1", string(kMaxFileBytes, 'x'));
  folder.Write("longer.1", string(kMaxFileBytes + 1, 'x'));
  fs::create_symlink(outside / "secreto.12", folder / "link.12");
  const Shelf shelf(folder.path(), ShelfAccess::kReadOnly);
  EXPECT_EQ(shelf.size(), 1u);
  EXPECT_EQ(shelf.Melody("longest.1")->size(), kMaxFileBytes);
  for (const char* none : {"longer.1", "link.12"}) {
    EXPECT_FALSE(shelf.Melody(none)) << none;
  }
}

TEST(Shelf, PicksDifferentMelodiesAtRandom) {
  const TempFolder folder;
  for (int i = 0; i < 30; ++i) {
    folder.Write(std::to_string(i) + ".1", "x");
  }
  const Shelf shelf(folder.path(), ShelfAccess::kReadOnly);
  std::set<string> seen;
  for (std::uint64_t seed = 0; seed < 40; ++seed) {
    std::set<string> pick;
    for (const net::ListingRow& row : net::ParseListing(shelf.Random(seed), false).rows) {
      pick.insert(row.text);
    }
    EXPECT_EQ(pick.size(), kRandomRecords);
    seen.merge(pick);
  }
  EXPECT_EQ(seen.size(), 30u);
  EXPECT_EQ(shelf.Random(1), shelf.Random(1));
}

TEST(ShelfUpload, StoresAsSentAndNeverOverwrites) {
  const TempFolder folder;
  folder.Write("Otra.24", "by hand");
  {
    Shelf shelf(folder.path(), ShelfAccess::kReadWrite);
    EXPECT_EQ(shelf.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kStored);
    EXPECT_EQ(Joined(shelf.FullListing()), "Otra (Otra.24)498Tema (Tema.25)498");
    for (const auto& [name, text] : {std::pair{"Tema.25", "Tema:d=4,o=5,b=100:c,djuh9hay,f"},
                                     {"Otra.24", "Otra:d=4,o=5,b=100:c,d,e"}}) {
      EXPECT_EQ(shelf.Upload(name, text, "a", kNow).result, UploadResult::kExists);
    }
    EXPECT_EQ(shelf.size(), 2u);
  }
  EXPECT_EQ(folder.Read("Tema.25") + folder.Read("Otra.24"), kTema + "by hand");
  const auto files = fs::directory_iterator(folder.path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 3);  // the stored index is the third
  EXPECT_EQ(Shelf(folder.path(), ShelfAccess::kReadOnly).Search("tema"), "Tema (Tema.25)498");
}

TEST(ShelfUpload, SaysWhyNothingWasStored) {
  const TempFolder folder, gone;
  Shelf reader(folder.path(), ShelfAccess::kReadOnly);
  EXPECT_EQ(reader.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kReadOnly);
  Shelf strict(folder.path(), ShelfAccess::kReadWrite, 1);
  EXPECT_EQ(strict.Upload("bad", "", "a", kNow).result, UploadResult::kRefused);
  EXPECT_EQ(strict.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kTooMany);
  EXPECT_EQ(strict.Upload("Tema.25", kTema, "b", kNow).result, UploadResult::kStored);
  Shelf lost(gone.path(), ShelfAccess::kReadWrite);
  fs::remove_all(gone.path());
  EXPECT_EQ(lost.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kDiskFailure);
  EXPECT_EQ(lost.size(), 0u);
  fs::create_directory(gone.path());
  EXPECT_EQ(lost.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kStored);
}

TEST(ShelfReload, FindsWhatCameAndWentByHand) {
  const TempFolder folder;
  folder.Write("vals.29", "Vals:d=4");
  Shelf shelf(folder.path(), ShelfAccess::kReadWrite);
  EXPECT_EQ(Joined(shelf.FullListing()), "Vals (vals.29)498");
  fs::rename(folder / "vals.29", folder / "jota.29");
  shelf.Reload();
  EXPECT_EQ(Joined(shelf.FullListing()), "Vals (jota.29)498");
  EXPECT_EQ(shelf.Search("vals"), "Vals (jota.29)498");
  folder.Write("seguidilla.29", "Seguidilla:d=4");
  std::stop_source stop;
  stop.request_stop();
  EXPECT_FALSE(shelf.Reload(stop.get_token()));
  EXPECT_EQ(shelf.size(), 1u);
  fs::remove_all(folder.path());
  EXPECT_THROW(shelf.Reload(), fs::filesystem_error);
  EXPECT_EQ(shelf.size(), 1u);
}

TEST(FillEmptyShelf, FillsOnceAndGoesOnAfterAnInterruption) {
  const TempFolder source, parent;
  source.Write("uno.10", "Uno:d=4");
  source.Write("dos.20", "Dos:d=4");
  source.Write("notas.txt", "no");
  const fs::path folder = parent / "servidor";
  FillEmptyShelf(folder, source.path());
  EXPECT_EQ(parent.Read("servidor/uno.10"), "Uno:d=4");
  EXPECT_EQ(parent.Read("servidor/dos.20"), "Dos:d=4");
  EXPECT_FALSE(fs::exists(folder / "notas.txt"));
  fs::remove(folder / "uno.10");
  FillEmptyShelf(folder, source.path());  // deleted melodies are not restored
  EXPECT_FALSE(fs::exists(folder / "uno.10"));
  parent.Write("servidor/.llenando", "");
  parent.Write("servidor/dos.20", "changed");
  FillEmptyShelf(folder, source.path());
  EXPECT_EQ(parent.Read("servidor/uno.10"), "Uno:d=4");
  EXPECT_EQ(parent.Read("servidor/dos.20"), "changed");
  EXPECT_FALSE(fs::exists(folder / ".llenando"));
  FillEmptyShelf(parent / "leer", "");  // no installed melodies
  EXPECT_TRUE(fs::is_directory(parent / "leer"));
}

}  // namespace tonadex::server::shelf_test

#include "server/shelf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "core/windows1252.h"
#include "net/listing.h"
#include "server/file_system.h"
#include "tests/support/full_disk.h"
#include "tests/support/temp_folder.h"

namespace tonadex::server {
namespace {

using namespace core::literals;
using std::string;
using test::TempFolder;
namespace fs = std::filesystem;

constexpr Clock::time_point kNow{};
const string kTema = "Tema:d=4,o=5,b=100:c,djuh9hay,e";

std::set<string> FilesIn(const TempFolder& folder) {
  std::set<string> names;
  for (const auto& entry : fs::directory_iterator(folder.path())) {
    names.insert(entry.path().filename().string());
  }
  return names;
}

TEST(Shelf, ServesWhatTheFolderHoldsNewestFirst) {
  const TempFolder folder;
  folder.Write("vals.120", "Vals:d=4,o=5,b=63:c\r\n");
  folder.Write("old.10", "Antigua:d=4,o=5,b=63:c");
  folder.Write("Ñandú.7", "x");
  folder.Write("empty.0", "");
  folder.Write("README.txt", "no");
  folder.Write(".oculto.12", "no");
  folder.Write("a.b.12", "no");
  folder.Write("deep.12/vals.1", "no");
  const auto now = fs::last_write_time(folder / "vals.120");
  fs::last_write_time(folder / "old.10", now - std::chrono::hours(3));
  fs::last_write_time(folder / "Ñandú.7", now - std::chrono::hours(2));
  fs::last_write_time(folder / "empty.0", now - std::chrono::hours(1));
  const Shelf shelf(folder.path(), ShelfAccess::kReadOnly);
  const string nandu = string(u8"Ñandú (Ñandú.7)498"_w);
  EXPECT_EQ(shelf.size(), 4u);
  EXPECT_EQ(shelf.Search(""),
            "Vals (vals.120)498empty (empty.0)498" + nandu + "Antigua (old.10)498");
  EXPECT_EQ(*shelf.FullListing(),
            "Antigua (old.10)498" + nandu + "empty (empty.0)498Vals (vals.120)498");
  EXPECT_EQ(shelf.Melody("vals.120"), "Vals:d=4,o=5,b=63:c\r\n");
  EXPECT_EQ(shelf.Melody(u8"Ñandú.7"_w), "x");
  for (const char* none :
       {"README.txt", ".oculto.12", "a.b.12", "deep.12", "../vals.120", "x.1", ""}) {
    EXPECT_EQ(shelf.Melody(none), std::nullopt) << none;
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
    EXPECT_EQ(*shelf.FullListing(), "Otra (Otra.24)498Tema (Tema.25)498");
    EXPECT_EQ(shelf.Search("tema"), "Tema (Tema.25)498");
    EXPECT_EQ(shelf.Upload("Tema.25", "Tema:d=4,o=5,b=100:c,djuh9hay,f", "a", kNow).result,
              UploadResult::kExists);
    EXPECT_EQ(shelf.Upload("Otra.24", "Otra:d=4,o=5,b=100:c,d,e", "a", kNow).result,
              UploadResult::kExists);
    EXPECT_EQ(shelf.size(), 2u);
  }
  EXPECT_EQ(folder.Read("Tema.25"), kTema);
  EXPECT_EQ(folder.Read("Otra.24"), "by hand");
  EXPECT_EQ(FilesIn(folder), (std::set<string>{"Otra.24", "Tema.25"}));
  EXPECT_EQ(Shelf(folder.path(), ShelfAccess::kReadOnly).Search("tema"), "Tema (Tema.25)498");
}

TEST(ShelfUpload, SaysWhyNothingWasStored) {
  const TempFolder folder;
  Shelf reader(folder.path(), ShelfAccess::kReadOnly);
  EXPECT_EQ(reader.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kReadOnly);
  Shelf strict(folder.path(), ShelfAccess::kReadWrite, 1);
  EXPECT_EQ(strict.Upload("bad", "", "a", kNow).result, UploadResult::kRefused);
  EXPECT_EQ(strict.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kTooMany);
  EXPECT_EQ(strict.Upload("Tema.25", kTema, "b", kNow).result, UploadResult::kStored);
  const TempFolder gone;
  Shelf lost(gone.path(), ShelfAccess::kReadWrite);
  fs::remove_all(gone.path());
  EXPECT_EQ(lost.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kDiskFailure);
  EXPECT_EQ(lost.size(), 0u);
}

TEST(ShelfUpload, LeavesNothingOnAFullDisk) {
  const TempFolder folder;
  Shelf shelf(folder.path(), ShelfAccess::kReadWrite);
  {
    const test::FullDisk full(8);
    EXPECT_EQ(shelf.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kDiskFailure);
  }
  EXPECT_EQ(FilesIn(folder), std::set<string>{});
  EXPECT_EQ(shelf.Upload("Tema.25", kTema, "a", kNow).result, UploadResult::kStored);
}

TEST(ShelfReload, FindsWhatCameAndWentByHand) {
  const TempFolder folder;
  folder.Write("vals.29", "Vals:d=4");
  Shelf shelf(folder.path(), ShelfAccess::kReadWrite);
  EXPECT_EQ(*shelf.FullListing(), "Vals (vals.29)498");
  fs::rename(folder / "vals.29", folder / "jota.29");
  shelf.Reload();
  EXPECT_EQ(*shelf.FullListing(), "Vals (jota.29)498");
  EXPECT_EQ(shelf.Search("vals"), "Vals (jota.29)498");
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
  FillEmptyShelf(folder, source.path());  // the user's own choice stays
  EXPECT_FALSE(fs::exists(folder / "uno.10"));
  parent.Write("servidor/.llenando", "");
  parent.Write("servidor/dos.20", "changed");
  FillEmptyShelf(folder, source.path());
  EXPECT_EQ(parent.Read("servidor/uno.10"), "Uno:d=4");
  EXPECT_EQ(parent.Read("servidor/dos.20"), "changed");
  EXPECT_FALSE(fs::exists(folder / ".llenando"));
  FillEmptyShelf(parent / "leer", "");  // no melodies installed
  EXPECT_TRUE(fs::is_directory(parent / "leer"));
}

}  // namespace
}  // namespace tonadex::server

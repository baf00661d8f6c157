#include "server/melody_folder.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <thread>

#include "tests/support/full_disk.h"
#include "tests/support/temp_folder.h"

namespace tonadex::server::melody_folder_test {

using std::string;
using test::TempFolder;
namespace fs = std::filesystem;

constexpr const char* kIndex = ".indice";
constexpr std::chrono::milliseconds kStep{40};  // longer than a step of the clock

void WaitForSettledTimes() {
  std::this_thread::sleep_for(2 * kStep);
}

string Start(const TempFolder& folder, ShelfAccess access = ShelfAccess::kReadWrite) {
  string names;
  const StoredMelodies melodies = MelodyFolder(folder.path(), access, kStep).Read();
  for (const StoredMelody& melody : melodies.list) {
    names.append(melody.description).append("=").append(melody.fileName).append(" ");
  }
  return names;
}

// A description that differs from the file's content shows that the file was not opened.
void MarkIndex(const TempFolder& folder) {
  const string index = folder.Read(kIndex);
  std::vector<StoredMelody> melodies = DecodeIndex(index);
  for (StoredMelody& melody : melodies) {
    melody.description = "kept";
  }
  folder.Write(kIndex, EncodeIndex(melodies, INT64_MAX));
}

TEST(StoredIndex, SparesOpeningWhatHasNotChanged) {
  const TempFolder folder;
  const auto time = fs::file_time_type::clock::now() - std::chrono::hours(1);
  for (const char* name : {"a.1", "b.1", "c.1", "d.1"}) {
    folder.Write(name, string("Old ") + name[0] + ":d=4");
    fs::last_write_time(folder / name, time);
  }
  WaitForSettledTimes();
  Start(folder);
  MarkIndex(folder);
  EXPECT_EQ(Start(folder, ShelfAccess::kReadOnly), "kept=a.1 kept=b.1 kept=c.1 kept=d.1 ");
  folder.Write("b.1", "New b:d=4");  // same size and time
  fs::last_write_time(folder / "b.1", time);
  fs::rename(folder / "d.1", folder / "c.1");
  EXPECT_EQ(Start(folder), "kept=a.1 New b=b.1 Old d=c.1 ");
  MarkIndex(folder);
  EXPECT_EQ(Start(folder), "kept=a.1 New b=b.1 Old d=c.1 ");  // changed just before they were read
}

TEST(StoredIndex, LearnsAtTheEndWhatWasUploaded) {
  const TempFolder folder;
  folder.Write("a.1", "A:d=4");
  WaitForSettledTimes();
  {
    MelodyFolder melodies(folder.path(), ShelfAccess::kReadWrite, kStep);
    melodies.Read();
    EXPECT_EQ(melodies.Create("b.1", "B:d=4"), files::CreateResult::kCreated);
    EXPECT_EQ(melodies.Create("a.1", "B:d=4"), files::CreateResult::kExists);
    WaitForSettledTimes();
  }
  MarkIndex(folder);
  EXPECT_EQ(Start(folder), "kept=a.1 kept=b.1 ");
}

TEST(StoredIndex, IsNotNeededWhereItCannotBeWritten) {
  const TempFolder folder;
  folder.Write("a.1", "A:d=4");
  Start(folder, ShelfAccess::kReadOnly);
  EXPECT_FALSE(fs::exists(folder / kIndex));
  const test::FullDisk full(0);
  EXPECT_EQ(Start(folder), "A=a.1 ");
  EXPECT_FALSE(fs::exists(folder / kIndex));
}

// Edits files in the folder by hand.
class Hand {
 public:
  explicit Hand(const TempFolder& folder) : folder_(folder) {}

  void ChangeMelodies() {
    for (std::size_t changes = Below(5); changes > 0; --changes) {
      const string name = Name();
      std::error_code ignored;
      const auto before = fs::last_write_time(folder_ / name, ignored);
      if (const std::size_t change = Below(4); change == 0) {
        fs::remove(folder_ / name);
      } else if (change == 1) {
        fs::rename(folder_ / name, folder_ / Name(), ignored);
      } else {
        folder_.Write(name, std::to_string(10 + Below(90)) + ":d=4");
        if (Below(2) == 0) {
          fs::last_write_time(folder_ / name, before, ignored);
        }
      }
    }
  }

  void ChangeIndex() {
    string bytes = folder_.Read(kIndex);
    const std::size_t at = Below(bytes.size());
    if (const std::size_t change = Below(7); change == 0) {
      bytes[at] = static_cast<char>(bytes[at] + 1 + int(Below(255)));
    } else if (change == 1) {
      bytes.resize(at);
    } else if (change == 2) {
      bytes.insert(at, 1 + Below(20), '\0');
    } else if (change == 3) {
      bytes.swap(old_);  // an earlier index of this folder
    }
    folder_.Write(kIndex, bytes);
  }

  std::size_t Below(std::size_t end) { return random_() % end; }

 private:
  string Name() { return "m" + std::to_string(Below(12)) + ".1"; }

  const TempFolder& folder_;
  std::mt19937 random_{5};
  string old_ = "not an index";
};

TEST(StoredIndex, NeverChangesWhatTheFolderSays) {
  const TempFolder folder;
  Hand hand(folder);
  std::size_t remembered = 0;
  for (int round = 0; round < 400; ++round) {
    hand.ChangeMelodies();
    const string started = Start(folder);
    const string index = folder.Read(kIndex);
    remembered += DecodeIndex(index).size();
    fs::remove(folder / kIndex);
    ASSERT_EQ(started, Start(folder, ShelfAccess::kReadOnly)) << round;
    folder.Write(kIndex, index);
    hand.ChangeIndex();
    if (hand.Below(10) == 0) {
      WaitForSettledTimes();
    }
  }
  EXPECT_GT(remembered, 400u);
}

}  // namespace tonadex::server::melody_folder_test

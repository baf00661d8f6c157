// MIDI files from Debian packages: the reader finds the same notes as the program midicsv.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "files/read.h"
#include "midi/smf_melody.h"
#include "tests/core/test_melody.h"
#include "tests/support/temp_folder.h"

namespace tonadex::midi {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesOfOthers() {
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(TONADEX_MIDI_FILES)) {
    const std::string kind = entry.path().extension().string();
    if (entry.is_regular_file() && (kind == ".mid" || kind == ".midi")) {
      files.push_back(entry.path());
    }
  }
  std::ranges::sort(files);
  return files;
}

using Tracks = std::vector<std::vector<SmfNote>>;

// Parses lines like "2, 480, Note_on_c, 0, 60, 64".
Tracks NotesInCsv(const fs::path& csv) {
  Tracks tracks;
  std::array<std::ptrdiff_t, kChannels * 128> sounding{};
  std::ifstream in(csv, std::ios::binary);
  for (std::string line; std::getline(in, line);) {
    std::size_t track = 0;
    std::uint32_t tick = 0, channel = 0, key = 0, velocity = 0;
    std::array<char, 20> name{};
    std::sscanf(line.c_str(), "%zu, %u, %19[^,], %u, %u, %u", &track, &tick, name.data(), &channel,
                &key, &velocity);
    const std::string_view event = name.data();
    const auto end = [&](std::ptrdiff_t& note) {
      if (note >= 0) {
        tracks.at(track - 1)[static_cast<std::size_t>(std::exchange(note, -1))].end = tick;
      }
    };
    if (event == "Start_track") {
      tracks.resize(track);
      sounding.fill(-1);
    } else if (event == "End_track") {
      std::ranges::for_each(sounding, end);
    } else if (event == "Note_on_c" || event == "Note_off_c") {
      std::ptrdiff_t& note = sounding.at(channel * 128 + key);
      end(note);
      if (event == "Note_on_c" && velocity > 0) {
        note = std::ssize(tracks.at(track - 1));
        tracks.at(track - 1).push_back({tick, tick, static_cast<std::uint8_t>(key),
                                        static_cast<std::uint8_t>(channel),
                                        static_cast<std::uint8_t>(velocity)});
      }
    }
  }
  return tracks;
}

TEST(FilesOfOthers, HaveTheNotesThatAnotherProgramFinds) {
  if (std::system(TONADEX_FETCH_MIDI_FILES " " TONADEX_MIDI_FILES " > /dev/null 2>&1") != 0) {
    GTEST_SKIP() << "The packages with MIDI files cannot be fetched: no network, or apt-get "
                    "update has not been run.";
  }
  const test::TempFolder folder;
  const std::string csv = (folder / "csv").string();
  std::size_t files = 0;
  for (const fs::path& file : FilesOfOthers()) {
    const SmfFile ours = ReadSmf(*files::ReadWhole(file));
    ASSERT_EQ(
        std::system((TONADEX_MIDI_FILES "/usr/bin/midicsv " + file.string() + " " + csv).c_str()),
        0);
    const Tracks tracks = NotesInCsv(csv);
    ASSERT_EQ(ours.tracks.size(), tracks.size()) << file;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
      ASSERT_EQ(ours.tracks[i].notes, tracks[i]) << file << " track " << i + 1;
    }
    const auto voices = VoicesOf(ours);
    const auto tune = std::ranges::find(voices, true, &SmfVoice::tune);
    ASSERT_NE(tune, voices.end()) << file;
    const SmfMelody made = MelodyOf(ours, *tune, {.name = "x", .mostNotes = 50});
    EXPECT_GE(made.melody.notes.size(), 4u) << file;
    ++files;
  }
  EXPECT_GE(files, 30u);
}

}  // namespace
}  // namespace tonadex::midi

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sstream>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/read.h"
#include "midi/smf_melody.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/midi/smf_bytes.h"
#include "tests/support/melodies.h"
#include "tests/support/temp_folder.h"

namespace tonadex::midi::smf_test {

namespace fs = std::filesystem;
using test::SmfOf;

std::string BytesOf(const std::string& row) {
  std::string bytes;
  std::istringstream words(row);
  for (std::string word; words >> word;) {
    const bool hex = word.find_first_not_of("0123456789ABCDEF") == std::string::npos;
    for (std::size_t i = 0; i < word.size(); i += hex ? 2 : 1) {
      bytes += hex ? static_cast<char>(std::stoi(word.substr(i, 2), nullptr, 16)) : word[i];
    }
  }
  return bytes;
}

std::string Show(std::string_view bytes) {
  SmfFile file;
  try {
    file = ReadSmf(bytes);
  } catch (const core::RunTimeError& error) {
    return core::ToUtf8(error.what());
  }
  std::string text = std::to_string(file.format) + "/" + std::to_string(file.division);
  for (const SmfTrack& track : file.tracks) {
    text += " \"" + track.name + "\":";
    for (const SmfNote& note : track.notes) {
      text += " " + std::to_string(note.start) + "-" + std::to_string(note.end) + " " +
              std::to_string(note.key) + "/" + std::to_string(note.channel);
    }
  }
  return text;
}

TEST(ReadSmf, ReadsAndRefuses) {
  for (const test::Row& row : test::Table("Files of others")) {
    const std::string bytes = BytesOf(row[0]);
    EXPECT_EQ(Show(bytes), row[1]) << row[0];
    const std::string riff = "RIFF" + std::string(4, '\0') + "RMIDdata" + std::string(4, '\0');
    EXPECT_EQ(Show(riff + bytes).substr(0, 30), row[1].substr(0, 30));
  }
  EXPECT_EQ(Show(std::string(kMaxSmfBytes + 1, '\0')), "el fichero MIDI pasa de 4 MB");
}

// Random notes in up to four tracks; those of one key and channel do not touch.
std::vector<std::vector<SmfNote>> AnyTracks(std::mt19937& random) {
  std::vector<std::vector<SmfNote>> tracks(1 + random() % 4);
  for (auto& notes : tracks) {
    std::array<std::uint32_t, kChannels * 128> free{};
    std::uint32_t now = 0;
    for (std::size_t left = random() % 50; left > 0; --left) {
      now += static_cast<std::uint32_t>(random() % 4 == 0 ? 0 : random() % 20000);
      const auto key = static_cast<std::uint8_t>(random() % 128);
      const auto channel = static_cast<std::uint8_t>(random() % kChannels);
      if (std::uint32_t& next = free[channel * std::size_t{128} + key]; next <= now) {
        next = now + 1 + static_cast<std::uint32_t>(random() % 3000);
        notes.push_back({now, next, key, channel, static_cast<std::uint8_t>(1 + random() % 127)});
      }
    }
  }
  return tracks;
}

TEST(ReadSmf, FindsTheNotesThatWereWritten) {
  std::mt19937 random(1);
  for (int files = 0; files < 500; ++files) {
    const auto tracks = AnyTracks(random);
    const SmfFile file = ReadSmf(SmfOf(tracks, 96));
    ASSERT_EQ(file.tracks.size(), tracks.size());
    for (std::size_t i = 0; i < tracks.size(); ++i) {
      ASSERT_EQ(file.tracks[i].notes, tracks[i]);
    }
  }
}

// Damaged files are refused or give melodies that can be parsed.
TEST(ReadSmf, BearsDamagedFiles) {
  std::mt19937 random(2);
  for (int files = 0; files < 400; ++files) {
    std::string bytes = SmfOf(AnyTracks(random), 1 + static_cast<int>(random() % 1000));
    for (std::size_t left = 1 + random() % 8; left > 0; --left) {
      bytes[random() % bytes.size()] = static_cast<char>(random());
    }
    bytes.resize(random() % 3 == 0 ? random() % bytes.size() : bytes.size());
    SmfFile file;
    core::SkipErrors([&] { file = ReadSmf(bytes); });
    for (const SmfVoice& voice : VoicesOf(file)) {
      const SmfMelody made = MelodyOf(file, voice, {.name = "x", .mostNotes = 50});
      ASSERT_LE(made.melody.notes.size(), 50u);
      ASSERT_EQ(test::ParsedMelody(core::RtttlText(made.melody)).Notes.size(),
                made.melody.notes.size());
    }
  }
}

TEST(MelodyOf, MakesOneVoiceOfMany) {
  for (const test::Row& row : test::Table("Voices to melodies")) {
    std::vector<SmfNote> notes;
    std::istringstream words(row[0]);
    for (std::uint32_t start = 0, length = 0, key = 0; words >> start;) {
      words.ignore(1) >> length;
      words.ignore(1) >> key;
      notes.push_back({start, start + length, static_cast<std::uint8_t>(key), 0, 64});
    }
    const SmfFile file = ReadSmf(SmfOf({notes}, 48));
    SmfChoice choice{.name = "x"};
    choice.taken = row[4].empty() ? choice.taken : Taken::kFirst;
    choice.firstBar = row[2].empty() ? choice.firstBar : std::stoul(row[2]);
    choice.mostNotes = row[3].empty() ? choice.mostNotes : std::stoul(row[3]);
    choice.lowestOctave = row[5].empty() ? choice.lowestOctave : row[5].front() - '0';
    choice.octaves = row[5].empty() ? choice.octaves : row[5].back() - '0';
    const SmfMelody made = MelodyOf(file, VoicesOf(file).front(), choice);
    std::string text = made.melody.notes.empty() ? "(none)" : core::RtttlText(made.melody);
    for (const std::string& remark : made.remarks) {
      text += " ; " + core::ToUtf8(remark);
    }
    EXPECT_EQ(text, row[1]) << row[0];
  }
}

// Start and length of each note in thirty-seconds, and its key.
struct Sounding {
  double start, length;  // from the first note
  int key;

  friend bool operator==(const Sounding&, const Sounding&) = default;
};
std::vector<Sounding> SoundingOf(const std::vector<core::PlainNote>& notes) {
  std::vector<Sounding> sounding;
  double now = 0;
  for (const core::PlainNote& note : notes) {
    const double length = 32.0 / note.length * (note.dotted ? 1.5 : 1);
    if (note.semitone >= 0) {
      now = sounding.empty() ? 0 : now;
      sounding.push_back({now, length, 12 * note.octave + note.semitone});
    }
    now += length;
  }
  return sounding;
}

// Notes at arbitrary divisions and times, at least a thirty-second apart, so that none is lost. In
// every second file nearly all are so long that halving the lengths would make the text shorter.
TEST(MelodyOf, KeepsEveryNoteWithinHalfAThirtySecond) {
  std::mt19937 random(3);
  for (int files = 0; files < 200; ++files) {
    const std::uint32_t division = 24 + static_cast<std::uint32_t>(random() % 1000);
    const double unit = division / 8.0;
    std::vector<SmfNote> notes;
    auto now = static_cast<std::uint32_t>(random() % 5000);
    for (int i = 0; i < 300; ++i) {
      const auto step = static_cast<std::uint32_t>(std::ceil(unit * 1.01));
      const auto number = static_cast<std::uint32_t>(random());
      const std::uint32_t length =
          files % 2 == 0 ? step + number % (2 * division)
                         : division * (8 + number % 30) + (number % 40 == 0 ? step : 0);
      notes.push_back({now, now + 1 + static_cast<std::uint32_t>(random() % length),
                       static_cast<std::uint8_t>(24 + random() % 72), 0, 64});
      now += length;
    }
    const SmfFile file = ReadSmf(SmfOf({notes}, static_cast<int>(division)));
    const SmfMelody made = MelodyOf(file, VoicesOf(file).front(), {.name = "x"});
    const double scale = made.melody.tempo / 120.0;
    const std::vector<Sounding> sounding = SoundingOf(made.melody.notes);
    ASSERT_EQ(sounding.size(), notes.size()) << division;
    const double before = std::floor(notes[0].start / unit * scale + 0.5);
    for (std::size_t i = 0; i < notes.size(); ++i) {
      const double error = (sounding[i].start + before) / scale - notes[i].start / unit;
      ASSERT_LE(std::abs(error), 0.5 + 1e-6) << i << " of division " << division;
      ASSERT_EQ(sounding[i].key, notes[i].key);
      ASSERT_TRUE(i == 0 || sounding[i - 1].start + sounding[i - 1].length <= sounding[i].start);
    }
  }
}

TEST(MelodyOf, TakesTheTempoThatLastsLongest) {
  SmfFile file = ReadSmf(SmfOf({{{0, 96, 60, 0, 64}, {96, 960, 62, 0, 64}}}, 96));
  file.tracks[0].tempos = {{0, 600000}, {96, 400000}, {480, 600000}, {500, 400000}};
  const SmfMelody made = MelodyOf(file, VoicesOf(file).front(), {.name = "x"});
  EXPECT_EQ(made.melody.tempo % 75, 0) << "150 beats, or half";
  EXPECT_EQ(made.remarks.size(), 1u);
}

TEST(VoicesOf, GuessesTheTune) {
  std::vector<SmfNote> tune, chords, bass, drums, solo;
  for (std::uint32_t beat = 0; beat < 64; ++beat) {
    const std::uint32_t at = beat * 96;
    tune.push_back({at, at + 90, static_cast<std::uint8_t>(72 + beat % 7), 0, 64});
    for (const int key : {60, 64, 67}) {
      chords.push_back({at, at + 96, static_cast<std::uint8_t>(key), 1, 64});
    }
    bass.push_back({at, at + 48, 36, 2, 64});
    drums.push_back({at, at + 10, 80, 9, 64});
    solo.push_back({beat * 16, beat * 16 + 16, 96, 3, 64});  // in three bars of sixteen
  }
  SmfFile file = ReadSmf(SmfOf({chords, drums, bass, tune, solo}, 96));
  file.tracks[0].name = "Piano";
  file.tracks[0].programs[1] = 0;
  const std::vector<SmfVoice> voices = VoicesOf(file);
  ASSERT_EQ(voices.size(), 5u);
  EXPECT_EQ(core::ToUtf8(VoiceText(voices[0])),
            "Piano (Piano de cola), canal 2, 192 notas, de do 5 a sol 5");
  EXPECT_TRUE(voices[3].tune);
  EXPECT_EQ(std::ranges::count(voices, true, &SmfVoice::tune), 1);
  file.tracks[0].name = "Melodía";
  EXPECT_TRUE(VoicesOf(file)[0].tune) << "what the file says itself";
}

// The program's own files read back to the same notes, except for pauses at both ends and the
// excess of pauses beyond a dotted whole note.
TEST(MelodyOf, ReadsOwnFilesBackExactly) {
  std::vector<std::string> melodies = test::Shelf();
  melodies.push_back("x:d=32,o=5,b=100:c.,d,e.,4f");
  for (const std::string& rtttl : melodies) {
    SCOPED_TRACE(rtttl);
    core::RTTTLMelody melody;
    core::InitMelody(melody, "");
    melody.Text = rtttl;
    core::ParseRTTTL(melody);
    const SmfFile file = ReadSmf(MidiFileBytes(melody));
    const SmfMelody made = MelodyOf(file, VoicesOf(file).front(), {.name = "x"});
    EXPECT_EQ(std::to_string(made.melody.tempo), melody.Beats);
    EXPECT_EQ(SoundingOf(made.melody.notes), SoundingOf(test::PlainNotes(rtttl)));
  }
}

using Tracks = std::vector<std::vector<SmfNote>>;

// Parses lines like "2, 480, Note_on_c, 0, 60, 64".
Tracks NotesInCsv(const fs::path& csv) {
  Tracks tracks;
  std::array<std::ptrdiff_t, kChannels * 128> sounding{};
  std::ifstream in(csv, std::ios::binary);
  for (std::string line; std::getline(in, line);) {
    std::uint32_t track = 0, tick = 0, channel = 0, key = 0, velocity = 0;
    std::array<char, 20> name{};
    std::sscanf(line.c_str(), "%u, %u, %19[^,], %u, %u, %u", &track, &tick, name.data(), &channel,
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

// MIDI files from packages of Debian: midicsv finds the same notes.
TEST(FilesOfOthers, HaveTheNotesThatAnotherProgramFinds) {
  const std::string midiFiles = TONADEX_MIDI_FILES,
                    fetch =
                        fs::path(TONADEX_TABLE).replace_filename("fetch_midi_files.sh").string();
  if (std::system((fetch + " " + midiFiles + " > /dev/null 2>&1").c_str()) != 0) {
    GTEST_SKIP() << "The packages with MIDI files cannot be fetched: no network, or apt-get "
                    "update has not been run.";
  }
  const test::TempFolder folder;
  const std::string csv = (folder / "csv").string();
  std::size_t files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(midiFiles)) {
    const fs::path& file = entry.path();
    if (!entry.is_regular_file() || (file.extension() != ".mid" && file.extension() != ".midi")) {
      continue;
    }
    SCOPED_TRACE(file);
    const SmfFile ours = ReadSmf(*files::ReadWhole(file));
    const std::string midicsv = midiFiles + "/usr/bin/midicsv " + file.string() + " " + csv;
    ASSERT_EQ(std::system(midicsv.c_str()), 0);
    const Tracks tracks = NotesInCsv(csv);
    ASSERT_EQ(ours.tracks.size(), tracks.size());
    for (std::size_t i = 0; i < tracks.size(); ++i) {
      ASSERT_EQ(ours.tracks[i].notes, tracks[i]) << "track " << i + 1;
    }
    const auto voices = VoicesOf(ours);
    const auto tune = std::ranges::find(voices, true, &SmfVoice::tune);
    ASSERT_NE(tune, voices.end());
    const SmfMelody made = MelodyOf(ours, *tune, {.name = "x", .mostNotes = 50});
    EXPECT_GE(made.melody.notes.size(), 4u);
    ++files;
  }
  EXPECT_GE(files, 30u);
}

}  // namespace tonadex::midi::smf_test

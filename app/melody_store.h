#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

// Saves, changes and deletes the user's melody files without ever replacing or losing a melody.
// Texts and file names are Windows-1252; sharps are "#".
namespace tonadex::app {

// The text with a name that a melody file can have: without full stops and brackets, not too long.
std::string StorableMelody(std::string_view text);

class MelodyStore {
 public:
  // Deleted files are moved to `bin`. Neither folder need exist.
  MelodyStore(std::filesystem::path melodies, std::filesystem::path bin);

  // On failure these throw core::RunTimeError with a sentence for the user (without a full stop)
  // and leave all files as they were.

  // Saves an RTTTL text of one line and returns its file's name: the melody's name and the length
  // of the text, as a server names it. Characters that no file name can hold become "_" there. A
  // file with the same content is kept; beside one with other content it is saved as "name 2".
  std::string Save(std::string_view text) const;
  // Renames the melody and its file; returns the new file's name. The old file is moved to the
  // bin.
  std::string Rename(const std::string& file, std::string_view name) const;
  // A copy under the melody's name and a number; moved by `semitones`, "Vals +3".
  std::string Duplicate(const std::string& file, int semitones = 0) const;
  // Saves the melodies of files of any format. `last` is the file of the last one saved.
  struct Added {
    std::string last;
    std::string refused;  // CR LF, then the name of a file without melodies and why, for each
    std::string remarks;  // likewise: what was assumed, mended or left out
  };
  void Add(std::span<const std::filesystem::path> files, Added& added) const;

  // Moves the file to the bin and returns its path there.
  std::filesystem::path Delete(const std::string& file) const;
  // Moves it back under its old name, or a free one like it; returns the file's name.
  std::string Restore(const std::filesystem::path& deleted, const std::string& file) const;

 private:
  std::string Text(const std::string& file) const;
  // `again`: writes a second file even if one has this content.
  std::string Write(std::string_view text, bool again) const;

  std::filesystem::path melodies_, bin_;
};

}  // namespace tonadex::app

#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

// The user's melody files: saving, changing, deleting. Nothing here replaces or loses a melody.
// Texts are Windows-1252 with "#" for sharps; file names are texts, too.
namespace tonadex::app {

// The text with a name that a melody file can have: without full stops and brackets, not too long.
std::string StorableMelody(std::string_view text);

class MelodyStore {
 public:
  // `bin` keeps what is deleted. Neither folder need exist.
  MelodyStore(std::filesystem::path melodies, std::filesystem::path bin);

  // All of these throw core::RunTimeError with a sentence for the user (without its full stop) and
  // leave every file as it was when a step fails.

  // Saves an RTTTL text of one line and returns its file's name: the melody's name and the length
  // of the text, as a server names it. Characters that no file name can hold become "_" there. A
  // file of the same content is left alone, one of other content makes the new one "name 2".
  std::string Save(std::string_view text) const;
  // Gives the melody another name, and its file too; returns the file's name. The old file goes
  // into the bin.
  std::string Rename(const std::string& file, std::string_view name) const;
  // A copy under the melody's name and a number; moved by `semitones`, "Vals +3".
  std::string Duplicate(const std::string& file, int semitones = 0) const;
  // Saves the melodies of files of any format. `last` is the file of the last one saved.
  struct Added {
    std::string last;
    std::string refused;  // the names of files without any, and why, each behind CR LF
    std::string remarks;  // likewise: what was assumed, mended or left out
  };
  void Add(std::span<const std::filesystem::path> files, Added& added) const;

  // Moves the file into the bin and gives its place there.
  std::filesystem::path Delete(const std::string& file) const;
  // Back under the old name, or the nearest that is free; returns the file's name.
  std::string Restore(const std::filesystem::path& deleted, const std::string& file) const;

 private:
  std::string Text(const std::string& file) const;
  // `again`: also where a file of this content is there already.
  std::string Write(std::string_view text, bool again) const;

  std::filesystem::path melodies_, bin_;
};

}  // namespace tonadex::app

#include "app/melody_store.h"

#include <algorithm>
#include <utility>

#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "files/write.h"
#include "import/open_melody.h"
#include "net/file_name.h"
#include "net/upload.h"
#include "phones/transpose.h"

namespace tonadex::app {
namespace {

namespace fs = std::filesystem;
using namespace core::literals;

constexpr std::size_t kLongestName = 60;
constexpr std::string_view kNameless = "melodia";
constexpr std::size_t kLongestText = 99'999;  // a file's number has five digits

constexpr std::string_view kNoMelody = u8"no es una melodía RTTTL"_w;
constexpr std::string_view kNoName = u8"la melodía necesita un nombre"_w;
constexpr std::string_view kStop = u8"el nombre no puede llevar puntos ni «:»"_w;
constexpr std::string_view kUnusableName =
    u8"ese nombre no sirve para un fichero: prueba con otro o con uno más corto"_w;
constexpr std::string_view kTooLong = u8"la melodía es demasiado larga"_w;
constexpr std::string_view kNotSaved =
    u8"no se puede escribir en la carpeta de melodías: quizá el disco esté lleno o protegido"_w;
constexpr std::string_view kNotBinned =
    u8"no se puede mover a la papelera: quizá el disco esté lleno o protegido"_w;
constexpr std::string_view kUnreadable = "no se puede leer o pasa de 16 MiB";
constexpr std::string_view kNotRead = "el fichero ya no se puede leer";

[[noreturn]] void Refuse(std::string_view why,
                         core::ErrorNumber number = core::ErrorNumber::kInvalidArgument) {
  throw core::RunTimeError(number, std::string(why));
}

std::string_view NameOf(std::string_view text) {
  return text.substr(0, text.find(':'));
}

bool IsMelody(std::string_view text) {
  const std::size_t name = text.find(':');
  return name != text.npos && text.find(':', name + 1) != text.npos;
}

// The content of a melody's file: sharps escaped as in a server's files, in UTF-8, whose detection
// on reading is reliable.
std::string Stored(std::string_view text) {
  std::string line(text);
  core::ReplaceAll(line, "#", core::kSharpEscape);
  return core::ToUtf8(line) + std::string(core::kCrLf);
}

// The file name's stem for a melody's name.
std::string Stem(std::string_view name) {
  std::string stem(core::Trim(name));
  for (char& c : stem) {
    c = c == ' ' || net::IsSafeFileName(std::string_view(&c, 1)) ? c : '_';
  }
  return stem;
}

// The file name for a melody, checked: its row in the repertoire must lead back to the file.
std::string FileNameFor(std::string_view text) {
  const std::string_view name = NameOf(text);
  if (!IsMelody(text)) {
    Refuse(kNoMelody);
  }
  if (core::Trim(name).empty()) {
    Refuse(kNoName);
  }
  if (core::Contains(name, ".")) {
    Refuse(kStop);
  }
  if (text.size() > kLongestText) {
    Refuse(kTooLong);
  }
  std::string file = net::UploadKey(Stem(name), text);
  core::MelodyRow row;
  if (!net::IsSafeFileName(file) || file.starts_with('.') ||
      !core::SkipErrors([&] { row = core::RepertoireRow(text, file); }) ||
      core::MelodyFileName(row.text, row.number) != file) {
    Refuse(kUnusableName);
  }
  return file;
}

// The list shows a name only up to its first full stop.
std::string WithoutStopsInName(std::string_view text) {
  std::string name(NameOf(text));
  std::erase(name, '.');
  return name.append(text.substr(NameOf(text).size()));
}

std::string NameIn(const std::optional<fs::path>& made, std::string_view failure) {
  if (!made) {
    Refuse(failure, core::ErrorNumber::kDeviceFailure);
  }
  return files::TextFromPath(made->filename());
}

}  // namespace

std::string StorableMelody(std::string_view text) {
  std::string name(NameOf(text).substr(0, kLongestName));
  std::erase_if(name, [](char c) { return c == '.' || c == '(' || c == ')'; });
  name = core::Trim(name);
  return (name.empty() ? std::string(kNameless) : name).append(text.substr(NameOf(text).size()));
}

MelodyStore::MelodyStore(fs::path melodies, fs::path bin)
    : melodies_(std::move(melodies)), bin_(std::move(bin)) {}

std::string MelodyStore::Text(const std::string& file) const {
  std::string text;
  if (!core::SkipErrors([&] {
        text = core::UndoSharpEscape(files::ReadMelodyLine(melodies_ / files::PathFromText(file)));
      })) {
    Refuse(kNotRead, core::ErrorNumber::kFileNotFound);
  }
  return text;
}

std::string MelodyStore::Write(std::string_view text, bool again) const {
  const std::string line(core::Trim(text.substr(0, text.find_first_of(core::kCrLf))));
  const fs::path file = melodies_ / files::PathFromText(FileNameFor(line));
  std::error_code ignored;  // a missing folder shows in the next step
  fs::create_directories(melodies_, ignored);
  const std::string bytes = Stored(line);
  // A file with this content may be "name 2" although "name" has been deleted.
  const auto look = [&](const fs::path& candidate) {
    std::string there;
    core::SkipErrors([&] { there = core::UndoSharpEscape(files::ReadMelodyLine(candidate)); });
    if (there == line) {
      return files::CreateResult::kCreated;
    }
    const bool goesOn = candidate == file || fs::exists(candidate, ignored);
    return goesOn ? files::CreateResult::kExists : files::CreateResult::kFailed;
  };
  if (const auto found = again ? std::nullopt : files::MakeUnderFreeName(file, look)) {
    return NameIn(found, kNotSaved);
  }
  const auto make = [&](const fs::path& free) { return files::Create(free, bytes); };
  return NameIn(files::MakeUnderFreeName(file, make), kNotSaved);
}

std::string MelodyStore::Save(std::string_view text) const {
  return Write(text, false);
}

std::string MelodyStore::Rename(const std::string& file, std::string_view name) const {
  const std::string text = Text(file);
  if (!IsMelody(text)) {
    Refuse(kNoMelody);
  }
  if (core::Contains(name, ":")) {
    Refuse(kStop);
  }
  const std::string renamed =
      std::string(core::Trim(name)).append(text.substr(NameOf(text).size()));
  if (renamed == text) {
    return file;
  }
  const fs::path from = melodies_ / files::PathFromText(file);
  const fs::path to = melodies_ / files::PathFromText(FileNameFor(renamed));
  std::error_code ignored;
  if (fs::equivalent(from, to, ignored)) {  // the same file, also on file systems that ignore case
    if (!files::Replace(from, Stored(renamed))) {
      Refuse(kNotSaved, core::ErrorNumber::kDeviceFailure);
    }
    fs::rename(from, to, ignored);
    return files::TextFromPath(to.filename());
  }
  std::string saved = Write(renamed, true);
  try {
    Delete(file);
  } catch (const core::RunTimeError&) {
    fs::remove(melodies_ / files::PathFromText(saved), ignored);
    throw;
  }
  return saved;
}

std::string MelodyStore::Duplicate(const std::string& file, int semitones) const {
  const std::string text = Text(file);
  const std::string moved = semitones == 0 ? text : phones::Transposed(text, semitones);
  if (!IsMelody(moved)) {
    Refuse(kNoMelody);
  }
  const std::string notes = moved.substr(NameOf(moved).size());
  const std::string name = WithoutStopsInName(NameOf(text));
  const auto copy = [&](std::string_view sign, int number) {
    return core::Joined({name, " ", sign, std::to_string(number), notes});
  };
  if (semitones != 0) {
    return Save(copy(semitones > 0 ? "+" : "", semitones));
  }
  // The first number for which there is no such file yet.
  const auto taken = [this](const std::string& melody) {
    std::error_code ignored;
    return fs::exists(melodies_ / files::PathFromText(FileNameFor(melody)), ignored);
  };
  int number = 2;
  while (taken(copy("", number))) {
    ++number;
  }
  return Save(copy("", number));
}

void MelodyStore::Add(std::span<const fs::path> files, Added& added) const {
  for (const fs::path& file : files) {
    const std::string name = files::TextFromPath(file.filename());
    const auto attempt = [&](const auto& step) {
      try {
        step();
      } catch (const core::RunTimeError& error) {
        added.refused.append(core::kCrLf).append(name).append(": ").append(error.what());
        added.refused += '.';
      }
    };
    import::OpenedFile opened;
    attempt([&] {
      const auto bytes = files::ReadWhole(file, import::kMostBytes);
      if (!bytes) {
        Refuse(kUnreadable);
      }
      opened = import::OpenMelodyFile(*bytes, name);
    });
    for (const import::OpenedMelody& melody : opened.melodies) {
      attempt([&] { added.last = Save(StorableMelody(melody.text)); });
      for (const std::string& remark : melody.remarks) {
        added.remarks.append(core::kCrLf).append(name).append(": ").append(remark);
      }
    }
  }
}

fs::path MelodyStore::Delete(const std::string& file) const {
  const auto binned = files::MoveInto(bin_, melodies_ / files::PathFromText(file));
  NameIn(binned, kNotBinned);
  return *binned;
}

std::string MelodyStore::Restore(const fs::path& deleted, const std::string& file) const {
  return NameIn(files::MakeUnderFreeName(
                    melodies_ / files::PathFromText(file),
                    [&](const fs::path& to) { return files::MoveToNewName(deleted, to); }),
                kNotSaved);
}

}  // namespace tonadex::app

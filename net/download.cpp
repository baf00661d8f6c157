#include "net/download.h"

#include <optional>

#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "files/read.h"
#include "files/write.h"
#include "net/addresses.h"
#include "net/file_name.h"

namespace tonadex::net {
namespace {

// Whether the repertoire can list a file of this name: a name without a readable number would make
// every later listing fail.
bool CanBeListed(std::string_view fileName) {
  return !fileName.starts_with('.') &&
         core::SkipErrors([&] { core::RepertoireRow("x:", fileName); });
}

// Whoever answers in the server's place, or a server that dies, costs nobody a melody.
void KeepReplaced(const std::filesystem::path& file, std::string_view bytes,
                  const std::filesystem::path& bin) {
  const std::optional<std::string> before = files::ReadWhole(file);
  if (before && *before != bytes && !files::CopyInto(bin, file)) {
    throw core::RunTimeError(core::ErrorNumber::kDeviceFailure,
                             "no se puede escribir en la papelera");
  }
}

}  // namespace

bool DownloadMelody(const Fetch& fetch, const std::filesystem::path& folder,
                    const std::filesystem::path& bin, std::string_view row, std::int32_t number,
                    std::string& text) {
  const std::string fileName = core::MelodyFileName(row, number);
  const bool fetched = core::SkipErrors([&] { text = fetch(MelodyAddress(fileName)); });
  if (text.ends_with('\n')) {
    text.pop_back();  // a CR before it is kept
  }
  const std::string bytes = text + std::string(core::kCrLf);
  const bool stored = CanBeListed(fileName) && core::SkipErrors([&] {
                        KeepReplaced(SafePath(folder, fileName), bytes, bin);
                        StoreFile(folder, fileName, bytes);
                      });
  return fetched && stored;
}

}  // namespace tonadex::net

#include "net/download.h"

#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/text.h"
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

}  // namespace

bool DownloadMelody(const Fetch& fetch, const std::filesystem::path& folder, std::string_view row,
                    std::int32_t number, std::string& text) {
  const std::string fileName = core::MelodyFileName(row, number);
  const bool fetched = core::SkipErrors([&] { text = fetch(MelodyAddress(fileName)); });
  if (text.ends_with('\n')) {
    text.pop_back();  // a CR before it is kept
  }
  const bool stored = CanBeListed(fileName) && core::SkipErrors([&] {
                        StoreFile(folder, fileName, text + std::string(core::kCrLf));
                      });
  return fetched && stored;
}

}  // namespace tonadex::net

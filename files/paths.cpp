#include "files/paths.h"

#include "core/windows1252.h"

namespace tonadex::files {

std::filesystem::path PathFromText(std::string_view text) {
  const std::string utf8 = core::ToUtf8(text);
  return std::u8string(utf8.begin(), utf8.end());
}

std::string TextFromPath(const std::filesystem::path& path) {
  return core::FromNative(path.native());
}

}  // namespace tonadex::files

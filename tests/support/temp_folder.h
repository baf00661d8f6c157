#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace tonadex::test {

// An empty folder that is removed with its contents at the end of the scope.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

  // Writes a file below the folder; creates its parent folders.
  void Write(const std::filesystem::path& name, std::string_view bytes) const;
  // The file's bytes, "(none)" when there is no such file.
  std::string Read(const std::filesystem::path& name) const;

 private:
  std::filesystem::path path_;
};

}  // namespace tonadex::test

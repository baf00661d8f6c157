#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonadex::app {

// Input and output of the system's file dialogs: the OPENFILENAMEA record without its later
// extension fields. Texts are Windows-1252 and may hold NULs where the record asks for them.
struct FileDialogRecord {
  std::uint32_t lStructSize = 76;
  std::intptr_t hwndOwner = 0;
  std::string lpstrFilter;        // description NUL pattern NUL … NUL NUL
  std::int32_t nFilterIndex = 1;  // 1-based pair of lpstrFilter
  std::string lpstrFile;          // in: initial name filled with NULs; out: full path
  std::int32_t nMaxFile = 0;      // size of the file-name buffer in characters
  std::string lpstrFileTitle;     // in: filled with blanks; out: name without folder
  std::int32_t nMaxFileTitle = 260;
  std::string lpstrInitialDir;
  std::string lpstrTitle;
  std::uint32_t Flags = 0;
  std::uint16_t nFileOffset = 0;
  std::uint16_t nFileExtension = 0;
  std::string lpstrDefExt;
  std::string lpTemplateName = "0";  // ignored by the dialog: no template flag is ever set
};

// The file as it was typed, maybe without an extension.
struct SaveChoice {
  std::filesystem::path file;
  std::size_t kind = 0;  // index of the kind chosen
};

// The system's modal file dialogs.
class FileDialogs {
 public:
  virtual ~FileDialogs() = default;
  // These return true after a choice, with the record refreshed; false when the user cancelled or
  // the dialog failed, and then the record is unchanged.
  virtual bool GetSaveFileName(FileDialogRecord& record) = 0;
  virtual bool GetOpenFileName(FileDialogRecord& record) = 0;
  // Asks where to save, and as one of `kinds` ("Texto (*.txt)"), of which the first is chosen at
  // the start; nullopt when the user cancelled. Proposes `name` in the user's documents folder.
  // Windows-1252.
  virtual std::optional<SaveChoice> AskSaveAs(std::string_view title, std::string_view name,
                                              std::span<const std::string> kinds) = 0;
  // Asks for files to read; none when the user cancelled. Starts in `folder`; if that is empty or
  // missing, where files were opened last, or in the user's documents folder.
  virtual std::vector<std::filesystem::path> AskOpen(std::string_view title,
                                                     const std::filesystem::path& folder) = 0;
};

}  // namespace tonadex::app

#include "app/cls_open_save.h"

#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::size_t kTitleBlanks = 256;

// `text` filled with NULs up to `size` characters.
std::string Buffer(const std::string& text, std::int32_t size) {
  const std::int64_t fill = std::int64_t{size} - static_cast<std::int64_t>(text.size());
  if (fill < 0) {
    throw core::RunTimeError(core::ErrorNumber::kInvalidArgument,
                             std::string(u8"el nombre de fichero es demasiado largo: «"_w) + text +
                                 std::string(u8"»"_w));
  }
  return text + std::string(static_cast<std::size_t>(fill), '\0');
}

// The text before the first NUL, trimmed.
std::string Text(std::string_view buffer) {
  return std::string(core::Trim(buffer.substr(0, buffer.find('\0'))));
}

std::string Extension(std::string_view fileName) {
  const std::size_t stop = fileName.find_last_of("./\\");
  return stop == std::string_view::npos || fileName[stop] != '.'
             ? std::string()
             : std::string(fileName.substr(stop + 1));
}

}  // namespace

void clsOpenSave::SetFilter(std::string_view filter) {
  filter_ = filter;
  core::ReplaceAll(filter_, "|", std::string_view("\0", 1));
  if (!filter_.ends_with(std::string_view("\0\0", 2))) {
    filter_ += '\0';
  }
}

std::int16_t clsOpenSave::ShowSave() {
  return Show(&FileDialogs::GetSaveFileName);
}

std::int16_t clsOpenSave::ShowOpen() {
  return Show(&FileDialogs::GetOpenFileName);
}

std::int16_t clsOpenSave::Show(Dialog dialog) {
  FileDialogRecord record;
  record.hwndOwner = hWnd;
  record.lpstrFilter = filter_;
  record.nFilterIndex = FilterIndex;
  record.lpstrFile = Buffer(FileName, MaxFileSize + 1);
  record.nMaxFile = MaxFileSize;
  record.lpstrFileTitle = FileTitle + std::string(kTitleBlanks, ' ');
  record.lpstrInitialDir = InitDir;
  record.lpstrTitle = DialogTitle;
  record.Flags = static_cast<std::uint32_t>(Flags);
  record.lpstrDefExt = DefaultExt;
  if (!(dialogs_.*dialog)(record)) {
    return CancelError ? kDialogCancelled : kDialogClosed;
  }
  Flags = static_cast<std::int32_t>(record.Flags);
  DefaultExt = record.lpstrDefExt;
  FileName = Text(record.lpstrFile);
  FileTitle = Text(record.lpstrFileTitle);
  FileExt = Extension(FileName);
  InitDir = Text(record.lpstrInitialDir);
  FilterIndex = static_cast<std::int16_t>(record.nFilterIndex);
  return kDialogClosed;
}

}  // namespace tonadex::app

#include "platform/win32/console.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>

#include "platform/win32/wide_text.h"

namespace tonadex::platform {

Utf8Console::Utf8Console() : output_(GetConsoleOutputCP()), input_(GetConsoleCP()) {
  SetConsoleOutputCP(CP_UTF8);
  SetConsoleCP(CP_UTF8);
  for (std::FILE* stream : {stdin, stdout, stderr}) {
    _setmode(_fileno(stream), _O_BINARY);
  }
}

Utf8Console::~Utf8Console() {
  SetConsoleOutputCP(output_);
  SetConsoleCP(input_);
}

Utf8Arguments::Utf8Arguments() {
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  for (int i = 0; i < count; ++i) {
    texts_.push_back(Utf8FromWide(wide[i]));
  }
  LocalFree(wide);
  for (std::string& text : texts_) {
    pointers_.push_back(text.data());
  }
  pointers_.push_back(nullptr);
}

}  // namespace tonadex::platform

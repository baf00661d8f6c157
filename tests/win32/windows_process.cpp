#include "tests/win32/windows_process.h"

#include <stdexcept>

#include "tests/support/temp_folder.h"

namespace tonadex::test {
namespace {

PROCESS_INFORMATION Start(const std::filesystem::path& program, const std::wstring& arguments,
                          HANDLE input, HANDLE output) {
  std::wstring line = L"\"" + program.wstring() + L"\" " + arguments;
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = input;
  start.hStdOutput = start.hStdError = output;
  PROCESS_INFORMATION process{};
  if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                     &start, &process) == 0) {
    throw std::runtime_error("cannot start " + program.string());
  }
  return process;
}

HANDLE OpenForChild(const std::filesystem::path& file, DWORD access, DWORD how) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  return CreateFileW(file.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, how, 0,
                     nullptr);
}

}  // namespace

std::filesystem::path BuildFile(const std::filesystem::path& name) {
  return std::filesystem::path(TONADEX_BUILD_DIR) / name;
}

void UnpackProgram(const std::filesystem::path& program, const std::filesystem::path& folder) {
  namespace fs = std::filesystem;
  fs::copy(BuildFile("share/tonadex"), folder, fs::copy_options::recursive);
  fs::copy_file(BuildFile(program), folder / program.filename());
}

Finished RunToEnd(const std::filesystem::path& program, const std::wstring& arguments,
                  const std::filesystem::path& input) {
  const TempFolder folder;
  const std::filesystem::path outputFile = folder / "output";
  const HANDLE output = OpenForChild(outputFile, GENERIC_WRITE, CREATE_ALWAYS);
  const HANDLE source = OpenForChild(input.empty() ? std::filesystem::path("NUL") : input,
                                     GENERIC_READ, OPEN_EXISTING);
  const PROCESS_INFORMATION process = Start(program, arguments, source, output);
  WaitForSingleObject(process.hProcess, 60000);
  Finished finished;
  GetExitCodeProcess(process.hProcess, &finished.code);
  for (const HANDLE handle : {process.hProcess, process.hThread, output, source}) {
    CloseHandle(handle);
  }
  finished.output = folder.Read("output");
  return finished;
}

RunningProgram::RunningProgram(const std::filesystem::path& program, const std::wstring& arguments)
    : process_(Start(program, arguments, nullptr, nullptr)) {}

RunningProgram::~RunningProgram() {
  if (WaitForSingleObject(process_.hProcess, 0) != WAIT_OBJECT_0) {
    TerminateProcess(process_.hProcess, 99);
    WaitForSingleObject(process_.hProcess, 5000);
  }
  CloseHandle(process_.hProcess);
  CloseHandle(process_.hThread);
}

DWORD RunningProgram::WaitForEnd(DWORD milliseconds) {
  if (WaitForSingleObject(process_.hProcess, milliseconds) != WAIT_OBJECT_0) {
    return 0xFFFFFFFF;
  }
  DWORD code = 0;
  GetExitCodeProcess(process_.hProcess, &code);
  return code;
}

}  // namespace tonadex::test

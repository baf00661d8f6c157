#pragma once

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/file_dialog.h"
#include "app/registry.h"
#include "app/rich_text.h"
#include "app/shell_services.h"
#include "app/web_view.h"
#include "core/runtime_error.h"
#include "files/paths.h"
#include "files/read.h"
#include "midi/sequencer.h"
#include "net/http.h"
#include "phones/conversion.h"

// Fakes of the platform that record the calls.
namespace tonadex::test {

struct FakeRegistry : app::Registry {
  std::optional<app::RegistryValue> QueryValue(std::uint32_t root, std::string_view key,
                                               std::string_view name) override {
    const auto found = values.find(Path(root, key, name));
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  bool SetValue(std::uint32_t root, std::string_view key, std::string_view name,
                const app::RegistryValue& value) override {
    ++writes;
    if (!broken) {
      values[Path(root, key, name)] = value;
    }
    return !broken;
  }
  static std::string Path(std::uint32_t root, std::string_view key, std::string_view name) {
    return std::to_string(root) + '/' + std::string(key) + '/' + std::string(name);
  }

  std::map<std::string, app::RegistryValue> values;
  int writes = 0;
  bool broken = false;  // writing fails
};

// The next of a fake's answers; none when there is no more.
inline std::optional<std::string> TakeNext(std::deque<std::optional<std::string>>& answers) {
  if (answers.empty()) {
    return std::nullopt;
  }
  auto next = std::move(answers.front());
  answers.pop_front();
  return next;
}

// Answers each dialog with the next of `answers`; an empty or missing one cancels it.
class FakeFileDialogs : public app::FileDialogs {
 public:
  bool GetSaveFileName(app::FileDialogRecord& record) override { return Answer("save", record); }
  bool GetOpenFileName(app::FileDialogRecord& record) override { return Answer("open", record); }

  std::optional<app::SaveChoice> AskSaveAs(std::string_view, std::string_view name,
                                           std::span<const std::string> choices) override {
    proposed.emplace_back(name);
    offered.assign(choices.begin(), choices.end());
    const auto path = TakeNext(answers);
    return path ? std::optional(app::SaveChoice{files::PathFromText(*path), chosen}) : std::nullopt;
  }

  std::vector<std::filesystem::path> AskOpen(std::string_view,
                                             const std::filesystem::path& folder) override {
    const std::string in = folder.empty() ? "" : " " + folder.filename().string();
    const auto file = AskSaveAs({}, "(open" + in + ")", {});
    return file ? std::vector{file->file} : std::vector<std::filesystem::path>();
  }

  std::vector<std::string> proposed;               // file names
  std::vector<std::string> offered;                // file types of the last dialog
  std::size_t chosen = 0;                          // index in `offered`
  std::deque<std::optional<std::string>> answers;  // full paths
  std::vector<app::FileDialogRecord> asked;        // records before the answer
  std::vector<std::string> kinds;                  // "save" or "open"

 private:
  bool Answer(std::string_view kind, app::FileDialogRecord& record) {
    kinds.emplace_back(kind);
    asked.push_back(record);
    const auto path = TakeNext(answers);
    if (path) {
      record.lpstrFile = *path + std::string(3, '\0');
      record.lpstrFileTitle = path->substr(path->find_last_of("/\\") + 1) + " ";
    }
    return path.has_value();
  }
};

// Answers a conversion's save dialog with a path, or cancels it, and records it.
struct FakeSaveQuestion : phones::SaveFileQuestion {
  explicit FakeSaveQuestion(std::optional<std::string> chosen = std::nullopt)
      : file(std::move(chosen)) {}
  std::optional<std::string> AskSaveFile(const phones::SaveRequest& request) override {
    asked += request.DialogTitle + "|" + request.Filter + "|" + request.DefaultExt +
             std::to_string(request.FilterIndex) + (request.CancelError ? "" : "no cancel");
    return file;
  }

  std::optional<std::string> file;
  std::string asked;
};

struct FakeSequencer : midi::Sequencer {
  int SendString(std::string_view command) override {
    commands.emplace_back(command);
    return result;
  }

  std::vector<std::string> commands;
  int result = 0;
};

// Answers each request with the next of `replies`; an empty or missing one is a failed transfer.
struct ScriptedHttp : net::HttpGet {
  std::string Get(std::string_view url) override {
    urls.emplace_back(url);
    if (during) {
      during();
    }
    auto reply = TakeNext(replies);
    if (!reply) {
      throw net::TransferError("no se ha podido conectar");
    }
    return *std::move(reply);
  }
  int LastStatus() const override { return status; }

  std::deque<std::optional<std::string>> replies;
  std::vector<std::string> urls;
  int status = 200;
  std::function<void()> during;  // called while the request runs; may be empty
};

// A background request that is answered by `http` at once.
class ScriptedBackgroundGet : public net::BackgroundGet {
 public:
  explicit ScriptedBackgroundGet(ScriptedHttp& http) : http_(http) {}
  void Start(std::string url) override {
    reply_ = Reply{};
    try {
      reply_ = Reply{true, http_.Get(url)};
    } catch (const net::TransferError&) {
      return;
    }
  }
  std::optional<Reply> Take() override { return std::exchange(reply_, std::nullopt); }

 private:
  ScriptedHttp& http_;
  std::optional<Reply> reply_;
};

struct FakeWebViews : app::WebViews {
  void Navigate(app::WebViewId view, std::string_view url) override {
    log.push_back((view == app::WebViewId::kNavbanner ? "navbanner " : "WebBrowser1 ") +
                  std::string(url));
    if (broken) {
      throw std::runtime_error("no web view");
    }
  }

  std::vector<std::string> log;  // "navbanner URL" or "WebBrowser1 URL"
  bool broken = false;
};

// Reads the template from disk and records what is printed.
struct FakeRichTextBox : app::RichTextBox {
  void LoadFile(const std::filesystem::path& file) override { source = files::ReadBytes(file); }
  std::string TextRTF() const override { return source; }
  void SetTextRTF(std::string_view newSource) override { source = newSource; }
  void SelPrint(std::string_view) override {
    if (noPrinter) {
      throw core::RunTimeError(core::ErrorNumber::kDeviceFailure, "No hay impresora");
    }
    printed.push_back(source);
  }

  std::string source;
  std::vector<std::string> printed;
  void PrintPages(const app::Paper& paper, std::string_view name) override {
    printed.push_back(std::string(name) + ": " + paper.title);
  }

  bool noPrinter = false;
};

struct FakeShell : app::ShellServices {
  explicit FakeShell(std::filesystem::path folder) : programFolder(std::move(folder)) {}
  std::filesystem::path ProgramFolder() const override { return programFolder; }
  std::string TempPath() const override { return (programFolder / "temp").string() + '/'; }
  void SetTopMost(std::intptr_t window) override { topMost.push_back(window); }
  void DoEvents() override { ++doEvents; }
  void Beep() override { ++beeps; }
  void CopyText(std::string_view text) override { clipboard = text; }
  void OpenFolder(const std::filesystem::path& folder) override { help.push_back(folder); }
  void OpenHelp(const std::filesystem::path& file) override { help.push_back(file); }
  void OpenFile(const std::filesystem::path& file) override { opened.push_back(file); }
  void ShowInFolder(const std::filesystem::path& file) override { opened.push_back(file / "."); }
  void End() override { ++ends; }

  std::filesystem::path programFolder;
  std::string clipboard;
  std::vector<std::intptr_t> topMost;
  std::vector<std::filesystem::path> help, opened;  // folders end in "/."
  int doEvents = 0, beeps = 0, ends = 0;
};

}  // namespace tonadex::test

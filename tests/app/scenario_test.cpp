// The main window, driven by the scenarios of scenarios.txt, which documents its own format.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "app/form1.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/test_program.h"

namespace tonadex::app::scenario_test {

using test::Row;

struct Scenario {
  std::string name;
  std::vector<std::string> steps;
};

void PrintTo(const Scenario& scenario, std::ostream* os) {
  *os << scenario.name;
}

std::vector<Scenario> Scenarios() {
  std::vector<Scenario> scenarios;
  std::ifstream in(TONADEX_SCENARIOS);
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with('[')) {
      scenarios.push_back({line.substr(1, line.find(']') - 1), {}});
    } else if (!line.empty() && !line.starts_with("//")) {
      scenarios.back().steps.push_back(line);
    }
  }
  return scenarios;
}

struct Form1Scenario : testing::TestWithParam<Scenario> {
  using F = Form1Scenario;
  using Step = void (F::*)(const Row&);

  Control& Named(const std::string& name) { return form.*FindControl(name)->member; }

  void Raise(Event event, const Row& row) {
    for (const std::string_view name : core::SplitText(row[0], ' ')) {
      ASSERT_TRUE(Handle(std::string(name), event)) << name;
    }
  }
  // Clicks the buttons that the row names after its other fields, if any.
  void ThenClick(const Row& row, std::size_t others) {
    if (row.fields.size() > others) {
      Raise(Event::kClick, {{row[others]}});
    }
  }
  bool Handle(const std::string& name, Event event) {
    const auto handler = HandlerOf(*FindControl(name), event);
    if (handler != nullptr) {
      Run(handler);
    }
    return handler != nullptr;
  }
  void Run(Handler handler) {
    const int error = test::ErrorOf([&] { (form.*handler)(); });
    failure_ += error == 0 ? "" : "error " + std::to_string(error) + "\n";
    form.Refresh();
  }

  void Choose(const Row& row) {
    const MenuItem* item = nullptr;
    for (const ControlInfo& info : Controls()) {
      const auto found = std::ranges::find(info.menu, core::FromUtf8(row[0]), &MenuItem::caption);
      item = found == info.menu.end() ? item : std::to_address(found);
    }
    ASSERT_NE(item, nullptr);
    (form.*item->handler)();
    form.Refresh();
  }

  // The effects outside the window since the last call.
  std::string Effects() {
    std::string effects;
    const auto add = [&effects](std::string_view kind, auto& happened, auto inWords) {
      for (const auto& each : std::exchange(happened, {})) {
        effects.append(kind).append(" ").append(inWords(each)).append("\n");
      }
    };
    const auto utf8 = [](const std::string& text) { return core::ToUtf8(text); };
    const auto times = [&effects](std::string_view what, int& count) {
      effects += count == 0 ? "" : std::string(what) + " " + std::to_string(count) + "\n";
      count = 0;
    };
    add("box", test.boxes.messages, test::BoxText);
    add("get", test.http.urls, utf8);
    if (webViews_) {
      add("web", test.webViews.log, utf8);
    }
    std::erase_if(test.sequencer.commands, [](auto& each) { return !each.starts_with("open"); });
    add("mci", test.sequencer.commands, utf8);
    add("print", test.richText.printed, utf8);
    add("save as", test.fileDialogs.proposed, utf8);
    add("dialog", test.fileDialogs.asked, [](const FileDialogRecord& asked) {
      return core::ToUtf8(asked.lpstrTitle) + " in " + asked.lpstrInitialDir + ", filter " +
             std::to_string(asked.nFilterIndex);
    });
    add("help", test.shell.help, [](const auto& file) { return file.string(); });
    times("saved", test.registry.writes);
    times("end", test.shell.ends);
    core::ReplaceAll(effects, "http://servidor", "");
    core::ReplaceAll(effects, (test.folder / "").string(), "@/");
    core::ReplaceAll(effects, test.folder.path().string(), "@");
    core::ReplaceAll(effects, "\\", "/");  // file names on Windows
    core::ReplaceAll(effects, "\r\n", "¶");
    core::ReplaceAll(effects, "\r", "¶");
    return effects + std::exchange(failure_, {});
  }

  std::string Value(const std::string& name) {
    const std::size_t dot = name.find('.');
    const std::string field = name.substr(std::min(dot, name.size() - 1) + 1);
    if (dot == std::string::npos) {
      const std::map<std::string, std::string> values = {
          {"page", std::to_string(form.paginaactual)},
          {"melodiasube", form.melodiasube},
          {"melody", test.program.gMelody.Text},
          {"instrument", std::to_string(test.program.gMelody.Instrument)},
          {"phone", test.program.gPhoneModel},
          {"saved", test.registry.values["2147483648/tonadex\\/modelo"].data},
          {"clipboard", test.shell.clipboard},
          {"faults", Faults()},
          {"count", form.composerCheck.sentence},
          {"events", std::to_string(test.shell.doEvents)},
          {"repertoire notes", std::to_string(form.repertoireDrawing.notes.size())},
          {"marked note", std::to_string(form.repertoireDrawing.shown)}};
      return values.at(name);
    }
    const Control& control = Named(name.substr(0, dot));
    std::string rows, shown, help;
    for (std::size_t i = 0; i < control.rows.size(); ++i) {
      shown += control.LineAt(i) + ";";
      help += control.HelpAt(i) + ";";
    }
    for (const ListRow& row : control.rows) {
      rows += std::string(row.text) + "=" + std::to_string(row.itemData) + (row.hint ? "?;" : ";");
    }
    return std::map<std::string, std::string>{{"text", control.text},
                                              {"caption", control.caption},
                                              {"address", control.address},
                                              {"invitation", control.invitation},
                                              {"index", std::to_string(control.listIndex)},
                                              {"shown", shown},
                                              {"help", help},
                                              {"rows", rows}}
        .at(field);
  }

  std::string Faults() const {
    std::string faults;
    for (const core::TextRange& range : form.txtrtttlsube.faults) {
      faults += std::to_string(range.start) + "+" + std::to_string(range.length) + ";";
    }
    return faults;
  }

  void Start(const Row& row) {
    form.Form_Load();
    Raise(Event::kClick, row);
    Effects();
    if (row.fields.size() > 1) {
      Select({{"List1", row[1]}});
    }
  }
  void Load(const Row& row) {
    test.program.gVersion = row[0];
    form.Form_Load();
  }
  void Compose(const Row& row) {
    form.txtcomponombremelodia.text = core::FromUtf8(row[0]);
    form.txtcompoTempo.text = row[1];
    form.txtmelodiacompo.text = row[2];
    form.lblMsg.caption = "before";
    Run(&Form1::txtmelodiacompo_Change);
    ThenClick(row, 3);
  }
  void Type(const Row& row) {
    Named(row[0]).text = core::FromUtf8(row[1]);
    Handle(row[0], Event::kChange);
    ThenClick(row, 2);
  }
  void Select(const Row& row) {
    Named(row[0]).Select(std::stoi(row[1]));
    Handle(row[0], Event::kClick);
    ThenClick(row, 2);
  }
  void File(const Row& row) {
    for (std::size_t i = 0; i < row.fields.size(); i += 2) {
      test.folder.Write(files::PathFromText(core::FromUtf8(row[i])), core::FromUtf8(row[i + 1]));
    }
  }
  void Gone(const Row& row) { std::filesystem::remove_all(test.folder / row[0]); }
  void Holds(const Row& row) { EXPECT_EQ(core::ToUtf8(test.folder.Read(row[0])), row[1]); }
  void Is(const Row& row) {
    for (std::size_t i = 0; i < row.fields.size(); i += 2) {
      if (const auto state = states.find(row[i]); state != states.end()) {
        const auto& [flag, want] = state->second;
        for (const std::string_view name : core::SplitText(row[i + 1], ' ')) {
          EXPECT_EQ(Named(std::string(name)).*flag, want) << name;
        }
      } else {
        EXPECT_EQ(core::ToUtf8(Value(row[i])), row[i + 1]) << row[i];
      }
    }
  }
  void Phone(const Row& row) { test.program.gPhoneModel = row[0]; }
  void Reply(const Row& row) {
    test.http.replies.emplace_back(row[0]);
    test.http.status = row.fields.size() > 1 ? std::stoi(row[1]) : 200;
  }
  void Answer(const Row& row) {
    test.fileDialogs.answers = {files::TextFromPath(test.folder / row[0])};
    ThenClick(row, 1);
  }
  void Broken(const Row& row) {
    (row[0] == "printer" ? test.richText.noPrinter : test.webViews.broken) = true;
  }
  void QueryUnload(const Row&) { form.Form_QueryUnload(); }
  void WebViews(const Row&) { webViews_ = true; }

  test::TestProgram test;
  Form1 form{test.program};
  const std::map<std::string, Step> verbs = {
      {"start", &F::Start},      {"load", &F::Load},     {"compose", &F::Compose},
      {"type", &F::Type},        {"select", &F::Select}, {"file", &F::File},
      {"gone", &F::Gone},        {"holds", &F::Holds},   {"is", &F::Is},
      {"phone", &F::Phone},      {"reply", &F::Reply},   {"answer", &F::Answer},
      {"broken", &F::Broken},    {"choose", &F::Choose}, {"close", &F::QueryUnload},
      {"webviews", &F::WebViews}};
  const std::map<std::string, Event> events = {{"click", Event::kClick},
                                               {"activate", Event::kActivate},
                                               {"enter", Event::kEnter},
                                               {"tick", Event::kTick},
                                               {"lead", Event::kNavigation}};
  const std::map<std::string, std::pair<bool Control::*, bool>> states = {
      {"visible", {&Control::visible, true}}, {"hidden", {&Control::visible, false}},
      {"enabled", {&Control::enabled, true}}, {"disabled", {&Control::enabled, false}},
      {"checked", {&Control::checked, true}}, {"unchecked", {&Control::checked, false}}};

 private:
  std::string failure_;
  bool webViews_ = false;
};

TEST_P(Form1Scenario, HasTheseEffectsAndNoOthers) {
  std::string done, want;
  const auto check = [&] { EXPECT_EQ(Effects(), want) << done; };
  for (const std::string& step : GetParam().steps) {
    if (step.starts_with("> ")) {
      want += step.substr(2) + "\n";
      continue;
    }
    check();
    SCOPED_TRACE(step);
    const std::size_t end = std::min(step.find(' '), step.size());
    const std::string verb = step.substr(0, end);
    const Row row = test::ReadRow(step.substr(end));
    const auto event = events.find(verb);
    event == events.end() ? (this->*verbs.at(verb))(row) : Raise(event->second, row);
    done = step;
    want.clear();
  }
  check();
}

INSTANTIATE_TEST_SUITE_P(Window, Form1Scenario, testing::ValuesIn(Scenarios()),
                         [](const auto& tested) { return tested.param.name; });

}  // namespace tonadex::app::scenario_test

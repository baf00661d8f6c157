#include "app/session_state.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <optional>
#include <utility>
#include <vector>

#include "app/control_table.h"
#include "app/form1.h"
#include "core/windows1252.h"
#include "files/read.h"
#include "files/write.h"

namespace tonadex::app {
namespace {

constexpr std::string_view kWindow = "ventana";  // left, top, width, height, 1 when maximised

constexpr std::array<std::pair<char, char>, 3> kEscapes = {
    {{'\r', 'r'}, {'\n', 'n'}, {'\\', '\\'}}};

std::string Escaped(std::string_view value) {
  std::string escaped;
  for (const char c : value) {
    const auto escape = std::ranges::find(kEscapes, c, &std::pair<char, char>::first);
    escaped += escape == kEscapes.end() ? std::string{c} : std::string{'\\', escape->second};
  }
  return escaped;
}

std::optional<std::string> Unescaped(std::string_view escaped) {
  std::string value;
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] != '\\') {
      value += escaped[i];
      continue;
    }
    const char code = ++i < escaped.size() ? escaped[i] : '\0';
    const auto escape = std::ranges::find(kEscapes, code, &std::pair<char, char>::second);
    if (escape == kEscapes.end()) {
      return std::nullopt;
    }
    value += escape->first;
  }
  return value;
}

// Numbers separated by single blanks; none when the text holds anything else.
std::vector<int> Numbers(std::string_view text) {
  std::vector<int> numbers;
  const char* const end = text.data() + text.size();
  for (const char* at = text.data(); at <= end; ++at) {
    const auto [next, error] = std::from_chars(at, end, numbers.emplace_back());
    if (error != std::errc() || (next != end && *next != ' ')) {
      return {};
    }
    at = next;
  }
  return numbers;
}

std::vector<ControlInfo> KeptControls() {
  std::vector<ControlInfo> kept;
  std::ranges::copy_if(Controls(), std::back_inserter(kept),
                       [](const ControlInfo& info) { return !info.kept.name.empty(); });
  return kept;
}

// Length that two intervals share.
double Overlap(double start, double length, double otherStart, double otherLength) {
  const double end = std::min(start + length, otherStart + otherLength);
  return std::max(end - std::max(start, otherStart), 0.0);
}

}  // namespace

Rect OnScreen(Rect place, std::span<const Rect> screens) {
  const auto screen = std::ranges::max_element(screens, {}, [&place](const Rect& each) {
    return Overlap(place.left, place.width, each.left, each.width) *
           Overlap(place.top, place.height, each.top, each.height);
  });
  if (screen == screens.end()) {
    return place;
  }
  const auto fit = [](int& start, int& length, int least, int most) {
    length = std::min(length, most);
    start = std::clamp(start, least, least + most - length);
  };
  fit(place.left, place.width, screen->left, screen->width);
  fit(place.top, place.height, screen->top, screen->height);
  return place;
}

StateValues ReadState(std::string_view bytes) {
  StateValues values;
  const std::string text = core::IsUtf8(bytes) ? core::FromUtf8(bytes) : std::string();
  for (std::string_view rest = text; !rest.empty();) {
    std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    line = line.substr(0, line.find('\r'));
    const std::size_t equals = line.find('=');
    if (equals == line.npos) {
      continue;
    }
    if (auto value = Unescaped(line.substr(equals + 1))) {
      values.insert_or_assign(std::string(line.substr(0, equals)), *std::move(value));
    }
  }
  return values;
}

std::string StateBytes(const StateValues& values) {
  std::string text;
  for (const auto& [name, value] : values) {
    text.append(name).append("=").append(Escaped(value)).append("\n");
  }
  return core::ToUtf8(text);
}

bool BeepIsChosen(const std::filesystem::path& stateFile) {
  const StateValues values = ReadState(files::ReadWhole(stateFile).value_or(""));
  const auto found = values.find(kBeepState);
  return found != values.end() && found->second == "1";
}

SessionState::SessionState(std::filesystem::path file) : file_(std::move(file)) {}

void SessionState::Restore(Form1& form) {
  values_ = ReadState(files::ReadWhole(file_).value_or(""));
  for (const ControlInfo& info : KeptControls()) {
    const KeptValue& kept = info.kept;
    Control& control = form.*info.member;
    const auto found = values_.find(kept.name);
    if (found == values_.end()) {
      continue;
    }
    if (!kept.IsNumber()) {
      control.SetText(found->second);
    } else if (const std::vector<int> n = Numbers(found->second);
               n.size() == 1 && n[0] >= kept.lowest && n[0] <= kept.highest) {
      control.value = n[0];
    }
  }
  const std::vector<int> place = Numbers(values_[std::string(kWindow)]);
  if (place.size() == 5 && place[2] > 0 && place[3] > 0) {
    form.windowPlace = {{place[0], place[1], place[2], place[3]}, place[4] != 0};
  }
  Note(form);
  changed_ = false;  // defaults need not be saved
}

bool SessionState::Note(const Form1& form) {
  const auto note = [this](std::string_view name, std::string_view value) {
    const auto found = values_.find(name);
    if (found == values_.end() || found->second != value) {
      values_.insert_or_assign(std::string(name), std::string(value));
      changed_ = true;
    }
  };
  for (const ControlInfo& info : KeptControls()) {
    const Control& control = form.*info.member;
    note(info.kept.name, info.kept.IsNumber() ? std::to_string(control.value) : control.text);
  }
  const auto& [rect, maximised] = form.windowPlace;
  std::string place;
  for (const int number : {rect.left, rect.top, rect.width, rect.height}) {
    place += std::to_string(number) + " ";
  }
  note(kWindow, place + (maximised ? "1" : "0"));
  return changed_;
}

void SessionState::Save() {
  if (std::exchange(changed_, false)) {
    files::Replace(file_, StateBytes(values_));  // after a failure the next change tries again
  }
}

}  // namespace tonadex::app

#include "app/typing_guide.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonadex::app {
namespace {

constexpr double kDownMs = 350, kUpMs = 200;  // of a short press
constexpr double kHeldMs = 1000.0 * phones::kHoldSeconds;
constexpr double kAgainMs = 1200;  // gap before the animation repeats

double DownMs(const phones::KeyPress& press) {
  return press.hold ? kHeldMs : kDownMs;
}

double LengthMs(const phones::KeyPress& press) {
  return press.times * (DownMs(press) + kUpMs);
}

}  // namespace

LitKey LitAt(std::span<const phones::KeyPress> keys, double elapsedMs) {
  double round = kAgainMs;
  for (const phones::KeyPress& press : keys) {
    round += LengthMs(press);
  }
  double left = std::fmod(std::max(elapsedMs, 0.0), round);
  for (const phones::KeyPress& press : keys) {
    if (left < LengthMs(press)) {
      return {&press, std::fmod(left, DownMs(press) + kUpMs) < DownMs(press)};
    }
    left -= LengthMs(press);
  }
  return {};
}

bool TypingGuide::Open(std::string_view model, std::string_view result,
                       const core::RTTTLMelody& melody) {
  Close();
  steps_ = phones::TypingSteps(model, result, melody);
  if (steps_.empty()) {
    return false;
  }
  keypad_ = phones::FindKeypad(model);
  open_ = {melody.Text, std::string(model)};
  const auto kept = std::ranges::find_if(places_, [this](const Place& place) {
    return place.melody == open_.melody && place.model == open_.model;
  });
  if (kept != places_.end()) {
    at_ = std::min(kept->at, steps_.size() - 1);
    places_.erase(kept);
  }
  return true;
}

void TypingGuide::Close() {
  if (std::exchange(keypad_, nullptr) == nullptr) {
    return;
  }
  open_.at = std::exchange(at_, 0);
  places_.push_back(std::exchange(open_, {}));
  if (places_.size() > kKeptPlaces) {
    places_.pop_front();
  }
  steps_.clear();
}

const phones::TypingStep* TypingGuide::Group(int offset) const {
  const auto group = static_cast<std::ptrdiff_t>(at_) + offset;
  const bool there = group >= 0 && group < std::ssize(steps_);
  return there ? &steps_[static_cast<std::size_t>(group)] : nullptr;
}

int TypingGuide::DrawnNote(const Drawing& drawing) const {
  const int note = steps_.empty() ? -1 : steps_[at_].note;
  const auto drawn = std::ranges::find(drawing.notes, note, &app::DrawnNote::number);
  return drawn == drawing.notes.end() ? -1 : static_cast<int>(drawn - drawing.notes.begin());
}

bool TypingGuide::Move(GuideMove move) {
  switch (move) {
    case GuideMove::kPrevious:
      return at_ > 0 && GoTo(at_ - 1);
    case GuideMove::kNext:
      return GoTo(at_ + 1);
    case GuideMove::kFirst:
      return GoTo(0);
    case GuideMove::kLast:
      return !steps_.empty() && GoTo(steps_.size() - 1);
  }
  return false;
}

bool TypingGuide::GoTo(std::size_t group) {
  return group < steps_.size() && std::exchange(at_, group) != group;
}

std::string TypingGuide::Position() const {
  return steps_.empty() ? "" : std::to_string(at_ + 1) + " de " + std::to_string(steps_.size());
}

double TypingGuide::Fraction() const {
  return steps_.empty() ? 0 : static_cast<double>(at_ + 1) / static_cast<double>(steps_.size());
}

}  // namespace tonadex::app

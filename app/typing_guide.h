#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/melody_notes.h"
#include "phones/keypads.h"
#include "phones/typing_steps.h"

// Leads someone through a result of keys, group by group. Texts are Windows-1252.
namespace tonadex::app {

// A moment of the animation that shows how a group is pressed.
struct LitKey {
  const phones::KeyPress* press = nullptr;  // one of the group; nullptr before it starts again
  bool down = false;                        // its key lights; false between two presses
};

// What shows `elapsedMs` after the group came: its presses one after the other, a held key for as
// long as the phone wants it, and after a while all of it again. Nothing for a group without keys.
LitKey LitAt(std::span<const phones::KeyPress> keys, double elapsedMs);

enum class GuideMove { kPrevious, kNext, kFirst, kLast };

inline constexpr int kGroupsAhead = 3;          // shown behind the one to press
inline constexpr std::size_t kKeptPlaces = 64;  // of melodies and phones, the last ones left

// Keeps the place of each melody and model for as long as it lives.
class TypingGuide {
 public:
  // Shows a conversion's result at the place where this melody was left for this model. `melody` is
  // as the conversion left it. False, and closed, when there is nothing to type.
  bool Open(std::string_view model, std::string_view result, const core::RTTTLMelody& melody);
  void Close();

  const phones::Keypad* keypad() const { return keypad_; }  // nullptr while closed
  const std::vector<phones::TypingStep>& steps() const { return steps_; }
  std::size_t at() const { return at_; }  // index of the group to press
  // The group `offset` behind that one, -1 for the one before it; nullptr where there is none.
  const phones::TypingStep* Group(int offset = 0) const;

  // Index of the group's note in the melody's drawing; -1 when the drawing leaves it out.
  int DrawnNote(const Drawing& drawing) const;

  // False when nothing changed.
  bool Move(GuideMove move);
  bool GoTo(std::size_t group);

  std::string Position() const;  // "12 de 43"; "" while closed
  double Fraction() const;       // of the bar, 0 to 1: full at the last group

 private:
  struct Place {
    std::string melody, model;
    std::size_t at = 0;
  };

  const phones::Keypad* keypad_ = nullptr;
  std::vector<phones::TypingStep> steps_;
  std::size_t at_ = 0;
  Place open_;                // of the melody shown
  std::deque<Place> places_;  // the latest last
};

}  // namespace tonadex::app

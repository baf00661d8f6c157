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

// Guides the user through a result of keys, group by group. Texts are Windows-1252.
namespace tonadex::app {

// One frame of the animation that shows how to press a group.
struct LitKey {
  const phones::KeyPress* press =
      nullptr;        // of the group; nullptr in the gap before the animation repeats
  bool down = false;  // its key is lit; false between two presses
};

// The frame at `elapsedMs` since the group is shown. The presses follow one another, a held key
// stays down for kHoldSeconds, and the whole repeats after a gap. Nothing is lit for a group
// without keys.
LitKey LitAt(std::span<const phones::KeyPress> keys, double elapsedMs);

enum class GuideMove { kPrevious, kNext, kFirst, kLast };

inline constexpr int kGroupsAhead = 3;          // number of following groups that are shown
inline constexpr std::size_t kKeptPlaces = 64;  // maximum number of remembered places

// Remembers the place of each melody and model as long as the object lives.
class TypingGuide {
 public:
  // Opens a conversion's result at the remembered place. `melody` is as the conversion left it.
  // Returns false and stays closed when there is nothing to type.
  bool Open(std::string_view model, std::string_view result, const core::RTTTLMelody& melody);
  void Close();

  const phones::Keypad* keypad() const { return keypad_; }  // nullptr while closed
  const std::vector<phones::TypingStep>& steps() const { return steps_; }
  std::size_t at() const { return at_; }  // index of the group to press
  // The group `offset` after the current one (-1: the previous one); nullptr if there is none.
  const phones::TypingStep* Group(int offset = 0) const;

  // Index of the group's note in the melody's drawing; -1 when the drawing leaves it out.
  int DrawnNote(const Drawing& drawing) const;

  // These return whether the current group changed.
  bool Move(GuideMove move);
  bool GoTo(std::size_t group);

  std::string Position() const;  // "12 de 43"; "" while closed
  double Fraction() const;       // of the progress bar, 0 to 1

 private:
  struct Place {
    std::string melody, model;
    std::size_t at = 0;
  };

  const phones::Keypad* keypad_ = nullptr;
  std::vector<phones::TypingStep> steps_;
  std::size_t at_ = 0;
  Place open_;                // of the melody shown
  std::deque<Place> places_;  // the most recent last
};

}  // namespace tonadex::app

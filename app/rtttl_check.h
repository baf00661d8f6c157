#pragma once

#include <string>
#include <string_view>

namespace tonadex::app {

enum class Verdict { kNothing, kGood, kBad };

// The sentence beside a text box that is checked while the user types; never a message box.
struct Check {
  Verdict verdict = Verdict::kNothing;
  std::string sentence;  // Spanish

  friend bool operator==(const Check&, const Check&) = default;
};

// Whether a text is an RTTTL melody that can be played and uploaded: what is missing, which note
// cannot be read, or how many notes there are. Never throws.
Check RtttlCheck(std::string_view text);

// The composer's count: "12 de 50 notas"; bad when there are more, or with the first thing that
// cannot be read. Never throws.
Check ComposerCheck(std::string_view composerText);

}  // namespace tonadex::app

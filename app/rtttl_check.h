#pragma once

#include <string>
#include <string_view>

#include "phones/rtttl_check.h"

namespace tonadex::app {

using phones::Verdict;

// The sentence beside a text box that is checked while the user types; never a message box.
struct Check {
  Verdict verdict = Verdict::kNothing;
  std::string sentence;  // Spanish

  friend bool operator==(const Check&, const Check&) = default;
};

// The check of an RTTTL text that may be played or uploaded: what the server would refuse is a
// fault, too. Never throws.
phones::MelodyCheck RtttlCheck(std::string_view text);

// The composer's count: "12 de 50 notas"; bad when there are more, or with the first thing that
// cannot be read. Never throws.
Check ComposerCheck(std::string_view composerText);

}  // namespace tonadex::app

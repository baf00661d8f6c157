#pragma once

#include <string>
#include <string_view>

#include "core/message_box.h"
#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"

// Helpers for tests of melody code. Expected texts are UTF-8, as shown by an editor.
namespace tonadex::test {

// A message box as text in UTF-8: "!" (exclamation) or "i" (information), the title in brackets
// unless it is the default one, then the message.
inline std::string BoxText(const core::Message& box) {
  std::string text = box.icon == core::Icon::kExclamation   ? "!"
                     : box.icon == core::Icon::kInformation ? "i"
                                                            : "";
  text += box.title == core::kDefaultTitle ? "" : "[" + core::ToUtf8(box.title) + "]";
  return text + core::ToUtf8(box.text);
}

// Records the message boxes shown until the end of its scope.
struct Boxes {
  core::RecordingMessages recorded;
  core::ScopedMessageSink scope{recorded};

  // All message boxes, separated by "|".
  std::string Text() const {
    std::string text;
    for (const core::Message& box : recorded.messages) {
      text += (text.empty() ? "" : "|") + BoxText(box);
    }
    return text;
  }
};

// A fresh record; bare notes get the header "x:d=4,o=5,b=125:".
inline core::RTTTLMelody MelodyOf(std::string_view text) {
  core::RTTTLMelody melody;
  melody.Text = text.find(':') == std::string_view::npos ? "x:d=4,o=5,b=125:" : "";
  melody.Text += text;
  return melody;
}

inline core::RTTTLMelody ParsedMelody(std::string_view text) {
  core::RTTTLMelody melody = MelodyOf(text);
  core::ParseRTTTL(melody);
  return melody;
}

// The number of the run-time error that `step` throws, 0 if none.
template <typename Step>
int ErrorOf(Step step) {
  try {
    step();
  } catch (const core::RunTimeError& error) {
    return static_cast<int>(error.number);
  }
  return 0;
}

// The number that `step` returns, or "error 6" for a run-time error.
template <typename Step>
std::string NumberOrError(Step step) {
  std::string number;
  const int error = ErrorOf([&] { number = std::to_string(step()); });
  return error == 0 ? number : "error " + std::to_string(error);
}

// "4D 54 68" for "MTh".
inline std::string Hex(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string hex;
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    hex += hex.empty() ? "" : " ";
    hex += kDigits[code / 16u];
    hex += kDigits[code % 16u];
  }
  return hex;
}

inline std::string AllBytes() {
  std::string bytes;
  for (int code = 0; code < 256; ++code) {
    bytes += static_cast<char>(code);
  }
  return bytes;
}

inline std::string Repeated(std::string_view text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) {
    all += text;
  }
  return all;
}

}  // namespace tonadex::test

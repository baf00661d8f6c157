#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// How a result is shown and saved.
namespace tonadex::app {

// A run of a result's text that is not to be torn apart at a line's end.
struct ResultGroup {
  std::string text;                      // without the blanks around it
  std::size_t heldFrom = 0, heldTo = 0;  // keys to be held down, "(…)" with its parentheses, as a
                                         // range of `text`: set heavier; empty where none is
  bool glued = false;                    // the next group follows without a blank
  bool lineEnd = false;                  // the result itself has a line end behind it

  bool held() const { return heldFrom != heldTo; }
  friend bool operator==(const ResultGroup&, const ResultGroup&) = default;
};

// The groups of a result in order: split at blanks and line ends, and behind ",".
std::vector<ResultGroup> ResultGroups(std::string_view result);

// Whether this model's result is keys to press: groups are counted at the margin.
bool IsKeyPresses(std::string_view model);

// A name for "Guardar como…": the row's stem and the extension of the model's format
// ("vals.rtttl", "vals.txt"); characters that a file name cannot hold become "_".
std::string SuggestedFileName(std::string_view row, std::string_view model);

}  // namespace tonadex::app

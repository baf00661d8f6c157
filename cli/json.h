#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

// JSON for other programs.
namespace tonadex::cli {

// Names, which hold nothing that must be escaped, and their texts in UTF-8. Malformed bytes become
// U+FFFD.
using JsonFields = std::initializer_list<std::pair<std::string_view, std::string>>;

// `"name":"text","name":"text"`.
std::string JsonMembers(JsonFields fields);

// Appends a Windows-1252 text as a JSON text, or its characters without the quotation marks.
void AppendJson(std::string& json, std::string_view text);
void AppendEscaped(std::string& json, std::string_view text);

// A list of objects, one field a line, written as they come: it may have millions.
class JsonList {
 public:
  explicit JsonList(std::ostream& out) : out_(out) {}
  void Add(JsonFields fields);
  void End();

 private:
  std::ostream& out_;
  bool empty_ = true;
};

}  // namespace tonadex::cli

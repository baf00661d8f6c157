#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

// Writing JSON in UTF-8.
namespace tonadex::json {

// Names (which need no escapes) and values in UTF-8. Malformed bytes of values become U+FFFD.
using JsonFields = std::initializer_list<std::pair<std::string_view, std::string>>;

// `"name":"text","name":"text"`.
std::string JsonMembers(JsonFields fields);

// Appends a Windows-1252 text as a JSON string, with and without its quotation marks.
void AppendJson(std::string& json, std::string_view text);
void AppendEscaped(std::string& json, std::string_view text);

// Writes an array of objects element by element, with one field per line: it may have millions.
class JsonList {
 public:
  explicit JsonList(std::ostream& out) : out_(out) {}
  void Add(JsonFields fields);
  void End();

 private:
  std::ostream& out_;
  bool empty_ = true;
};

}  // namespace tonadex::json

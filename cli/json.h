#pragma once

#include <initializer_list>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>

// JSON for other programs. Texts are UTF-8; bytes that are not come out as U+FFFD.
namespace tonadex::cli {

// Names, which hold nothing that must be escaped, and their texts.
using JsonFields = std::initializer_list<std::pair<std::string_view, std::string>>;

// The text in quotation marks, escaped.
std::string JsonText(std::string_view text);

// `"name":"text","name":"text"`.
std::string JsonMembers(JsonFields fields);

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

#include "cli/json.h"

#include <nlohmann/json.hpp>

namespace tonadex::cli {
namespace {

std::string Join(JsonFields fields, std::string_view before, std::string_view colon) {
  std::string members;
  for (const auto& [name, text] : fields) {
    members += members.empty() ? "" : ",";
    members.append(before).append("\"").append(name).append("\"").append(colon);
    members += JsonText(text);
  }
  return members;
}

}  // namespace

std::string JsonText(std::string_view text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string JsonMembers(JsonFields fields) {
  return Join(fields, "", ":");
}

void JsonList::Add(JsonFields fields) {
  out_ << (empty_ ? "[\n" : ",\n") << " {" << Join(fields, "\n  ", ": ") << "\n }";
  empty_ = false;
}

void JsonList::End() {
  out_ << (empty_ ? "[]\n" : "\n]\n");
}

}  // namespace tonadex::cli

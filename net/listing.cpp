#include "net/listing.h"

#include <algorithm>
#include <array>
#include <optional>

#include "core/melody_file.h"
#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::net {
namespace {

using namespace core::literals;

constexpr std::array<std::string_view, kHintCount> kHints = {
    u8"No se encontró ninguna melodía"_w,
    u8"Inténtalo de nuevo con menos palabras o quita/pon acentos."_w};

// The text after the record's first full stop; not a number if the description has a full stop.
std::string_view NumberText(std::string_view record) {
  const std::ptrdiff_t stop = core::InStr(record, ".");
  return stop == 0 ? std::string_view() : core::Mid(record, stop + 1);
}

// The record without its number and with the parenthesis closed; unchanged when it has no number at
// its end.
void CloseRecord(std::string_view record, std::string& closed) {
  const std::size_t stop = core::NumberStop(record);
  closed = record.substr(0, stop);
  closed += stop == record.npos ? "" : ")";
}

// The text's stem if it equals the description.
std::optional<std::string_view> StemLikeDescription(std::string_view text) {
  const std::ptrdiff_t open = core::InStr(text, " (");
  if (open == 0) {
    return std::nullopt;
  }
  std::string_view stem = core::Mid(text, open + 2);
  if (stem.empty()) {
    return std::nullopt;
  }
  stem.remove_suffix(1);
  return stem == core::Left(text, open - 1) ? std::optional(stem) : std::nullopt;
}

}  // namespace

std::string_view HintRow(std::size_t index) {
  return kHints.at(index);
}

bool IsHintRow(std::string_view row) {
  return std::ranges::find(kHints, row) != kHints.end();
}

ListingEnd ReadListing(std::string_view reply, bool stemAlone, const AddListingRow& add) {
  ListingEnd left;
  std::size_t end = 0;
  for (; (end = reply.find(kRecordEnd)) != std::string_view::npos;
       reply.remove_prefix(end + kRecordEnd.size())) {
    const std::string_view record = reply.substr(0, end);
    left.number = NumberText(record);
    CloseRecord(record, left.record);
    const auto stem = stemAlone ? StemLikeDescription(left.record) : std::nullopt;
    add(stem.value_or(left.record), core::FindInt32(left.number).value_or(0));
  }
  left.rest = reply;
  return left;
}

std::size_t CountRecords(std::string_view reply) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = reply.find(kRecordEnd, at)) != std::string_view::npos;
       at += kRecordEnd.size()) {
    ++count;
  }
  return count;
}

}  // namespace tonadex::net

#include "app/list_rows.h"

#include <map>

#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::uint32_t kMostBytes = 0x7FFFFFFF;  // what a mark's end can hold

// Drawing takes time per character, and a file that is no melody may have a first line of 1 MiB.
constexpr std::size_t kMostShown = 500;

}  // namespace

ListRows::ListRows(std::initializer_list<ListRow> rows) {
  for (const ListRow& row : rows) {
    push_back(row);
  }
}

ListRow ListRows::operator[](std::size_t index) const {
  const Mark& mark = stored_->marks[index];
  const std::size_t begin = index == 0 ? 0 : stored_->marks[index - 1].end;
  return {std::string_view(stored_->texts).substr(begin, mark.end - begin), mark.itemData,
          mark.hint != 0};
}

void ListRows::reserve(std::size_t rows, std::size_t bytes) {
  Stored& stored = Own();
  stored.marks.reserve(stored.marks.size() + rows);
  stored.texts.reserve(stored.texts.size() + bytes);
}

void ListRows::push_back(const ListRow& row) {
  Stored& stored = Own();
  if (row.text.size() > kMostBytes - stored.texts.size()) {
    throw core::RunTimeError(core::ErrorNumber::kOverflow,
                             std::string(u8"la lista es demasiado larga"_w));
  }
  stored.texts += row.text;
  const auto end = static_cast<std::uint32_t>(stored.texts.size());
  stored.marks.push_back({end & kMostBytes, row.hint ? 1U : 0U, row.itemData});
}

void ListRows::SetLastData(std::int32_t itemData) {
  Own().marks.back().itemData = itemData;
}

bool operator==(const ListRows& a, const ListRows& b) {
  return a.stored_ == b.stored_ || (a.empty() && b.empty()) ||
         (a.stored_ != nullptr && b.stored_ != nullptr && *a.stored_ == *b.stored_);
}

ListRows::Stored& ListRows::Own() {
  if (stored_ == nullptr) {
    stored_ = std::make_shared<Stored>();
  } else if (stored_.use_count() > 1) {
    stored_ = std::make_shared<Stored>(*stored_);
  }
  return *stored_;
}

std::string RowLine(std::string_view text) {
  std::string line(text.substr(0, kMostShown));
  for (char& c : line) {
    const auto code = static_cast<unsigned char>(c);
    c = code < 0x20 || code == 0x7F ? ' ' : c;
  }
  return std::string(core::Trim(line));
}

std::string_view NameIn(std::string_view row) {
  return row.substr(0, row.find(" ("));
}

std::string ShownName(std::string_view row, bool doubtful) {
  const std::string_view name = NameIn(row), stem = core::RowStem(row);
  if (name.empty() || doubtful) {
    return std::string(row);
  }
  std::string joined(stem);
  std::erase(joined, ' ');
  return std::string(joined == name ? stem : name);
}

ListRows ShownRows(const ListRows& rows) {
  std::map<std::string_view, int> names;
  for (const ListRow& row : rows) {
    ++names[NameIn(row.text)];
  }
  ListRows shown;
  for (const ListRow& row : rows) {
    shown.push_back({ShownName(row.text, names[NameIn(row.text)] > 1), row.itemData, row.hint});
  }
  return shown;
}

}  // namespace tonadex::app

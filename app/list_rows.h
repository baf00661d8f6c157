#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tonadex::app {

struct ListRow {
  std::string_view text;      // Windows-1252
  std::int32_t itemData = 0;  // the number of the melody's file
  bool hint = false;          // a sentence for the user instead of a melody

  friend bool operator==(const ListRow&, const ListRow&) = default;
};

// The rows of a control. A server's listing may have millions, so all texts are in one string, each
// row needs eight bytes more, and copies share the rows until one of them changes. The text of a
// row is valid until these rows and all their copies have been changed or destroyed.
class ListRows {
 public:
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = ListRow;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = ListRow;

    Iterator() = default;
    Iterator(const ListRows* rows, std::size_t at) : rows_(rows), at_(at) {}
    ListRow operator*() const { return (*rows_)[at_]; }
    Iterator& operator++() {
      ++at_;
      return *this;
    }
    Iterator operator++(int) { return {rows_, at_++}; }
    friend bool operator==(const Iterator&, const Iterator&) = default;

   private:
    const ListRows* rows_ = nullptr;
    std::size_t at_ = 0;
  };

  ListRows() = default;
  ListRows(std::initializer_list<ListRow> rows);

  std::size_t size() const { return stored_ == nullptr ? 0 : stored_->marks.size(); }
  bool empty() const { return size() == 0; }
  ListRow operator[](std::size_t index) const;
  Iterator begin() const { return {this, 0}; }
  Iterator end() const { return {this, size()}; }

  void clear() { stored_.reset(); }
  // Reserves space for more rows, with `bytes` bytes of text in total.
  void reserve(std::size_t rows, std::size_t bytes);
  // Errors: core::RunTimeError (overflow) when the texts would exceed 2 GiB in all.
  void push_back(const ListRow& row);
  void SetLastData(std::int32_t itemData);

  // Constant time for copies that share their rows.
  friend bool operator==(const ListRows& a, const ListRows& b);

 private:
  struct Mark {
    std::uint32_t end : 31, hint : 1;  // of the row's text in `texts`
    std::int32_t itemData;

    friend bool operator==(const Mark&, const Mark&) = default;
  };
  struct Stored {
    std::string texts;
    std::vector<Mark> marks;

    friend bool operator==(const Stored&, const Stored&) = default;
  };

  Stored& Own();

  std::shared_ptr<Stored> stored_;  // null for no rows
};

// A row's text as a list shows it: shortened, trimmed, control characters replaced by blanks.
std::string RowLine(std::string_view text);

// The name in a row's text "name (stem)".
std::string_view NameIn(std::string_view row);
// The name as a person reads it: the row's has lost its blanks, and the stem may have kept them.
// The whole row where the name is missing or `doubtful`.
std::string ShownName(std::string_view row, bool doubtful);
// What a list shows for each melody: its name, and its file where several have the same name.
ListRows ShownRows(const ListRows& rows);

}  // namespace tonadex::app

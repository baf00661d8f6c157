#include "shell/win32/display_layout.h"

#include <algorithm>

namespace tonadex::shell {
namespace {

constexpr std::size_t kMarginGap = 2;

class Layouter {
 public:
  Layouter(std::string_view result, bool counted, std::size_t groups, std::size_t columns)
      : result_(result),
        gap_(counted ? 2 : 1),
        margin_(counted ? std::to_string(groups).size() : 0),
        columns_(std::max(columns, margin_ + kMarginGap + 1)) {}

  void Add(const app::ResultGroup& group) {
    const std::size_t found = result_.find(group.text, at_);
    if (found == std::string_view::npos || group.text.empty()) {
      return;
    }
    const std::size_t gap = freshLine_ || glued_ ? 0 : gap_;
    if (!freshLine_ && column_ + gap + group.text.size() > columns_) {
      EndLine();
    } else {
      Put(gap, ' ', at_);
    }
    if (freshLine_) {
      BeginLine(found);
    }
    PutGroup(group, found);
    at_ = found + group.text.size();
    glued_ = group.glued;
    if (group.lineEnd) {
      EndLine();
    }
  }

  DisplayText Finish() {
    while (!shown_.text.empty() && shown_.text.back() == '\n') {
      shown_.text.pop_back();
      shown_.origin.pop_back();
    }
    shown_.origin.push_back(at_);
    return std::move(shown_);
  }

 private:
  void Put(std::size_t count, char c, std::size_t origin) {
    shown_.text.append(count, c);
    shown_.origin.insert(shown_.origin.end(), count, origin);
    column_ += count;
  }

  void EndLine() {
    Put(1, '\n', at_);
    column_ = 0;
    freshLine_ = true;
  }

  void BeginLine(std::size_t origin) {
    freshLine_ = false;
    if (margin_ == 0) {
      return;
    }
    const std::string number = std::to_string(shown_.groups.size() + 1);
    const std::size_t from = shown_.text.size();
    Put(margin_ - number.size(), ' ', origin);
    for (const char digit : number) {
      Put(1, digit, origin);
    }
    Put(kMarginGap, ' ', origin);
    shown_.margin.push_back({from, shown_.text.size()});
  }

  void PutGroup(const app::ResultGroup& group, std::size_t found) {
    const std::size_t from = shown_.text.size();
    std::size_t heldFrom = from;
    for (std::size_t i = 0; i < group.text.size(); ++i) {
      if (column_ >= columns_) {
        Put(1, '\n', found + i);
        column_ = 0;
      }
      if (i == group.heldFrom) {
        heldFrom = shown_.text.size();
      }
      Put(1, group.text[i], found + i);
      if (group.held() && i + 1 == group.heldTo) {
        shown_.held.push_back({heldFrom, shown_.text.size()});
      }
    }
    shown_.groups.push_back({from, shown_.text.size()});
  }

  std::string_view result_;
  std::size_t gap_, margin_, columns_;
  DisplayText shown_;
  std::size_t at_ = 0;  // behind the last group, in the result
  std::size_t column_ = 0;
  bool freshLine_ = true, glued_ = false;
};

}  // namespace

DisplayText LayOutDisplay(std::string_view result, const std::vector<app::ResultGroup>& groups,
                          bool counted, std::size_t columns) {
  Layouter layouter(result, counted, groups.size(), columns);
  for (const app::ResultGroup& group : groups) {
    layouter.Add(group);
  }
  return layouter.Finish();
}

std::string_view ShownPart(std::string_view result, const DisplayText& shown, TextRange range) {
  const std::size_t last = shown.origin.size() - 1;
  const std::size_t from = shown.origin[std::min(range.from, last)];
  const std::size_t to = shown.origin[std::min(range.to, last)];
  return to > from ? result.substr(from, to - from) : std::string_view();
}

}  // namespace tonadex::shell

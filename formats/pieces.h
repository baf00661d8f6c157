#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

namespace tonadex::formats {

// A text of up to seven characters that is copied whole, in one move.
struct Piece {
  static constexpr std::size_t kRoom = 7;

  constexpr Piece() = default;
  constexpr Piece(std::string_view text) : size(static_cast<std::uint8_t>(text.size())) {
    std::ranges::copy(text, characters.begin());
  }
  constexpr Piece(const char* text) : Piece(std::string_view(text)) {}

  std::array<char, kRoom> characters{};
  std::uint8_t size = 0;
};

// Collects a writer's text. Characters are always stored and the end advances by those wanted:
// which of them a note needs is as unpredictable as the melody, and a mispredicted branch costs
// more than the stores. The caller says how many characters there can be at most.
class PieceText {
 public:
  PieceText(std::string start, std::size_t most) : text_(std::move(start)), size_(text_.size()) {
    text_.resize(size_ + most + sizeof(Piece));
  }

  void Put(char c, bool wanted = true) {
    text_[size_] = c;
    size_ += wanted ? 1 : 0;
  }
  void Put(const Piece& piece, bool wanted = true) {
    std::memcpy(text_.data() + size_, piece.characters.data(), Piece::kRoom);
    size_ += wanted ? piece.size : 0;
  }
  std::string Take() {
    text_.resize(size_);
    return std::move(text_);
  }

 private:
  std::string text_;
  std::size_t size_;
};

}  // namespace tonadex::formats

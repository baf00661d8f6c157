#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tonadex::formats {

// A string of up to seven characters that is copied in one eight-byte move.
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

// Appends to a string without branches: characters are always stored, and the end advances only
// past those wanted. Which of them a note needs is unpredictable, and a mispredicted branch costs
// more than the stores. The end pointer is the only member, so that it stays in a register.
class PieceWriter {
 public:
  // Reserves `most` characters; End removes the unused ones.
  PieceWriter(std::string& text, std::size_t most) {
    const std::size_t size = text.size();
    text.resize(size + most + sizeof(Piece));
    end_ = text.data() + size;
  }

  void Put(char c, bool wanted = true) {
    *end_ = c;
    end_ += wanted ? 1 : 0;
  }
  void Put(const Piece& piece) {
    std::memcpy(end_, piece.characters.data(), Piece::kRoom);
    end_ += piece.size;
  }
  void End(std::string& text) const { text.resize(static_cast<std::size_t>(end_ - text.data())); }

 private:
  char* end_;
};

}  // namespace tonadex::formats

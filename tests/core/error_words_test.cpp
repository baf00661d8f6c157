#include "core/error_words.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <stdexcept>

#include "core/runtime_error.h"
#include "core/windows1252.h"

namespace tonadex::core {
namespace {

TEST(ErrorWords, AreSpanishAndNameTheFile) {
  const auto full = std::make_error_code(std::errc::no_space_on_device);
  const auto odd = std::make_error_code(std::errc::no_child_process);
  EXPECT_EQ(ErrorWords(full), u8"el disco está lleno"_w);
  EXPECT_EQ(ErrorWords(odd), "error " + std::to_string(odd.value()));
  EXPECT_EQ(ErrorWords(std::bad_alloc()), "falta memoria");
  EXPECT_EQ(ErrorWords(std::out_of_range("at")), "fallo interno del programa");
  EXPECT_EQ(ErrorWords(std::filesystem::filesystem_error("copy", u8"/ñ", full)),
            u8"«/ñ»: el disco está lleno"_w);
  EXPECT_EQ(ErrorWords(std::system_error(full, "write")), u8"el disco está lleno"_w);
  EXPECT_EQ(ErrorWords(RunTimeError(ErrorNumber::kTransfer, "\xF1")), "\xF1");
  EXPECT_EQ(ErrorWords(std::runtime_error("ñ")), "\xF1") << "others may speak UTF-8";
}

}  // namespace
}  // namespace tonadex::core

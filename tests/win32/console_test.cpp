#include <gtest/gtest.h>

#include "tests/support/temp_folder.h"
#include "tests/win32/windows_process.h"

namespace tonadex::test::console_test {

constexpr std::string_view kMelody = "Año Nuevo:d=4,o=5,b=100:c,8d#.6,2p";

TEST(Terminal, ReadsAndWritesUtf8WhateverTheConsoleSpeaks) {
  const TempFolder folder;
  folder.Write(u8"año ñ.34", kMelody);
  const std::wstring file = (folder / u8"año ñ.34").wstring();
  const Finished run =
      RunToEnd(BuildFile("cli/tonadex-cli.exe"), L"convertir --telefono 3310 \"" + file + L"\"");
  EXPECT_EQ(run.code, 0U);
  EXPECT_EQ(run.output.substr(0, run.output.find("\n\nEsto")),
            "Melodia AñoNuevo (año ñ) para Nokia en formato de compositor.\n\n4c1 8.#d2 2- ");
  EXPECT_EQ(run.output.find('\r'), std::string::npos);
}

TEST(Terminal, TakesStandardInputByteForByteAndNamesWhatItCannotFind) {
  const TempFolder folder;
  folder.Write("entrada", std::string("x\x1A:d=4,o=5,b=100:c,d") + "\r\n");
  // The console's end-of-input character must not end the input here.
  const Finished run = RunToEnd(BuildFile("cli/tonadex-cli.exe"), L"comprobar - \"Z:\\no hay ñ.1\"",
                                folder / "entrada");
  EXPECT_EQ(run.code, 3U);
  EXPECT_TRUE(run.output.starts_with("-: correcto, 2 notas y pausas, 1 segundo\n")) << run.output;
  EXPECT_NE(run.output.find("no hay ñ.1"), std::string::npos) << run.output;
}

}  // namespace tonadex::test::console_test

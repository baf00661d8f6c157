#include "app/print_sheet.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tonadex::app {
namespace {

TEST(PrintSheet, FillsTheSourceAndPrints) {
  const test::TempFolder folder;
  folder.Write("print.rtf",
               "{\\rtf1 cambiatitulo cambiatitulo\\par cambiainstrucciones\\par cambiatempo "
               "CambiaTempo\\par cambiamelodia\\par cambiamodelo}");
  test::FakeRichTextBox box;
  PrintSheet(box, folder / "print.rtf",
             {.title = "Vals {x} cambiatempo",
              .instructions = "una\r\ndos \\b",
              .tempo = "120",
              .melody = "cambiatitulo cambiatempo",
              .model = " KWS"});
  ASSERT_EQ(box.printed.size(), 1u);
  // Values are not escaped, and a value that holds a later placeholder is filled in its turn.
  EXPECT_EQ(box.printed[0],
            "{\\rtf1 Vals {x} 120 Vals {x} 120\\par una\r\ndos \\b\\par 120 "
            "CambiaTempo\\par cambiatitulo cambiatempo\\par KWS.}");
}

}  // namespace
}  // namespace tonadex::app

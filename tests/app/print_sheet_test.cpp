#include "app/print_sheet.h"

#include <gtest/gtest.h>

#include <string>

#include "core/phone_catalogue.h"
#include "tests/core/table.h"
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

// The odd ones to the letter, and which models of the catalogue go without.
TEST(FormatLabel, BelongsToMostModels) {
  std::string without;
  for (const core::CatalogueRow& row : core::CatalogueRows()) {
    without += FormatLabel(row.model).empty() ? std::string(row.model) + "|" : "";
  }
  EXPECT_EQ(without,
            " EMelody| IMelody|120e,120t,T720|C300,C331,C332,C333|v60i, v60t, v120t|MIDI (cable)|");
  for (const test::Row& row : test::Table("Format labels")) {
    EXPECT_EQ(FormatLabel(row[0]), row[1]);
  }
}

}  // namespace
}  // namespace tonadex::app

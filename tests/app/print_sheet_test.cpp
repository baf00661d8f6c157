#include "app/print_sheet.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "core/phone_catalogue.h"
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
  EXPECT_EQ(FormatLabel("MDY (cable)"), "MItsubushi Trium>MDY.");
  EXPECT_EQ(FormatLabel(" RTTTL (cable-Tempo125)"), "Nokia>RTTTL, tempo 125.");
  EXPECT_EQ(FormatLabel("3210,3310,3330,3390,8250"), "Nokia>Compositor.");
  EXPECT_EQ(FormatLabel("T20e,T29,T39,T66,T68m"), "Emelody");
  EXPECT_EQ(FormatLabel("p280,v60,v66,v120c"), "Motorola>Pulsaciones Tipo 1");
  EXPECT_EQ(FormatLabel("KWS"), "");
  std::vector<std::string_view> without;
  for (const core::CatalogueRow& row : core::CatalogueRows()) {
    if (FormatLabel(row.model).empty()) {
      without.push_back(row.model);
    }
  }
  EXPECT_EQ(without, (std::vector<std::string_view>{" EMelody", " IMelody", "120e,120t,T720",
                                                    "C300,C331,C332,C333", "v60i, v60t, v120t",
                                                    "MIDI (cable)"}));
}

}  // namespace
}  // namespace tonadex::app

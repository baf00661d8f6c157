#include "server/melody_name.h"

#include <gtest/gtest.h>

#include <string>

#include "core/melody_file.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "net/upload.h"
#include "tests/core/table.h"
#include "tests/support/parsed_listing.h"

namespace tonadex::server::melody_name_test {

using std::string;

string Parsed(const string& fileName) {
  const auto name = ParseMelodyName(fileName);
  return name ? string(name->stem) + "," + std::to_string(name->number) : "";
}

TEST(ParseMelodyName, TakesOrRefuses) {
  for (const test::Row& row : test::Table("Names")) {
    for (const std::string_view name : core::SplitText(row[0], ';')) {
      EXPECT_EQ(Parsed(core::FromUtf8(name)), core::FromUtf8(row[1])) << name;
    }
  }
  EXPECT_EQ(Parsed(string(197, 'x') + ".12"), string(197, 'x') + ",12");
  for (const string& refused : {string(198, 'x') + ".12", string(80, '\x80') + ".12",
                                string("a\0b.12", 6), string("a\nb.12")}) {
    EXPECT_EQ(Parsed(refused), "");
  }
}

void ExpectRecord(const string& line, const string& fileName, const string& description,
                  const string& rowText) {
  SCOPED_TRACE(line);
  const string record = Record(Description(line, ParseMelodyName(fileName)->stem), fileName);
  EXPECT_EQ(record, description + " (" + fileName + ")498");
  const net::Listing listing = net::ParseListing(record, true);
  ASSERT_EQ(listing.rows.size(), 1u);
  EXPECT_EQ(listing.rows[0].text, rowText);
  EXPECT_EQ(core::MelodyFileName(listing.rows[0].text, listing.rows[0].number), fileName);
}

TEST(Record, LeadsClientsBackToTheFile) {
  for (const test::Row& row : test::Table("Records")) {
    ExpectRecord(row[0], row[1], row[2], row[3]);
  }
  ExpectRecord(
      "a\tb\x01"
      "c:",
      "a.25", "a b c", "a b c (a)");
  ExpectRecord(string(5000, 'x') + ":", "a.25", string(100, 'x'), string(100, 'x') + " (a)");
}

TEST(UploadFault, NamesTheFault) {
  for (const test::Row& row : test::Table("Uploads")) {
    const string contents = core::FromUtf8(row[1]);
    for (const std::string_view text : core::SplitText(contents, ';')) {
      const string name = row[0] == "=" ? net::UploadKey("Tema", text) : core::FromUtf8(row[0]);
      const string fault = core::ToUtf8(UploadFault(name, text));
      EXPECT_TRUE(fault.starts_with(row[2])) << text << ": " << fault;
      EXPECT_EQ(fault.empty(), row[2].empty()) << text << ": " << fault;
    }
  }
}

}  // namespace tonadex::server::melody_name_test

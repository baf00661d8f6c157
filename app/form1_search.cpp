#include "app/form1.h"

#include <utility>

#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "net/addresses.h"
#include "net/download.h"
#include "net/listing.h"
#include "net/upload.h"

// The melody server: search, random pick, download and upload.
namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::string_view kDownloaded =
    u8"La melodía se ha bajado correctamente. Puedes verla en tu repertorio"_w;

net::Fetch FetchThrough(Program& program) {
  return [&program](std::string_view path) { return Request(program, path); };
}

}  // namespace

void Form1::ReadListing(std::string_view address, bool stemAlone) {
  List1.Clear();
  // A failed request leaves Text1 as it was, and that is what is read.
  core::SkipErrors([&] { Text1.text = Request(program_, address); });
  program_.services.shell.DoEvents();
  List1.rows.reserve(net::CountRecords(Text1.text), Text1.text.size());
  net::ListingEnd left = net::ReadListing(
      Text1.text, stemAlone,
      [this](std::string_view text, std::int32_t number) { List1.AddRow(text, number); });
  if (!List1.rows.empty()) {
    Text2.text = std::move(left.record);
    Text3.text = left.number;
  } else {
    for (std::size_t i = 0; i < net::kHintCount; ++i) {
      List1.AddRow(net::HintRow(i), 0, true);
    }
  }
  // An assigned text would keep the reply's memory; `left` lies in it.
  std::string(left.rest).swap(Text1.text);
}

void Form1::picabuscar_Click() {
  ReadListing(net::SearchAddress(txtbuscar.text), true);
}

void Form1::picazar_Click() {
  ReadListing(net::kRandomPath, false);
}

void Form1::picdescargar_Click() {
  const std::string row(List1.SelectedText());
  if (row.empty() || net::IsHintRow(row)) {
    return;
  }
  net::DownloadMelody(FetchThrough(program_), program_.MelodyFolder(), row, List1.SelectedData(),
                      Text1.text);
  // Shown whatever the server sent, as it always has been.
  core::MsgBox(kDownloaded, core::Icon::kInformation);
}

void Form1::subemelodia(const std::string& nombre) {
  net::UploadMelody(FetchThrough(program_), nombre, melodiasube, Text1.text);
}

}  // namespace tonadex::app

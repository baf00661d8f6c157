#include "app/pages/search_page.h"

#include <array>

#include "app/form1.h"
#include "app/layout.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "net/addresses.h"
#include "net/download.h"
#include "net/listing.h"
#include "platform/message_box.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr std::string_view kEmptySearch =
    u8"Escribe unas palabras y pulsa Buscar, o prueba suerte con Al azar."_w;
constexpr std::string_view kDownloaded =
    u8"La melodía se ha bajado correctamente. Puedes verla en tu repertorio"_w;

constexpr auto kRows = std::to_array<ControlInfo>({
    {.name = "txtbuscar",
     .member = &F::txtbuscar,
     .look = Look::kLine,
     .help = u8"Palabras del nombre de la melodía"_w,
     .spoken = u8"Palabras que buscar"_w,
     .on = {Event::kEnter, &F::picabuscar_Click}},
    {.name = "picabuscar",
     .member = &F::picabuscar,
     .look = Look::kButton,
     .caption = "Bu&scar",
     .help = "Buscar estas palabras en el servidor",
     .icon = "buscar",
     .primary = true,
     .on = {Event::kClick, &F::picabuscar_Click}},
    {.name = "picazar",
     .member = &F::picazar,
     .look = Look::kButton,
     .caption = "Al a&zar",
     .help = u8"Unas melodías al azar"_w,
     .icon = "azar",
     .on = {Event::kClick, &F::picazar_Click}},
    {.name = "busyLine", .member = &F::busyLine, .look = Look::kBusyLine},
    {.name = "List1",
     .member = &F::List1,
     .look = Look::kList,
     .spoken = u8"Melodías"_w,
     .on = {Event::kClick, &F::List1_Click},
     .also = {Event::kActivate, &F::List1_DblClick}},
    {.name = "picdescargar",
     .member = &F::picdescargar,
     .look = Look::kButton,
     .caption = "&Descargar",
     .help = u8"Guardar la melodía elegida en tu repertorio"_w,
     .icon = "bajar",
     .on = {Event::kClick, &F::picdescargar_Click}},
    {.name = "Text1", .member = &F::Text1, .look = Look::kStorage},
    {.name = "Text2", .member = &F::Text2, .look = Look::kStorage},
    {.name = "Text3", .member = &F::Text3, .look = Look::kStorage},
});

}  // namespace

std::span<const ControlInfo> SearchPage::Rows() {
  return kRows;
}

Part SearchPage::Layout() {
  return Column({
                    Row({The(&F::txtbuscar).Weight(1), The(&F::picabuscar), The(&F::picazar)}),
                    The(&F::busyLine),
                    The(&F::List1).Weight(1),
                    Row({Stretch(), The(&F::picdescargar)}),
                })
      .Margins(look::kPageMargin, look::kGrid, look::kPageMargin);
}

void SearchPage::RefreshSearch() {
  if (state_.paginaactual == kSearchPage) {
    state_.List1.invitation = kEmptySearch;
  }
  busyLine.checked = state_.program.busy;
}

void SearchPage::ReadListing(std::string_view address, bool stemAlone) {
  state_.List1.Clear();
  // A failed request leaves Text1 as it was, and that is what is read.
  core::SkipErrors([&] { state_.Text1.text = Request(state_.program, address); });
  state_.program.services.shell.DoEvents();
  const net::Listing listing = net::ParseListing(state_.Text1.text, stemAlone);
  for (const net::ListingRow& row : listing.rows) {
    state_.List1.AddRow(row.text, row.number);
  }
  state_.Text1.text = listing.rest;
  if (!listing.rows.empty()) {
    state_.Text2.text = listing.record;
    state_.Text3.text = listing.number;
  } else {
    for (std::size_t i = 0; i < net::kHintCount; ++i) {
      state_.List1.AddRow(net::HintRow(i));
      state_.List1.rows.back().hint = true;
    }
  }
}

void SearchPage::picabuscar_Click() {
  ReadListing(net::SearchAddress(txtbuscar.text), true);
}

void SearchPage::picazar_Click() {
  ReadListing(net::kRandomPath, false);
}

void SearchPage::picdescargar_Click() {
  const std::string row(state_.List1.SelectedText());
  if (row.empty() || net::IsHintRow(row)) {
    return;
  }
  net::DownloadMelody(state_.Fetch(), state_.program.MelodyFolder(), row,
                      state_.List1.SelectedData(), state_.Text1.text);
  // Shown whatever the server sent, as it always has been.
  platform::MsgBox(kDownloaded, platform::Icon::kInformation);
}

}  // namespace tonadex::app

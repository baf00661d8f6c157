#include "app/pages/search_page.h"

#include <array>
#include <utility>

#include "app/form1.h"
#include "app/layout.h"
#include "core/message_box.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "net/addresses.h"
#include "net/download.h"
#include "net/listing.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr std::string_view kEmptySearch =
    u8"Escribe unas palabras y pulsa Buscar, o prueba suerte con Al azar."_w;
constexpr std::string_view kDownloaded =
    u8"La melodía se ha bajado correctamente. Puedes verla en tu repertorio"_w;

constexpr std::string_view kAfterScheme = "://";
constexpr std::string_view kNoAnswer = ". Lo que ves no es una respuesta.";
constexpr std::string_view kNoMelody = u8". Lo que se ha guardado no es la melodía."_w;

constexpr ControlInfo Search() {
  ControlInfo box =
      Row(Look::kLine, "txtbuscar", &F::txtbuscar, u8"Palabras que buscar"_w,
          {Event::kEnter, &F::picabuscar_Click}, {}, u8"Palabras del nombre de la melodía"_w);
  box.below = &F::List1;
  return box;
}

constexpr auto kRows = std::to_array<ControlInfo>({
    Search(),
    Button(Look::kPrimary, "picabuscar", &F::picabuscar, "Bu&scar", "buscar",
           "Buscar estas palabras en el servidor", &F::picabuscar_Click),
    Button(Look::kButton, "picazar", &F::picazar, "Al a&zar", "azar", u8"Unas melodías al azar"_w,
           &F::picazar_Click),
    Button(Look::kButton, "picdescargar", &F::picdescargar, "&Descargar", "bajar",
           u8"Guardar la melodía elegida en tu repertorio"_w, &F::picdescargar_Click),
    Words("serverLine", &F::serverLine, "", Font::kBody, Tone::kMuted),
    Row(Look::kStorage, "Text1", &F::Text1),
    Row(Look::kStorage, "Text2", &F::Text2),
    Row(Look::kStorage, "Text3", &F::Text3),
});

}  // namespace

std::span<const ControlInfo> SearchPage::Rows() {
  return kRows;
}

Part SearchPage::Layout(bool /*wide*/) {
  Part search = Column({
      Row({The(&F::txtbuscar).Weight(1), The(&F::picabuscar), The(&F::picazar)}),
      The(&F::List1).Weight(1),
      Row({The(&F::serverLine).Weight(1), The(&F::picdescargar)}),
  });
  return Centred(std::move(search), look::kMeasure)
      .Margins(look::kPageMargin, look::kGrid, look::kPageMargin);
}

void SearchPage::ClearSearch() {
  state_.List1.Clear();
  serverLine.caption.clear();
}

void SearchPage::RefreshSearch() {
  if (state_.paginaactual == kSearchPage) {
    state_.List1.invitation = kEmptySearch;
  }
}

std::string SearchPage::ServerWords(bool replied, std::string_view consequence) const {
  const int status = state_.program.services.Inet1.LastStatus();
  if (replied && status / 100 == 2) {
    return {};
  }
  std::string words = "El servidor no responde";
  if (replied) {
    words = "El servidor responde con el error " + std::to_string(status);
  }
  const std::string_view base = state_.program.serverBase;
  const std::size_t scheme = base.find(kAfterScheme);
  words.append(": ").append(scheme == base.npos ? base : base.substr(scheme + kAfterScheme.size()));
  return words.append(consequence);
}

void SearchPage::ReadListing(std::string_view address, bool stemAlone) {
  state_.List1.Clear();
  // After a failed request the old text of Text1 is read again.
  const bool replied =
      core::SkipErrors([&] { state_.Text1.text = Request(state_.program, address); });
  serverLine.caption = ServerWords(replied, kNoAnswer);
  state_.program.services.shell.DoEvents();
  state_.List1.rows.reserve(net::CountRecords(state_.Text1.text), state_.Text1.text.size());
  net::ListingEnd left = net::ReadListing(
      state_.Text1.text, stemAlone,
      [this](std::string_view text, std::int32_t number) { state_.List1.AddRow(text, number); });
  if (!state_.List1.rows.empty()) {
    state_.Text2.text = std::move(left.record);
    state_.Text3.text = left.number;
  } else {
    for (std::size_t i = 0; i < net::kHintCount; ++i) {
      state_.List1.AddRow(net::HintRow(i), 0, true);
    }
  }
  // Swapping frees the memory of the reply; `left.rest` is a view into it.
  std::string(left.rest).swap(state_.Text1.text);
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
  bool replied = false;
  const auto fetch = [&replied, ask = state_.Fetch()](std::string_view path) {
    std::string reply = ask(path);
    replied = true;
    return reply;
  };
  net::DownloadMelody(fetch, state_.program.MelodyFolder(), state_.program.BinFolder(), row,
                      state_.List1.SelectedData(), state_.Text1.text);
  serverLine.caption = ServerWords(replied, kNoMelody);
  // Shown whatever the server sent: deliberate.
  core::MsgBox(kDownloaded, core::Icon::kInformation);
}

}  // namespace tonadex::app

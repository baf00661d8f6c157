#include "app/rtttl_check.h"

#include <optional>

#include "core/text.h"
#include "core/windows1252.h"
#include "net/upload.h"
#include "nokia3210/cnokia.h"
#include "phones/formats.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr std::string_view kBadCharacters =
    u8"No se podrá subir: no puede contener «/», «\\», «?», «'» ni «&»."_w;
constexpr std::string_view kStopInName =
    u8"No se podrá subir: el nombre no puede contener puntos."_w;
constexpr std::string_view kOtherOrder =
    u8"No se podrá subir: la cabecera tiene que empezar por «d=»."_w;

// What keeps a melody that can be played from the server, if anything does.
std::optional<phones::RtttlFault> UploadFault(std::string_view text) {
  const std::size_t nameEnd = text.find(':');
  if (net::HasStopInName(text)) {
    return phones::RtttlFault{{text.find('.'), 1}, 0, std::string(kStopInName)};
  }
  if (net::IsUploadable(text, net::UploadKey(text.substr(0, nameEnd), text))) {
    return std::nullopt;
  }
  const std::size_t bad = text.find_first_of(net::kBreaksAddress);
  return bad == text.npos ? phones::RtttlFault{{nameEnd + 1, 0}, 0, std::string(kOtherOrder)}
                          : phones::RtttlFault{{bad, 1}, 0, std::string(kBadCharacters)};
}

// The first entry of the converter's log without its source.
std::string FirstError(std::string_view log) {
  log = log.substr(0, log.find('\r'));
  const std::size_t source = log.find("] ");
  return std::string(source == std::string_view::npos ? log : log.substr(source + 2));
}

}  // namespace

phones::MelodyCheck RtttlCheck(std::string_view text) {
  phones::MelodyCheck check = phones::CheckRtttl(text);
  if (check.verdict != Verdict::kGood) {
    return check;
  }
  if (auto fault = UploadFault(text)) {
    check.verdict = Verdict::kBad;
    check.sentence = fault->sentence;
    check.faults.push_back(*std::move(fault));
  } else {
    check.sentence += ": se puede escuchar y subir.";
  }
  return check;
}

Check ComposerCheck(std::string_view composerText) {
  nokia3210::CNokia converter;
  converter.SetOriginalText(composerText);
  converter.Convert();
  const std::size_t count = converter.NoteCount();
  const std::string limit = std::to_string(phones::kComposerNotes);
  if (!core::Trim(converter.ConversionErrors()).empty()) {
    return {Verdict::kBad, FirstError(converter.ConversionErrors()) + "."};
  }
  if (count > phones::kComposerNotes) {
    return {Verdict::kBad,
            std::to_string(count) + std::string(u8" notas: el móvil admite "_w) + limit + "."};
  }
  return {count == 0 ? Verdict::kNothing : Verdict::kGood,
          std::to_string(count) + " de " + limit + " notas"};
}

}  // namespace tonadex::app

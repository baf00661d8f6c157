#include "net/upload.h"

#include <algorithm>
#include <array>

#include "core/melody_file.h"
#include "core/message_box.h"
#include "core/text.h"
#include "net/addresses.h"

namespace tonadex::net {
namespace {

constexpr std::array<std::string_view, 4> kHeaderParts = {",", ",b=", ",o=", ":d="};

// Spelled without accents, as these messages have always been.
constexpr std::string_view kAlreadyThereMessage =
    "La melodia NO se ha subido, pues ya existia en nuestro servidor.";
constexpr std::string_view kStopInNameMessage =
    "La melodia NO se ha subido, pues no puede contener puntos en su nombre.";
constexpr std::string_view kSentMessage =
    "Melodia subida correctamente. Gracias por colaborar con Tonadex.";

std::string NotValidMessage(std::string_view name) {
  return "La melodia " + std::string(name) + " NO es una melodia RTTTL valida.";
}

}  // namespace

std::string UploadKey(std::string_view name, std::string_view text) {
  return std::string(name) + "." + std::to_string(text.size());
}

bool IsUploadable(std::string_view text, std::string_view key) {
  const auto clean = [](std::string_view part) {
    return part.find_first_of(kBreaksAddress) == std::string_view::npos;
  };
  return clean(text) && clean(key) && std::ranges::all_of(kHeaderParts, [text](auto part) {
           return core::Contains(text, part);
         });
}

bool HasStopInName(std::string_view text) {
  const std::ptrdiff_t stop = core::InStr(text, ".");
  return stop != 0 && stop <= core::InStr(text, "=");
}

UploadResult UploadMelody(const Fetch& fetch, std::string_view name, std::string& text,
                          std::string& listing) {
  listing = fetch(kFullListingPath);
  const std::string key = UploadKey(name, text);
  if (core::Contains(listing, key)) {
    core::MsgBox(kAlreadyThereMessage, core::Icon::kInformation);
    return UploadResult::kAlreadyThere;
  }
  if (!IsUploadable(text, key)) {
    core::MsgBox(NotValidMessage(name), core::Icon::kExclamation);
    return UploadResult::kNotValid;
  }
  core::ReplaceAll(text, "#", core::kSharpEscape);
  if (HasStopInName(text)) {
    core::MsgBox(kStopInNameMessage);
    return UploadResult::kStopInName;
  }
  fetch(UploadAddress(key, text));
  core::MsgBox(kSentMessage, core::Icon::kInformation);
  return UploadResult::kSent;
}

}  // namespace tonadex::net

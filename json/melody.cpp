#include "json/melody.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "app/melody_notes.h"
#include "core/windows1252.h"
#include "json/text.h"
#include "phones/rtttl_check.h"

namespace tonadex::json {
namespace {

using Json = nlohmann::ordered_json;
using core::ToUtf8;

// Rounds to hundredths (of a millisecond or another unit), enough for drawing and playing.
double Rounded(double value) {
  return std::round(value * 100) / 100;
}

Json NoteObject(const app::DrawnNote& note) {
  return {{"nota", note.number + 1},
          {"inicio", Rounded(note.start)},
          {"duracion", Rounded(note.length)},
          {"tono", note.pause ? Json() : Json(note.pitch)},
          {"nombre", note.pause ? "silencio" : ToUtf8(note.name)},
          {"puntillo", note.dotted},
          {"fuera", note.outside}};
}

}  // namespace

std::string CheckJson(std::string_view rtttl) {
  const phones::MelodyCheck check = phones::CheckRtttl(rtttl);
  Json faults = Json::array();
  for (const phones::RtttlFault& fault : check.faults) {
    faults.push_back({{"desde", fault.where.start},
                      {"hasta", fault.where.start + fault.where.length},
                      {"nota", fault.note},
                      {"frase", ToUtf8(fault.sentence)}});
  }
  return Json{{"correcta", check.verdict == phones::Verdict::kGood},
              {"frase", ToUtf8(check.sentence)},
              {"fallos", std::move(faults)},
              {"nombre", ToUtf8(check.title)},
              {"notas", check.notes},
              {"pausas", check.pauses},
              {"tempo", Rounded(check.tempo)},
              {"segundos", Rounded(check.seconds)}}
      .dump();
}

std::string NotesJson(std::string_view rtttl, std::string_view model) {
  const app::Drawing drawing = app::MelodyDrawing(rtttl, model);
  Json notes = Json::array();
  for (const app::DrawnNote& note : drawing.notes) {
    notes.push_back(NoteObject(note));
  }
  return Json{{"notas", std::move(notes)},
              {"duracion", Rounded(drawing.length)},
              {"compas", Rounded(drawing.barLength)},
              {"palabras", ToUtf8(app::DrawingInWords(drawing))}}
      .dump();
}

void AppendRepair(std::string& json, const phones::RepairedMelody& melody) {
  AppendJson(json += R"("nombre":)", melody.name);
  AppendJson(json += R"(,"rtttl":)", melody.text);
  json += R"(,"cambios":[)";
  for (const std::string& change : melody.changes) {
    AppendJson(json += json.ends_with('[') ? "" : ",", change);
  }
  json += ']';
}

std::string RepairsJson(std::span<const phones::RepairedMelody> melodies) {
  std::string json = R"({"melodias":[)";
  for (const phones::RepairedMelody& melody : melodies) {
    AppendRepair(json += json.ends_with('[') ? "{" : ",{", melody);
    json += '}';
  }
  return json += "]}";
}

}  // namespace tonadex::json

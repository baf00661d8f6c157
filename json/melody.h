#pragma once

#include <span>
#include <string>
#include <string_view>

#include "phones/rtttl_repair.h"

// Properties of a melody as JSON objects in UTF-8. `rtttl` is Windows-1252 with sharps as "#".
namespace tonadex::json {

// The result of phones::CheckRtttl:
// {"correcta":…,"frase":…,"fallos":[{"desde":…,"hasta":…,"nota":…,"frase":…},…],"nombre":…,
// "notas":…,"pausas":…,"tempo":…,"segundos":…}.
std::string CheckJson(std::string_view rtttl);

// {"notas":[{"nota":…,"inicio":…,"duracion":…,"tono":…,"nombre":…,"puntillo":…,"fuera":…},…],
// "duracion":…,"compas":…,"palabras":…}; times in ms. Notes count from 1; unreadable ones are left
// out; a pause's pitch is null. `model` is a model text of the catalogue, or "" (see
// app::MelodyDrawing).
std::string NotesJson(std::string_view rtttl, std::string_view model);

// Appends members of an object: `"nombre":…,"rtttl":…,"cambios":[…]`.
void AppendRepair(std::string& json, const phones::RepairedMelody& melody);

// {"melodias":[{…},…]} with the members of AppendRepair.
std::string RepairsJson(std::span<const phones::RepairedMelody> melodies);

}  // namespace tonadex::json

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "cli/context.h"

namespace tonadex::cli {

// The arguments of the chosen command, in UTF-8; each command uses some of them (run.cpp).
struct Arguments {
  std::optional<std::string> phone, model, output, format;
  std::string file, row, brand, wav, pdf, printer, server, folder, semitones;
  std::vector<std::string> words;  // files, search words or melody names
  bool allModels = false, json = false, lines = false, resultOnly = false, steps = false,
       beep = false, instrument = false, intoRepertoire = false, voices = false;
  std::uint16_t voice = 0, firstBar = 0, mostNotes = 0;  // 0 if not given
  const char* const* typed = nullptr;  // the whole command line, terminated by nullptr

  bool HasOnePhone() const { return phone.has_value() != model.has_value(); }
};

// The commands. A Failure thrown by a command ends it; a failure of one file of several is reported
// and kept in the exit code.
void ListModels(Context& context, const Arguments& arguments);
void Convert(Context& context, const Arguments& arguments);
void ConvertToFiles(Context& context, const Arguments& arguments);
void Import(Context& context, const Arguments& arguments);
void Check(Context& context, const Arguments& arguments);
void Repair(Context& context, const Arguments& arguments);
void Transpose(Context& context, const Arguments& arguments);
void SaveMidi(Context& context, const Arguments& arguments);
void PlayFile(Context& context, const Arguments& arguments);  // not on Windows
void Search(Context& context, const Arguments& arguments);
void ListRandom(Context& context, const Arguments& arguments);
void Download(Context& context, const Arguments& arguments);
void Upload(Context& context, const Arguments& arguments);
void Print(Context& context, const Arguments& arguments);

// The model that --telefono or --modelo selects, Windows-1252; the text of --modelo is returned
// unchecked. Throws Failure, with the candidates, when --telefono matches no model or several.
std::string ChosenModel(const Arguments& arguments);

}  // namespace tonadex::cli

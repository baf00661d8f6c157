#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/context.h"

namespace CLI {
class Option;
}

// Options that several commands have; their values are UTF-8, as typed.
namespace tonadex::cli {

struct PhoneChoice {
  std::string phone, model;
  const CLI::Option *phoneOption = nullptr, *modelOption = nullptr;

  bool IsGiven() const;  // by either option
  bool IsOne() const;    // by exactly one of them
};

// --telefono and --modelo.
void AddPhone(CLI::App& command, PhoneChoice& choice);

// The model that was chosen, Windows-1252. None, after reporting the candidates, when the name of
// --telefono means no model or several; any text of --modelo is given as it is.
std::optional<std::string> ChosenModel(Context& context, const PhoneChoice& choice);

// FICHERO: the one melody of a command, or any number of them.
void AddMelody(CLI::App& command, std::string& file);
void AddMelodies(CLI::App& command, std::vector<std::string>& files);

}  // namespace tonadex::cli

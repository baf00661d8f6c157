#pragma once

#include <span>
#include <string>

#include "phones/typing_steps.h"

namespace tonadex::json {

// Appends a member of a JSON object in UTF-8: `,"pasos":[{"grupo":"(3)9**","teclas":[{"tecla":"3",
// "veces":1,"mantener":true},…],"nota":4,"palabras":"mi, negra, …","pantalla":"4.e1"},…]`. Notes
// count from 1, as in the notices; only a Nokia has "pantalla". The groups, each followed by a
// blank (iMelody notes by nothing), make up "resultado".
void AppendStepsJson(std::string& json, std::span<const phones::TypingStep> steps);

}  // namespace tonadex::json

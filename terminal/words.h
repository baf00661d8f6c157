#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace tonadex::terminal {

// What every terminal program says in Spanish where the library for arguments has English words.
// Texts are UTF-8.

// The help of `app` and of its commands; called once all options are there.
void TranslateHelp(CLI::App& app);

// What is wrong with the arguments, and with which: "hay un argumento que no se entiende: --x".
std::string UseError(const CLI::ParseError& error);

}  // namespace tonadex::terminal

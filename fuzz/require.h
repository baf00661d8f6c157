#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

// Ends the fuzz target when what must hold does not.
inline void Require(bool holds, std::string_view what) {
  if (!holds) {
    std::cerr << "fuzz: " << what << std::endl;
    std::abort();
  }
}

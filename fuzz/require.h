#pragma once

#include <cstdlib>
#include <iostream>
#include <string_view>

// Aborts the fuzz target when the condition is false.
inline void Require(bool holds, std::string_view what) {
  if (!holds) {
    std::cerr << "fuzz: " << what << std::endl;
    std::abort();
  }
}

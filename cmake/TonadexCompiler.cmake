# Compiler warnings, sanitizers, and tonadex_library: one static library per folder.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_VERIFY_INTERFACE_HEADER_SETS ON)

set(TONADEX_SANITIZE "" CACHE STRING "Sanitizers, comma separated: address,undefined or thread")

add_library(tonadex_compiler INTERFACE)
target_compile_options(tonadex_compiler INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # False positives on std::string and on std::optional of it.
  target_compile_options(tonadex_compiler INTERFACE -Wno-restrict -Wno-maybe-uninitialized)
endif()
if(TONADEX_SANITIZE)
  target_compile_options(tonadex_compiler INTERFACE
    -fsanitize=${TONADEX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tonadex_compiler INTERFACE -fsanitize=${TONADEX_SANITIZE})
  target_compile_definitions(tonadex_compiler INTERFACE _GLIBCXX_ASSERTIONS)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(tonadex_compiler INTERFACE
      -Wno-maybe-uninitialized)  # false positives inside std::regex
  endif()
endif()

if(CMAKE_CXX_CLANG_TIDY)  # generated code is not checked
  file(WRITE ${CMAKE_BINARY_DIR}/.clang-tidy "Checks: '-*,misc-definitions-in-headers'\n")
endif()

# tonadex_library(<folder> SOURCES … HEADERS … LINK …): the static library of a folder. LINK lists
# all folders that it may include; every header must compile on its own.
function(tonadex_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HEADERS;LINK" ${ARGN})
  add_library(tonadex_${name} STATIC ${ARG_SOURCES})
  target_sources(tonadex_${name} PUBLIC FILE_SET HEADERS
    BASE_DIRS ${PROJECT_SOURCE_DIR} FILES ${ARG_HEADERS})
  target_include_directories(tonadex_${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(tonadex_${name} PUBLIC ${ARG_LINK} PRIVATE tonadex_compiler)
endfunction()

# cmake -DROOT=<source folder> -P check_includes.cmake
# Fails, naming each place, when a folder includes what the table below does not allow, or when a
# folder with sources is not in the table.
cmake_minimum_required(VERSION 3.25)

# Each layer, from the bottom, with the layers that it may include in addition to itself: they are
# above it in the table, so no dependency points upward. A folder below platform/, shell/ or files/
# is a layer of its own. "pure" layers include nothing from outside except the C++20 standard
# library.
set(table
  "core            pure:"
  "files           pure: core"
  "files/posix         : files core"
  "files/win32         : files core"
  "rtf             pure: core"
  "formats         pure: core"
  "midi            pure: formats files core"
  "nokia3210       pure: formats core"
  "phones          pure: nokia3210 midi formats files core"
  "import          pure: phones nokia3210 midi formats core"
  "net             pure: files core"
  "app             pure: net import phones rtf nokia3210 midi formats files core"
  "json                : app phones core"
  "data                : core"
  "platform/common pure:"
  "platform/http       : net core"
  "platform/sound      : midi files core"
  "platform/posix      : platform/common app files core"
  "platform/win32      : platform/common app midi files core"
  "platform/qt         : app rtf files core"
  "terminal            : core"
  "server              : terminal json platform/common platform/win32 net import phones midi files core"
  "cli                 : terminal server json platform/common platform/http platform/posix platform/qt \
                         platform/sound platform/win32 app net import phones midi formats files core"
  "shell/common        : server app net core"
  "shell/qt            : shell/common platform/common platform/http platform/posix platform/qt \
                         platform/sound app rtf files core"
  "shell/win32         : shell/common platform/common platform/http platform/win32 app rtf files core")

# Reads the table into `layers`, <layer>_and_below and pure_<layer>.
set(layers "")
foreach(line IN LISTS table)
  string(REGEX MATCH "^([a-z0-9/]+) *(pure)? *:(.*)$" ignored "${line}")
  set(layer ${CMAKE_MATCH_1})
  set(pure_${layer} ${CMAKE_MATCH_2})
  string(REGEX MATCHALL "[a-z0-9/]+" below_${layer} "${CMAKE_MATCH_3}")
  foreach(below IN LISTS below_${layer})
    if(NOT below IN_LIST layers)
      message(FATAL_ERROR "The table lets ${layer} include ${below}, which is no layer below it")
    endif()
  endforeach()
  list(APPEND layers ${layer})
  set(${layer}_and_below ${layer} ${below_${layer}})
endforeach()

# The layer of a path relative to ROOT: its first two folders if they are a layer, else the first.
function(layer_of path result)
  string(REGEX MATCH "^([^/]+)/(([^/]+)/)?" ignored "${path}")
  set(${result} "${CMAKE_MATCH_1}" PARENT_SCOPE)
  if("${CMAKE_MATCH_1}/${CMAKE_MATCH_3}" IN_LIST layers)
    set(${result} "${CMAKE_MATCH_1}/${CMAKE_MATCH_3}" PARENT_SCOPE)
  endif()
endfunction()

# Whether a file of `layer` may hold this include line. A name without a folder is a header from
# outside or generated.
function(is_allowed layer line result)
  set(${result} FALSE PARENT_SCOPE)
  if(line MATCHES "^[ \t]*#[ \t]*include[ \t]*<([^>]*)>")
    if(NOT pure_${layer} OR CMAKE_MATCH_1 MATCHES "^[a-z_]+$")  # <vector>, but no <unistd.h>, <QString>
      set(${result} TRUE PARENT_SCOPE)
    endif()
  elseif(line MATCHES "^[ \t]*#[ \t]*include[ \t]*\"([^\"]*)\"")
    set(path "${CMAKE_MATCH_1}")
    layer_of("${path}" included)
    if(NOT path MATCHES "/")
      if(NOT pure_${layer})
        set(${result} TRUE PARENT_SCOPE)
      endif()
    elseif(NOT path MATCHES "\\.\\." AND included IN_LIST ${layer}_and_below)
      set(${result} TRUE PARENT_SCOPE)
    endif()
  endif()
endfunction()

set(checked 0)
set(refused "")
file(GLOB_RECURSE files RELATIVE ${ROOT} ${ROOT}/*.h ${ROOT}/*.hpp ${ROOT}/*.inc ${ROOT}/*.ipp
     ${ROOT}/*.cpp ${ROOT}/*.cc ${ROOT}/*.cxx)
list(FILTER files EXCLUDE REGEX "^(tests|fuzz|bench|build|dist)/")
foreach(file IN LISTS files)
  layer_of(${file} layer)
  math(EXPR checked "${checked} + 1")
  if(NOT layer IN_LIST layers)
    string(APPEND refused "\n  ${file}: its folder is no layer of the table")
    continue()
  endif()
  file(STRINGS ${ROOT}/${file} lines REGEX "^[ \t]*#[ \t]*include")
  foreach(line IN LISTS lines)
    is_allowed(${layer} "${line}" allowed)
    if(NOT allowed)
      string(APPEND refused "\n  ${file}: ${line}")
    endif()
  endforeach()
endforeach()

if(checked EQUAL 0)
  message(FATAL_ERROR "No source file under ${ROOT}")
elseif(refused)
  message(FATAL_ERROR "Includes against the layers:${refused}")
endif()
message(STATUS "${checked} files include only what lies below them")

# cmake -DROOT=<source folder> -P check_includes.cmake
# Fails, naming each place, when a library folder includes a folder above it or anything but the
# standard library. The other folders (shells, command line, server, platform/*, the system's calls
# of files/) are free.
cmake_minimum_required(VERSION 3.25)

# What each layer may include of ours. Layers are exact: "platform" holds the interfaces alone, and
# its folders (platform/posix, …) and those of files/ are layers of their own.
set(layers platform core files formats midi nokia3210 phones net app)
set(below_platform platform)
set(below_core core platform)
set(below_files files core platform)
set(below_formats formats core platform)
set(below_midi midi formats files core platform)
set(below_nokia3210 nokia3210 formats core platform)
set(below_phones phones formats midi nokia3210 files core platform)
set(below_net net files core platform)
set(below_app app net phones nokia3210 midi formats files core platform)

set(standard_headers
  algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono
  cinttypes climits clocale cmath codecvt compare complex concepts condition_variable coroutine
  csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque
  exception execution filesystem forward_list fstream functional future initializer_list iomanip
  ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource mutex
  new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator semaphore
  set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string
  string_view syncstream system_error thread tuple type_traits typeindex typeinfo unordered_map
  unordered_set utility valarray variant vector version)

# The layer of a path from ROOT: its first folder, or the one below platform/.
function(layer_of path result)
  if(path MATCHES "^((platform|files)/[^/]+|[^/]+)/")
    set(${result} ${CMAKE_MATCH_1} PARENT_SCOPE)
  else()
    set(${result} "" PARENT_SCOPE)
  endif()
endfunction()

# Whether a file of `layer` may hold this include line.
function(is_allowed layer line result)
  set(${result} FALSE PARENT_SCOPE)
  if(line MATCHES "^[ \t]*#[ \t]*include[ \t]*<([^>]*)>")
    if(CMAKE_MATCH_1 IN_LIST standard_headers)
      set(${result} TRUE PARENT_SCOPE)
    endif()
  elseif(line MATCHES "^[ \t]*#[ \t]*include[ \t]*\"([^\"]*)\"")
    layer_of("${CMAKE_MATCH_1}" included)
    if(NOT CMAKE_MATCH_1 MATCHES "\\.\\." AND included IN_LIST below_${layer})
      set(${result} TRUE PARENT_SCOPE)
    endif()
  endif()
endfunction()

set(checked 0)
set(refused "")
foreach(folder platform core files formats midi nokia3210 phones net app)
  file(GLOB_RECURSE files RELATIVE ${ROOT} ${ROOT}/${folder}/*)
  list(FILTER files INCLUDE REGEX "\\.(h|hpp|inc|ipp|cpp|cc|cxx)$")
  foreach(file IN LISTS files)
    layer_of(${file} layer)
    if(NOT layer IN_LIST layers)
      continue()
    endif()
    math(EXPR checked "${checked} + 1")
    file(STRINGS ${ROOT}/${file} lines REGEX "^[ \t]*#[ \t]*include")
    foreach(line IN LISTS lines)
      is_allowed(${layer} "${line}" allowed)
      if(NOT allowed)
        string(APPEND refused "\n  ${file}: ${line}")
      endif()
    endforeach()
  endforeach()
endforeach()

if(checked EQUAL 0)
  message(FATAL_ERROR "No source file under ${ROOT}")
elseif(refused)
  message(FATAL_ERROR "Includes against the layers:${refused}")
endif()
message(STATUS "${checked} files include only what lies below them")

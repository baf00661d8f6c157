# cmake -DPROGRAM=<tonadex.exe> -DVERSION=<file VERSION> -P check_windows_version.cmake
# The fixed part of the version resource: its signature, 1.0 as the structure's own version, then the
# file's and the product's version as two 32-bit words each, in little-endian hex digits.
cmake_minimum_required(VERSION 3.25)
file(STRINGS ${VERSION} version LIMIT_COUNT 1)
string(REPLACE "." ";" numbers "${version};0")

set(expected "")
foreach(index 1 0 3 2)
  list(GET numbers ${index} number)
  math(EXPR digits "0x10000 + ${number}" OUTPUT_FORMAT HEXADECIMAL)
  string(SUBSTRING ${digits} 3 2 high)
  string(SUBSTRING ${digits} 5 2 low)
  string(APPEND expected ${low}${high})
endforeach()

file(READ ${PROGRAM} bytes HEX)
string(TOLOWER "bd04effe00000100${expected}${expected}" expected)
string(FIND "${bytes}" "${expected}" found)
if(found EQUAL -1)
  message(FATAL_ERROR "${PROGRAM} has no version resource of ${version}")
endif()

# tonadex_embed(<target> <name>=<file> …): compiles the files into the target, which finds them by
# name with EmbeddedFile (server/embedded_file.h). Run as a script, it writes the source.
if(CMAKE_SCRIPT_MODE_FILE)
  set(arrays "")
  set(rows "")
  set(number 0)
  foreach(pair IN LISTS FILES)
    string(REGEX MATCH "^([^=]+)=(.+)$" ignored "${pair}")
    set(name ${CMAKE_MATCH_1})
    file(READ ${CMAKE_MATCH_2} hex HEX)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
    string(APPEND arrays "constexpr unsigned char kFile${number}[] = {${bytes}};\n")
    string(APPEND rows
      "    {\"${name}\", {reinterpret_cast<const char*>(kFile${number}), sizeof kFile${number}}},\n")
    math(EXPR number "${number} + 1")
  endforeach()
  file(WRITE ${OUTPUT} "#include \"server/embedded_file.h\"

namespace tonadex::server {
namespace {

${arrays}
struct File {
  std::string_view name, bytes;
};
const File kFiles[] = {
${rows}};

}  // namespace

std::string_view EmbeddedFile(std::string_view name) {
  for (const File& file : kFiles) {
    if (file.name == name) {
      return file.bytes;
    }
  }
  return {};
}

}  // namespace tonadex::server
")
  return()
endif()

function(tonadex_embed target)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/${target}_files.cpp)
  list(TRANSFORM ARGN REPLACE "^[^=]+=" "" OUTPUT_VARIABLE files)
  add_custom_command(OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} "-DFILES=${ARGN}" -DOUTPUT=${output}
            -P ${PROJECT_SOURCE_DIR}/cmake/EmbedFiles.cmake
    DEPENDS ${files} ${PROJECT_SOURCE_DIR}/cmake/EmbedFiles.cmake
    VERBATIM)
  target_sources(${target} PRIVATE ${output})
endfunction()

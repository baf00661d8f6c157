# tonadex_embed(<target> <name>=<file> …): compiles the files into the target, which finds them by
# name with EmbeddedFile (server/embedded_file.h), plain and compressed ("<name>.gz"). Run as a
# script, it writes the source.
if(CMAKE_SCRIPT_MODE_FILE)
  set(arrays "")
  set(rows "")
  set(number 0)
  macro(embed name hex)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
    string(APPEND arrays "constexpr unsigned char kFile${number}[] = {${bytes}};\n")
    string(APPEND rows
      "    {\"${name}\", {reinterpret_cast<const char*>(kFile${number}), sizeof kFile${number}}},\n")
    math(EXPR number "${number} + 1")
  endmacro()
  foreach(pair IN LISTS FILES)
    string(REGEX MATCH "^([^=]+)=(.+)$" ignored "${pair}")
    set(name ${CMAKE_MATCH_1})
    set(file ${CMAKE_MATCH_2})
    file(READ ${file} hex HEX)
    embed(${name} ${hex})
    file(ARCHIVE_CREATE OUTPUT ${OUTPUT}.gz PATHS ${file} FORMAT raw COMPRESSION GZip COMPRESSION_LEVEL 9)
    file(READ ${OUTPUT}.gz hex HEX)
    # Without the time in the header, so that every build gives the same bytes.
    string(SUBSTRING ${hex} 16 -1 rest)
    embed(${name}.gz 1f8b080000000000${rest})
  endforeach()
  file(REMOVE ${OUTPUT}.gz)
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

# What a Windows build uses of the building machine: header-only libraries, through a folder that
# links to them and to nothing else of /usr/include, and Wine, which runs the tests.

set(headers ${PROJECT_BINARY_DIR}/host-headers)
file(MAKE_DIRECTORY ${headers})
foreach(library boost CLI nlohmann)
  if(EXISTS /usr/include/${library} AND NOT EXISTS ${headers}/${library})
    file(CREATE_LINK /usr/include/${library} ${headers}/${library} SYMBOLIC)
  endif()
endforeach()

if(EXISTS ${headers}/boost)
  set(TONADEX_BOOST_INCLUDE_DIR ${headers} CACHE PATH "The folder that holds boost/" FORCE)
endif()

# offer_headers(<package> <folder> <target>): makes find_package(<package>) find the link.
function(offer_headers package folder target)
  if(EXISTS ${headers}/${folder})
    file(WRITE ${PROJECT_BINARY_DIR}/host-packages/${package}Config.cmake
      "if(NOT TARGET ${target})\n"
      "  add_library(${target} INTERFACE IMPORTED)\n"
      "  set_target_properties(${target} PROPERTIES\n"
      "    INTERFACE_SYSTEM_INCLUDE_DIRECTORIES \"${headers}\"\n"
      "    INTERFACE_INCLUDE_DIRECTORIES \"${headers}\")\n"
      "endif()\n")
    set(${package}_DIR ${PROJECT_BINARY_DIR}/host-packages CACHE PATH "" FORCE)
  endif()
endfunction()
offer_headers(CLI11 CLI CLI11::CLI11)
offer_headers(nlohmann_json nlohmann nlohmann_json::nlohmann_json)

# Tests run through a script that uses a Wine prefix of this build and prevents Wine's services from
# keeping the tests' pipes open.
configure_file(${CMAKE_CURRENT_LIST_DIR}/wine_run.sh.in ${PROJECT_BINARY_DIR}/wine_run.sh
  @ONLY FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
set(CMAKE_CROSSCOMPILING_EMULATOR ${PROJECT_BINARY_DIR}/wine_run.sh)

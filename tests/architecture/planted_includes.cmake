# cmake -DFOLDER=<scratch folder> -P planted_includes.cmake
# Writes one include at a time into a scratch tree and expects it to be refused, or accepted.
cmake_minimum_required(VERSION 3.25)

function(plant file include expected)
  file(REMOVE_RECURSE ${FOLDER})
  file(WRITE ${FOLDER}/${file} "#pragma once\n\n  # include ${include}  // planted\n")
  execute_process(
    COMMAND ${CMAKE_COMMAND} -DROOT=${FOLDER} -P ${CMAKE_CURRENT_LIST_DIR}/check_includes.cmake
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  string(FIND "${output}" "${file}: " named)
  if(expected STREQUAL "refused" AND (result EQUAL 0 OR named EQUAL -1))
    message(SEND_ERROR "${file} was allowed to include ${include}")
  elseif(expected STREQUAL "allowed" AND NOT result EQUAL 0)
    message(SEND_ERROR "${file} was not allowed to include ${include}: ${output}")
  endif()
endfunction()

plant(core/a.cpp "\"formats/ems.h\"" refused)
plant(core/a.h "\"text.h\"" refused)
plant(core/a.h "\"core/../app/form1.h\"" refused)
plant(core/a.cpp "<unistd.h>" refused)
plant(core/a.cpp "HEADER" refused)
plant(app/a.h "<QString>" refused)
plant(platform/a.h "\"core/text.h\"" refused)
plant(shell/qt/window/a.cpp "\"shell/win32/theme.h\"" refused)
plant(attic/a.cpp "<string>" refused)

plant(app/pages/a.cpp "\"phones/conversion.h\"" allowed)
plant(midi/a.cpp "<string_view>" allowed)
plant(files/posix/a.cpp "<fcntl.h>" allowed)
plant(shell/qt/window/a.cpp "\"shell/common/on_first_use.h\"" allowed)
file(REMOVE_RECURSE ${FOLDER})

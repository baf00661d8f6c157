# cmake -DFOLDER=<scratch folder> -P planted_includes.cmake
# Plants one include at a time in a tree of its own and sees it refused, or accepted.
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
plant(core/a.cpp "\"phones/conversion.h\"" refused)
plant(core/a.h "\"platform/posix/user_folders.h\"" refused)
plant(core/a.h "\"text.h\"" refused)
plant(core/a.h "\"core/../app/form1.h\"" refused)
plant(core/a.cpp "<unistd.h>" refused)
plant(core/a.cpp "HEADER" refused)
plant(platform/registry.h "\"core/text.h\"" refused)
plant(formats/a.cpp "\"midi/playback.h\"" refused)
plant(net/a.cpp "\"formats/ems.h\"" refused)
plant(net/a.cpp "<boost/beast.hpp>" refused)
plant(phones/a.cpp "\"app/form1.h\"" refused)
plant(app/pages/a.cpp "\"platform/http/http_client.h\"" refused)
plant(app/a.h "<QString>" refused)
plant(app/a.cpp "\"shell/qt/window.h\"" refused)

plant(app/pages/a.cpp "\"phones/conversion.h\"" allowed)
plant(core/a.cpp "\"platform/message_box.h\"" allowed)
plant(midi/a.cpp "<string_view>" allowed)
plant(nokia3210/a.cpp "\"formats/nokia_composer.h\"" allowed)
file(REMOVE_RECURSE ${FOLDER})

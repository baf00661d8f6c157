# Runs on the staged files before they are packed: compresses manual pages and changelogs.
file(GLOB_RECURSE pages ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/man/*.1
  ${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/doc/*/changelog)
if(NOT pages)
  message(FATAL_ERROR "no manual pages and changelogs in ${CPACK_TEMPORARY_DIRECTORY}")
endif()
execute_process(COMMAND gzip -9nf ${pages} COMMAND_ERROR_IS_FATAL ANY)

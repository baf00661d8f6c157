# cmake -DROOT=<source folder> -P check_shells.cmake
# Both shells bind the window by the model's own tables: each makes its widgets by app::Controls(),
# its events by app::Handlers(), its pictures by app::FindPicture, and binds nothing that the model
# lacks. A table of pictures of its own is refused.
cmake_minimum_required(VERSION 3.25)

set(failures "")
file(READ ${ROOT}/app/form1_tables.cpp model)
file(READ ${ROOT}/app/form1.h header)

# {"control", "picture"} rows.
set(picture_row
  "{ *\"(cmd|pic|txt|text|lbl|label|cmb|List|Label|nav|Web)[A-Za-z0-9]*\", *\"[a-z]+\"(, *true)?}")
file(READ ${ROOT}/app/control_pictures.h pictures)
string(REGEX MATCHALL "${picture_row}" rows "${pictures}")
if(NOT rows)
  string(APPEND failures "\n  app: no table of pictures was found")
endif()
foreach(row IN LISTS rows)
  string(REGEX REPLACE "[{}\" ]" "" row "${row}")
  string(REGEX REPLACE ",.*" "" control "${row}")
  string(FIND "${model}" "{\"${control}\"," found)
  if(found EQUAL -1)
    string(APPEND failures "\n  app gives ${control} a picture, which the model lacks")
  endif()
endforeach()

foreach(shell qt win32)
  file(GLOB_RECURSE files ${ROOT}/shell/${shell}/*.cpp ${ROOT}/shell/${shell}/*.h)
  set(text "")
  foreach(file IN LISTS files)
    file(READ ${file} content)
    string(APPEND text "${content}")
  endforeach()
  foreach(table "app::Controls()" "app::Handlers()" "app::NavigationRow()" "app::FindPicture("
                "app::LookOf(")
    string(FIND "${text}" "${table}" found)
    if(found EQUAL -1)
      string(APPEND failures "\n  shell/${shell} does not bind by ${table}")
    endif()
  endforeach()

  string(REGEX MATCH "${picture_row}" own "${text}")
  if(own)
    string(APPEND failures "\n  shell/${shell} holds a table of pictures of its own: ${own}")
  endif()

  # &Form1::member in a shell is a member of the model.
  string(REGEX MATCHALL "&Form1::[A-Za-z0-9_]+" members "${text}")
  list(REMOVE_DUPLICATES members)
  foreach(member IN LISTS members)
    string(REPLACE "&Form1::" "" member ${member})
    if(NOT header MATCHES "[ (]${member}[,;(]")
      string(APPEND failures "\n  shell/${shell} binds ${member}, which Form1 lacks")
    endif()
    if(member MATCHES "_(Click|DblClick|Change|Timer|BeforeNavigate)$")
      string(APPEND failures "\n  shell/${shell} holds a table of handlers of its own: ${member}")
    endif()
  endforeach()
endforeach()

if(failures)
  message(FATAL_ERROR "The shells do not agree:${failures}")
endif()
message(STATUS "Both shells bind by the model's tables")

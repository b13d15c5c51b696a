# Fails unless the generated property list and resource script equal the accepted copies in this
# folder, Morvane.pipl.hex and Morvane.rc.expected. After a deliberate change, review the bytes
# this check prints and accept them by updating those files.
#   cmake -DPIPL=<Morvane.pipl> -DRC=<Morvane.rc> -DACCEPTED=<this folder> -P CheckPipl.cmake
file(READ "${PIPL}" actual HEX)
file(READ "${ACCEPTED}/Morvane.pipl.hex" accepted)
string(REGEX REPLACE "#[^\n]*" "" accepted "${accepted}")
string(REGEX REPLACE "[ \t\r\n]" "" accepted "${accepted}")
string(TOLOWER "${accepted}" accepted)
if(NOT actual STREQUAL accepted)
  string(REGEX REPLACE "([0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f])" "\\1 "
         dump "${actual}")
  message(FATAL_ERROR "${PIPL} differs from Morvane.pipl.hex; it holds:\n${dump}")
endif()
execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files --ignore-eol "${RC}"
                        "${ACCEPTED}/Morvane.rc.expected" RESULT_VARIABLE differs)
if(NOT differs EQUAL 0)
  message(FATAL_ERROR "${RC} differs from Morvane.rc.expected")
endif()

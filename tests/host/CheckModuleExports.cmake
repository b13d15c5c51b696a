# Fails unless MODULE defines exactly the two entry points in its dynamic
# symbol table.  cmake -DNM=<nm> -DMODULE=<file> -P CheckModuleExports.cmake
execute_process(COMMAND "${NM}" -D --defined-only "${MODULE}"
                OUTPUT_VARIABLE listing RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${NM} failed on ${MODULE}")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${listing}")
set(names "")
foreach(line ${lines})
  string(REGEX REPLACE "^.* " "" name "${line}")
  list(APPEND names "${name}")
endforeach()
list(SORT names)
if(NOT names STREQUAL "EffectMain;PluginDataEntryFunction")
  message(FATAL_ERROR "the module exports [${names}], expected exactly EffectMain and PluginDataEntryFunction")
endif()

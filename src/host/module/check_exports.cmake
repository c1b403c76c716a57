# cmake -DMODULE=FILE -DTOOL=nm|objdump -DWINDOWS=0|1 -P check_exports.cmake
# The module exports "main" and nothing else: whatever else were visible could be bound to the
# host's, or to another effect's.
if(WINDOWS)
  execute_process(COMMAND ${TOOL} -p ${MODULE} OUTPUT_VARIABLE listing RESULT_VARIABLE failed)
  string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table[^\n]*\n(([ \t]+\\[[^\n]*\n)+)" ignored "${listing}")
  string(REGEX MATCHALL "[A-Za-z_][A-Za-z0-9_]*\n" names "${CMAKE_MATCH_1}")
  string(REPLACE "\n" "" names "${names}")
else()
  execute_process(COMMAND ${TOOL} -D --defined-only --format=posix ${MODULE}
                  OUTPUT_VARIABLE listing RESULT_VARIABLE failed)
  string(REGEX MATCHALL "(^|\n)[^ \n]+" names "${listing}")
  string(REPLACE "\n" "" names "${names}")
endif()
if(failed OR NOT names STREQUAL "main")
  message(FATAL_ERROR "exported: '${names}', wanted: 'main'")
endif()

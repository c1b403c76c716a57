# orvin_embed_lines(TARGET SYMBOL FILES...): compiles the lines of text files into TARGET, as
#   namespace orvin { extern const char* const SYMBOL[]; }
# The files stand one behind the other in the order given; a null pointer ends the array. Changing a
# file makes the array anew. The script below is the same file, run at build time.
function(orvin_embed_lines target symbol)
  set(output ${CMAKE_BINARY_DIR}/generated/${symbol}.cpp)
  set(script ${CMAKE_SOURCE_DIR}/cmake/EmbedLines.cmake)
  add_custom_command(
    OUTPUT ${output}
    COMMAND ${CMAKE_COMMAND} -DSYMBOL=${symbol} -DOUTPUT=${output} "-DFILES=${ARGN}" -P ${script}
    DEPENDS ${ARGN} ${script}
    VERBATIM)
  target_sources(${target} PRIVATE ${output})
endfunction()

if(NOT CMAKE_SCRIPT_MODE_FILE OR NOT DEFINED SYMBOL)
  return()
endif()
set(lines "")
foreach(path IN LISTS FILES)
  file(READ ${path} text)
  if("${text}" MATCHES "\r")
    message(FATAL_ERROR "${path} has a carriage return: lines end with LF alone")
  endif()
  if("${text}" MATCHES "\n\n|^\n" OR NOT "${text}" MATCHES "\n$")
    message(FATAL_ERROR "${path} has an empty line, or no line end at its end")
  endif()
  string(REPLACE "\\" "\\\\" text "${text}")
  string(REPLACE "\"" "\\\"" text "${text}")
  string(REGEX REPLACE "\n$" "" text "${text}")
  string(REPLACE "\n" "\",\n    \"" text "${text}")
  string(APPEND lines "    \"${text}\",\n")
endforeach()
file(WRITE ${OUTPUT} "namespace orvin {\n\nextern const char* const ${SYMBOL}[];\nconst char* const ${SYMBOL}[] = {\n${lines}    nullptr};\n\n}  // namespace orvin\n")

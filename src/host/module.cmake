# The effect module: 3DOrvinex.so, 3DOrvinex.aex on Windows. It exports "main" and nothing else.
set(module_dir ${CMAKE_CURRENT_LIST_DIR}/module)
add_library(3DOrvinex MODULE ${module_dir}/Module.cpp)
target_link_libraries(3DOrvinex PRIVATE orvin_host)
orvin_warnings(3DOrvinex)
set_target_properties(3DOrvinex PROPERTIES PREFIX ""
  LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
if(WIN32)
  enable_language(RC)
  set_target_properties(3DOrvinex PROPERTIES SUFFIX ".aex")
  target_sources(3DOrvinex PRIVATE ${module_dir}/3DOrvinex.def ${module_dir}/3DOrvinex.rc)
  set_source_files_properties(${module_dir}/3DOrvinex.rc PROPERTIES
    OBJECT_DEPENDS ${module_dir}/3DOrvinex.pipl)
  set(export_lister ${CMAKE_OBJDUMP})
else()
  set_target_properties(3DOrvinex PROPERTIES SUFFIX ".so"
    LINK_DEPENDS ${module_dir}/exports.map)
  target_link_options(3DOrvinex PRIVATE -Wl,--version-script=${module_dir}/exports.map)
  if(NOT ORVIN_SANITIZE)
    target_link_options(3DOrvinex PRIVATE -Wl,--no-undefined)
  endif()
  set(export_lister ${CMAKE_NM})
endif()

if(ORVIN_TESTS)
  add_test(NAME module_exports_main_only
    COMMAND ${CMAKE_COMMAND} -DMODULE=$<TARGET_FILE:3DOrvinex> -DTOOL=${export_lister}
      -DWINDOWS=$<BOOL:${WIN32}> -P ${module_dir}/check_exports.cmake)
endif()

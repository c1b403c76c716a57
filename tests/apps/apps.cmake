# Tests of the programs, and the small effect that they load: well-behaved, or breaking one rule of
# the host's that the test names.
add_library(orvin_test_effect MODULE ${CMAKE_CURRENT_LIST_DIR}/module/TestEffect.cpp)
set_target_properties(orvin_test_effect PROPERTIES PREFIX "" OUTPUT_NAME TestEffect SUFFIX ".aex")
target_include_directories(orvin_test_effect PRIVATE ${CMAKE_SOURCE_DIR}/src)
if(WIN32)
  target_sources(orvin_test_effect PRIVATE ${CMAKE_CURRENT_LIST_DIR}/module/TestEffect.def)
endif()
orvin_warnings(orvin_test_effect)

add_executable(test_apps ${app_tests})
target_include_directories(test_apps PRIVATE ${CMAKE_SOURCE_DIR})
target_compile_definitions(test_apps PRIVATE ORVIN_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
  ORVIN_TEST_EFFECT_PATH="$<TARGET_FILE:orvin_test_effect>")
target_link_libraries(test_apps PRIVATE orvinhost_core GTest::gtest_main)
add_dependencies(test_apps orvin_test_effect)
orvin_test_program(test_apps)

add_test(NAME program_pipeline COMMAND ${CMAKE_COMMAND} -DORVINEX=$<TARGET_FILE:orvinex>
  -DORVINHOST=$<TARGET_FILE:orvinhost> -DEMULATOR=${CMAKE_CROSSCOMPILING_EMULATOR}
  -DSOURCE=${CMAKE_SOURCE_DIR} -DWORK=${CMAKE_BINARY_DIR}/pipeline
  -P ${CMAKE_CURRENT_LIST_DIR}/pipeline.cmake)
set_tests_properties(program_pipeline PROPERTIES TIMEOUT 300)

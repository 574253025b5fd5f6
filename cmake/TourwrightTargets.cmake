# How the folders become targets: warnings for our own code only, includes from the repository root.

function(tw_compile_settings target)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_options(${target} PRIVATE
    $<$<CXX_COMPILER_ID:GNU,Clang>:-Wall -Wextra -Wpedantic>
    $<$<CXX_COMPILER_ID:MSVC>:/W4 /utf-8>)
  if(TW_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE
      $<$<CXX_COMPILER_ID:GNU,Clang>:-Werror> $<$<CXX_COMPILER_ID:MSVC>:/WX>)
  endif()
  target_compile_definitions(${target} PRIVATE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_DEPRECATED_WARNINGS)
endfunction()

# tw_library(NAME SOURCES... ): a static library, one per folder.
function(tw_library target)
  add_library(${target} STATIC ${ARGN})
  tw_compile_settings(${target})
endfunction()

# tw_program(NAME SOURCES...): a thin executable in bin/.
function(tw_program target)
  add_executable(${target} ${ARGN})
  tw_compile_settings(${target})
endfunction()

# tw_test(NAME SOURCES...): a GoogleTest program; every test case becomes a ctest case of its own, run in a
# process of its own, so that tests may run side by side. SERIAL: these run alone, since they move the one pointer of
# the screen or would be disturbed by it.
function(tw_test target)
  cmake_parse_arguments(arg "SERIAL" "TIMEOUT" "SOURCES;LIBRARIES;ENVIRONMENT" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  add_executable(${target} ${arg_SOURCES})
  tw_compile_settings(${target})
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} GTest::gtest GTest::gmock)
  gtest_discover_tests(${target}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 60
    TEST_PREFIX "${target}."
    PROPERTIES RUN_SERIAL ${arg_SERIAL} TIMEOUT ${arg_TIMEOUT} ENVIRONMENT "${arg_ENVIRONMENT}")
endfunction()

# Shared helpers for test programs.
#
#   chronel_add_test(NAME <name> LABEL unit|engine|gui SOURCES ... [LIBS ...] [QTTEST])
#
# GoogleTest programs are split into one ctest entry per test case; QtTest
# programs (QTTEST) run as one entry. Every test gets its label, gui tests run
# on the offscreen platform, and every test sees where the built programs and
# the example projects are.
find_package(GTest REQUIRED)
include(GoogleTest)

function(chronel_add_test)
  cmake_parse_arguments(T "QTTEST" "NAME;LABEL;TIMEOUT" "SOURCES;LIBS" ${ARGN})
  if(NOT T_LABEL)
    set(T_LABEL unit)
  endif()
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT 300)
  endif()
  add_executable(${T_NAME} ${T_SOURCES})
  target_link_libraries(${T_NAME} PRIVATE ${T_LIBS})
  target_compile_definitions(${T_NAME} PRIVATE
    CHRONEL_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
    CHRONEL_EXAMPLES_DIR="${CHRONEL_EXAMPLES_DIR}"
    CHRONEL_MISC_DIR="${CHRONEL_MISC_SOURCE_DIR}"
    CHRONEL_TEST_DATA_DIR="${CMAKE_CURRENT_SOURCE_DIR}")
  set(env "CHRONEL_BIN_DIR=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
  if(T_LABEL STREQUAL "gui")
    list(APPEND env "QT_QPA_PLATFORM=offscreen")
  endif()
  if(T_QTTEST)
    add_test(NAME ${T_NAME} COMMAND ${T_NAME})
    set_tests_properties(${T_NAME} PROPERTIES LABELS ${T_LABEL} TIMEOUT ${T_TIMEOUT}
                         ENVIRONMENT "${env}")
  else()
    target_link_libraries(${T_NAME} PRIVATE GTest::gtest GTest::gtest_main GTest::gmock)
    # gtest_discover_tests passes only the first entry of a list-valued
    # ENVIRONMENT property on, so the environment travels through the launcher.
    set_property(TARGET ${T_NAME} PROPERTY CROSSCOMPILING_EMULATOR ${CMAKE_COMMAND} -E env ${env})
    gtest_discover_tests(${T_NAME}
      DISCOVERY_MODE PRE_TEST
      PROPERTIES LABELS ${T_LABEL} TIMEOUT ${T_TIMEOUT})
  endif()
endfunction()

# How a folder becomes a library, an executable or a test, with the flags that hold for all of them.

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
find_program(MOLD mold)
if(MOLD)
  add_link_options(-fuse-ld=mold)
endif()

add_library(brindlehum_flags INTERFACE)
target_compile_options(brindlehum_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Werror)
if(BRINDLEHUM_SANITIZE)
  add_compile_options(-fsanitize=${BRINDLEHUM_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${BRINDLEHUM_SANITIZE})
  add_compile_definitions(BRINDLEHUM_SANITIZED=1)
  # g++ 12 takes its own instrumentation of variants for use before initialisation.
  target_compile_options(brindlehum_flags INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

# brindlehum_library(NAME [USES folders...] [ROOMS rooms...] [PUBLIC targets...] [PRIVATE targets...]): all sources of
# NAME/src, with NAME/include as include root.
function(brindlehum_library NAME)
  cmake_parse_arguments(ARG "" "" "USES;ROOMS;PUBLIC;PRIVATE" ${ARGN})
  file(GLOB_RECURSE SOURCES CONFIGURE_DEPENDS ${NAME}/src/*.cpp ${NAME}/src/*.h ${NAME}/include/*.h ${NAME}/*.qrc)
  add_library(${NAME} STATIC ${SOURCES})
  set_target_properties(${NAME} PROPERTIES OUTPUT_NAME brindlehum_${NAME} LINKER_LANGUAGE CXX)
  if(ARG_PUBLIC MATCHES "Qt6::")
    set_target_properties(${NAME} PROPERTIES AUTOMOC ON AUTORCC ON)
    target_compile_definitions(${NAME} PUBLIC QT_NO_CAST_FROM_BYTEARRAY QT_NO_KEYWORDS)
  endif()
  target_include_directories(${NAME} PUBLIC ${NAME}/include PRIVATE ${NAME}/src)
  target_link_libraries(${NAME} PUBLIC ${ARG_USES} ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} brindlehum_flags)
endfunction()

# brindlehum_program(FOLDER OUTPUT name USES folders...): the sources of FOLDER as a program.
function(brindlehum_program FOLDER)
  cmake_parse_arguments(ARG "" "OUTPUT" "USES" ${ARGN})
  file(GLOB SOURCES CONFIGURE_DEPENDS ${FOLDER}/*.cpp ${FOLDER}/*.h)
  add_executable(${ARG_OUTPUT} ${SOURCES})
  target_include_directories(${ARG_OUTPUT} PRIVATE ${FOLDER})
  target_link_libraries(${ARG_OUTPUT} PRIVATE ${ARG_USES} brindlehum_flags)
endfunction()

# brindlehum_test(FOLDER USES targets... [PRIVATE_HEADERS folder] [LOCK resource] [CORPUS] [OWN_MAIN]): tests/FOLDER/*.cpp
# as one GoogleTest program, each test in ctest. PRIVATE_HEADERS opens the inner headers of a folder, LOCK keeps the
# tests of all programs with that resource from running at once, CORPUS replays the fuzzers' seeds, OWN_MAIN says that
# a source brings main().
function(brindlehum_test FOLDER)
  cmake_parse_arguments(ARG "CORPUS;OWN_MAIN" "PRIVATE_HEADERS;LOCK" "USES" ${ARGN})
  file(GLOB SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${FOLDER}/*.cpp ${CMAKE_SOURCE_DIR}/tests/${FOLDER}/*.h)
  set(PROGRAM test_${FOLDER})
  add_executable(${PROGRAM} ${SOURCES})
  target_link_libraries(${PROGRAM} PRIVATE ${ARG_USES} test_support GTest::gtest GTest::gmock brindlehum_flags)
  if(NOT ARG_OWN_MAIN)
    target_link_libraries(${PROGRAM} PRIVATE GTest::gtest_main)
  endif()
  target_precompile_headers(${PROGRAM} PRIVATE ${CMAKE_SOURCE_DIR}/tests/support/precompiled.h)
  if(ARG_PRIVATE_HEADERS)
    target_include_directories(${PROGRAM} PRIVATE ${CMAKE_SOURCE_DIR}/${ARG_PRIVATE_HEADERS}/src)
  endif()
  if(ARG_CORPUS)
    target_compile_definitions(${PROGRAM} PRIVATE BRINDLEHUM_CORPUS="${CMAKE_SOURCE_DIR}/tests/fuzz/corpus")
  endif()
  set(PROPERTIES TIMEOUT 120)
  if(ARG_LOCK)
    list(APPEND PROPERTIES RESOURCE_LOCK ${ARG_LOCK})
  endif()
  gtest_discover_tests(${PROGRAM} TEST_PREFIX ${FOLDER}. DISCOVERY_TIMEOUT 60 PROPERTIES ${PROPERTIES})
endfunction()

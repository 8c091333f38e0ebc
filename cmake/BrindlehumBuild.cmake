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

# brindlehum_library(NAME [USES folders...] [PUBLIC targets...] [PRIVATE targets...]): all sources of NAME/src, with
# NAME/include as include root. A folder that isn't named in USES is not on the include path.
function(brindlehum_library NAME)
  cmake_parse_arguments(ARG "" "" "USES;PUBLIC;PRIVATE" ${ARGN})
  file(GLOB_RECURSE SOURCES CONFIGURE_DEPENDS ${NAME}/src/*.cpp ${NAME}/src/*.h ${NAME}/include/*.h ${NAME}/*.qrc)
  if(NOT SOURCES)
    add_library(${NAME} INTERFACE)
    return()
  endif()
  add_library(${NAME} STATIC ${SOURCES})
  set_target_properties(${NAME} PROPERTIES OUTPUT_NAME brindlehum_${NAME} LINKER_LANGUAGE CXX)
  if(ARG_PUBLIC MATCHES "Qt6::")
    set_target_properties(${NAME} PROPERTIES AUTOMOC ON AUTORCC ON)
    target_compile_definitions(${NAME} PUBLIC QT_NO_CAST_FROM_BYTEARRAY QT_NO_KEYWORDS)
  endif()
  target_include_directories(${NAME} PUBLIC ${NAME}/include PRIVATE ${NAME}/src)
  target_link_libraries(${NAME} PUBLIC ${ARG_USES} ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} brindlehum_flags)
endfunction()

# brindlehum_test(FOLDER [USES targets...]): every tests/FOLDER/*.cpp in one GoogleTest program, each test in ctest.
function(brindlehum_test FOLDER)
  cmake_parse_arguments(ARG "" "" "USES" ${ARGN})
  file(GLOB SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${FOLDER}/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/${FOLDER}/*.h)
  add_executable(test_${FOLDER} ${SOURCES})
  target_link_libraries(test_${FOLDER} PRIVATE ${ARG_USES} test_support GTest::gtest GTest::gmock GTest::gtest_main
                        brindlehum_flags)
  gtest_discover_tests(test_${FOLDER} TEST_PREFIX ${FOLDER}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()

# How a folder becomes a library, an executable or a test, with the flags that hold for all of them.

find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Precompiled headers are cached by content, and a second checkout shares what the first one built.
  set(CCACHE_CALL ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
                  CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${CCACHE_CALL})
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_CALL})
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
  endif()
endif()
find_program(MOLD mold)
if(MOLD)
  add_link_options(-fuse-ld=mold)
endif()

add_library(brindlehum_flags INTERFACE)
target_compile_options(brindlehum_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
  -Wzero-as-null-pointer-constant -Werror)
if(BRINDLEHUM_SANITIZE)
  add_compile_options(-fsanitize=${BRINDLEHUM_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${BRINDLEHUM_SANITIZE})
  add_compile_definitions(BRINDLEHUM_SANITIZED=1)
  # g++ 12 takes its own instrumentation for faults of the code: of variants, and of strings that are added.
  target_compile_options(brindlehum_flags INTERFACE
    "$<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized;-Wno-array-bounds;-Wno-stringop-overread;-Wno-stringop-overflow;-Wno-restrict>")
endif()

# Headers that nearly every file of a kind includes, compiled once: Qt Widgets for ui/, GoogleTest
# for tests with and without Qt. A target shares them if its flags are the owner's.
function(brindlehum_precompiled NAME HEADER)
  add_library(${NAME} OBJECT ${CMAKE_SOURCE_DIR}/cmake/precompiled.cpp)
  target_link_libraries(${NAME} PRIVATE ${ARGN} brindlehum_flags)
  target_precompile_headers(${NAME} PRIVATE ${CMAKE_SOURCE_DIR}/${HEADER})
endfunction()

# brindlehum_library(NAME [USES folders...] [ROOMS rooms...] [PUBLIC targets...] [PRIVATE targets...]): all sources of
# NAME/src, with NAME/include as include root.
function(brindlehum_library NAME)
  cmake_parse_arguments(ARG "" "" "USES;ROOMS;PUBLIC;PRIVATE" ${ARGN})
  file(GLOB_RECURSE SOURCES CONFIGURE_DEPENDS ${NAME}/src/*.cpp ${NAME}/src/*.h ${NAME}/include/*.h ${NAME}/*.qrc)
  add_library(${NAME} STATIC ${SOURCES})
  set_target_properties(${NAME} PROPERTIES OUTPUT_NAME brindlehum_${NAME} LINKER_LANGUAGE CXX)
  if(ARG_PUBLIC MATCHES "Qt6::")
    set_target_properties(${NAME} PROPERTIES AUTOMOC ON AUTORCC ON)
    if(ARG_PUBLIC MATCHES "Qt6::Widgets")
      target_precompile_headers(${NAME} REUSE_FROM precompiled_widgets)
    endif()
  endif()
  target_include_directories(${NAME} PUBLIC ${NAME}/include PRIVATE ${NAME}/src)
  target_link_libraries(${NAME} PUBLIC ${ARG_USES} ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE} brindlehum_flags)
endfunction()

# brindlehum_translations(NAME): builds the catalogues NAME/translations/*.ts into the library as resources ":/translations".
function(brindlehum_translations NAME)
  file(GLOB CATALOGUES CONFIGURE_DEPENDS ${NAME}/translations/*.ts)
  qt_add_translation(COMPILED ${CATALOGUES} OPTIONS -silent)
  set(ENTRIES "")
  foreach(FILE IN LISTS COMPILED)
    get_filename_component(ALIAS ${FILE} NAME)
    string(APPEND ENTRIES "<file alias=\"${ALIAS}\">${FILE}</file>")
  endforeach()
  file(CONFIGURE OUTPUT translations.qrc @ONLY
       CONTENT "<RCC><qresource prefix=\"/translations\">@ENTRIES@</qresource></RCC>\n")
  target_sources(${NAME} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/translations.qrc)
endfunction()

# brindlehum_program(FOLDER OUTPUT name USES folders...): the sources of FOLDER as a program.
function(brindlehum_program FOLDER)
  cmake_parse_arguments(ARG "" "OUTPUT" "USES" ${ARGN})
  file(GLOB SOURCES CONFIGURE_DEPENDS ${FOLDER}/*.cpp ${FOLDER}/*.h)
  add_executable(${ARG_OUTPUT} ${SOURCES})
  target_include_directories(${ARG_OUTPUT} PRIVATE ${FOLDER})
  target_link_libraries(${ARG_OUTPUT} PRIVATE ${ARG_USES} brindlehum_flags)
endfunction()

# brindlehum_test(FOLDER USES targets... [PRIVATE_HEADERS folder] [LOCK resource] [QT] [CORPUS] [OWN_MAIN]): tests/FOLDER/*.cpp
# as one GoogleTest program, each test in ctest. QT says that a library in USES brings Qt, PRIVATE_HEADERS opens the inner headers of a folder, LOCK keeps the
# tests of all programs with that resource from running at once, CORPUS replays the fuzzers' seeds, OWN_MAIN says that
# a source brings main().
function(brindlehum_test FOLDER)
  cmake_parse_arguments(ARG "CORPUS;OWN_MAIN;QT" "PRIVATE_HEADERS;LOCK" "USES" ${ARGN})
  file(GLOB SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${FOLDER}/*.cpp ${CMAKE_SOURCE_DIR}/tests/${FOLDER}/*.h)
  set(PROGRAM test_${FOLDER})
  add_executable(${PROGRAM} ${SOURCES})
  target_link_libraries(${PROGRAM} PRIVATE ${ARG_USES} test_support GTest::gtest GTest::gmock brindlehum_flags)
  if(NOT ARG_OWN_MAIN)
    target_link_libraries(${PROGRAM} PRIVATE GTest::gtest_main)
  endif()
  # Test code runs once and needn't be fast: optimising less builds it in two thirds of the time.
  target_compile_options(${PROGRAM} PRIVATE -O1)
  if(ARG_QT)
    target_precompile_headers(${PROGRAM} REUSE_FROM precompiled_qt_tests)
  else()
    target_precompile_headers(${PROGRAM} REUSE_FROM precompiled_tests)
  endif()
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

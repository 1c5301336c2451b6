# How every library, program and test of Lumora is built.

add_library(lumora_build_flags INTERFACE)
target_compile_options(lumora_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  $<$<NOT:$<CONFIG:Release>>:-Werror> # what people build on other systems must not stop at a new warning
  -pthread) # some versions of the libraries ask for it, and a precompiled header must be compiled as all who use it
if(LUMORA_TOGETHER AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  target_compile_options(lumora_build_flags INTERFACE -Wno-shadow) # of a file's locals and another file's constants
endif()
target_compile_definitions(lumora_build_flags INTERFACE
  QT_NO_KEYWORDS QT_NO_FOREACH LUMORA_VERSION="${PROJECT_VERSION}")
target_include_directories(lumora_build_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_link_options(lumora_build_flags INTERFACE -Wl,--as-needed) # each library takes time at every start
if(LUMORA_SANITIZE)
  target_compile_options(lumora_build_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(lumora_build_flags INTERFACE -fsanitize=address,undefined)
endif()
if(LUMORA_FUZZ)
  target_compile_options(lumora_build_flags INTERFACE
    -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_compile_definitions(lumora_build_flags INTERFACE HWY_COMPILE_ONLY_STATIC) # one version of the kernels will do
  target_link_options(lumora_build_flags INTERFACE -fsanitize=address,undefined)
endif()

# While developing, what does not compute pixels takes longer to optimize than that saves when it runs.
function(lumora_build_quickly target kind)
  if(NOT kind STREQUAL "gui")
    target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O0>)
  endif()
endfunction()

# Qt's headers take most of a file's compile time, so they are precompiled once: without widgets, with widgets, and with
# GoogleTest. lumora_precompiled(TARGET KIND) lets the target use one of the three; with the last two it is not optimized
# while developing.
function(lumora_add_precompiled kind)
  cmake_parse_arguments(PCH "" "" "LINK;HEADERS" ${ARGN})
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/precompiled_${kind}.cpp CONTENT "")
  add_library(lumora_precompiled_${kind} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/precompiled_${kind}.cpp)
  set_target_properties(lumora_precompiled_${kind} PROPERTIES AUTOMOC OFF)
  target_link_libraries(lumora_precompiled_${kind} PRIVATE lumora_build_flags ${PCH_LINK})
  lumora_build_quickly(lumora_precompiled_${kind} ${kind})
  target_precompile_headers(lumora_precompiled_${kind} PRIVATE ${PCH_HEADERS})
endfunction()

function(lumora_precompiled target kind)
  lumora_build_quickly(${target} ${kind})
  target_precompile_headers(${target} REUSE_FROM lumora_precompiled_${kind})
endfunction()

# With LUMORA_TOGETHER the files of a folder are compiled as one, since reading Qt's headers takes longer than compiling
# what a file adds; so a private name must be the only one of its kind in its folder. The release and the style check
# compile each file by itself.
option(LUMORA_TOGETHER "Compile the files of a folder together" OFF)
function(lumora_compile_together target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${LUMORA_TOGETHER} UNITY_BUILD_MODE GROUP)
  foreach(source ${ARGN})
    get_filename_component(folder ${source} DIRECTORY)
    file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${folder})
    string(MAKE_C_IDENTIFIER ${folder} folder)
    if(NOT source MATCHES "Table.cpp$") # a test replaces a table with a copy that has more rows
      set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${folder})
    endif()
  endforeach()
endfunction()

# The kernels of a folder in the same way: each version of them (HWY_TARGET_INCLUDE) reads Highway's header once for all of
# them, which takes longer than compiling one. OPTIONS are the compiler's options of the folder's files.
function(lumora_compile_kernels_together target)
  if(NOT LUMORA_TOGETHER)
    return()
  endif()
  foreach(source ${ARGN})
    file(STRINGS ${source} kernel REGEX "^#define HWY_TARGET_INCLUDE")
    get_source_file_property(options ${source} COMPILE_OPTIONS)
    if(kernel AND NOT options)
      get_filename_component(folder ${source} DIRECTORY)
      get_filename_component(folder ${folder} NAME)
      list(APPEND folders ${folder})
      string(APPEND includes_${folder} "#include \"${source}\"\n")
      set_source_files_properties(${source} PROPERTIES HEADER_FILE_ONLY ON)
    endif()
  endforeach()
  list(REMOVE_DUPLICATES folders)
  foreach(folder ${folders})
    set(all ${CMAKE_CURRENT_BINARY_DIR}/kernels_${folder})
    set(again "#undef HWY_TARGET_INCLUDE\n#define HWY_TARGET_INCLUDE \"${all}.inc\"\n")
    file(CONFIGURE OUTPUT ${all}.inc CONTENT "${includes_${folder}}${again}" @ONLY)
    file(CONFIGURE OUTPUT ${all}.cpp @ONLY
      CONTENT "#include \"imaging/kernels/Targets.h\"\n${again}#include <hwy/foreach_target.h>\n#include \"${all}.inc\"\n")
    target_sources(${target} PRIVATE ${all}.cpp)
  endforeach()
endfunction()

# moc reads every header of Qt that a file includes, though it needs them for Q_INTERFACES alone: without the folders to
# look in it takes a tenth of the time. lumora_quick_moc(TARGET...) gives these targets such a moc while developing.
function(lumora_quick_moc)
  if(NOT LUMORA_TOGETHER)
    return()
  endif()
  set(script ${CMAKE_BINARY_DIR}/moc-without-includes)
  if(NOT EXISTS ${script})
    get_target_property(moc Qt6::moc LOCATION)
    file(CONFIGURE OUTPUT ${script} @ONLY CONTENT [[#!/bin/bash
if ! grep -q Q_INTERFACES "${@: -1}"; then
    for argument; do
        shift
        case $argument in -I*) ;; *) set -- "$@" "$argument" ;; esac
    done
fi
exec @moc@ "$@"
]])
    file(CHMOD ${script} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
  endif()
  set_target_properties(${ARGN} PROPERTIES AUTOMOC_EXECUTABLE ${script} AUTOMOC_COMPILER_PREDEFS OFF)
endfunction()

# A module is a folder of src/ and one static library, lumora_NAME; LINK lists the modules that it may use. PRECOMPILED
# is "gui" for modules without windows.
function(lumora_module name)
  cmake_parse_arguments(MODULE "" "PRECOMPILED" "LINK" ${ARGN})
  set(folder ${CMAKE_SOURCE_DIR}/src/${name})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
  list(FILTER sources EXCLUDE REGEX "/src/devices/helper/")
  add_library(lumora_${name} STATIC ${sources})
  if(name MATCHES "^(base|imaging)$")
    set_target_properties(lumora_${name} PROPERTIES AUTOMOC OFF) # no QObject there
  endif()
  lumora_quick_moc(lumora_${name})
  lumora_compile_kernels_together(lumora_${name} ${sources})
  lumora_compile_together(lumora_${name} ${sources})
  target_link_libraries(lumora_${name} PUBLIC lumora_build_flags ${MODULE_LINK})
  if(NOT MODULE_PRECOMPILED)
    set(MODULE_PRECOMPILED widgets)
  endif()
  lumora_precompiled(lumora_${name} ${MODULE_PRECOMPILED})
  # moc looks again when a file has changed, but not when there is a new one.
  set(list ${CMAKE_CURRENT_BINARY_DIR}/lumora_${name}_autogen/sources.txt)
  set(known "")
  if(EXISTS ${list})
    file(READ ${list} known)
  endif()
  if(NOT known STREQUAL "${sources}")
    file(REMOVE ${CMAKE_CURRENT_BINARY_DIR}/lumora_${name}_autogen/timestamp)
    file(WRITE ${list} "${sources}")
  endif()
endfunction()

# The tests of a module: every *_test.cpp below tests/NAME/ in one GoogleTest program, run without a display.
function(lumora_tests name)
  cmake_parse_arguments(TESTS "" "" "LINK" ${ARGN})
  set(folder ${CMAKE_SOURCE_DIR}/tests/${name})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
  add_executable(test_${name} ${sources})
  lumora_compile_together(test_${name} ${sources})
  if(NOT name MATCHES "^(base|guide|how-to)$")
    set_target_properties(test_${name} PROPERTIES AUTOMOC OFF) # no QObject there
  endif()
  lumora_quick_moc(test_${name})
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE
    lumora_test_main ${TESTS_LINK} lumora_test_support lumora_test_flags GTest::gtest GTest::gmock Qt6::Test)
  lumora_precompiled(test_${name} tests)
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LUMORA_SOURCE=${CMAKE_SOURCE_DIR};LUMORA_BIN=${CMAKE_BINARY_DIR}/bin"
    TIMEOUT 300)
endfunction()

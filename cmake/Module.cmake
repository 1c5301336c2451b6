# How every library, program and test of Lumora is built.

add_library(lumora_build_flags INTERFACE)
target_compile_options(lumora_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  $<$<NOT:$<CONFIG:Release>>:-Werror>) # what people build on other systems must not stop at a new warning
target_compile_definitions(lumora_build_flags INTERFACE
  QT_NO_KEYWORDS QT_NO_FOREACH LUMORA_VERSION="${PROJECT_VERSION}")
target_include_directories(lumora_build_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(LUMORA_SANITIZE)
  target_compile_options(lumora_build_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(lumora_build_flags INTERFACE -fsanitize=address,undefined)
endif()

# Qt's headers take most of a file's compile time, so they are precompiled once: without widgets, with widgets, and with
# GoogleTest. lumora_precompiled(TARGET KIND) lets the target use one of the three.
function(lumora_add_precompiled kind)
  cmake_parse_arguments(PCH "" "" "LINK;HEADERS" ${ARGN})
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/precompiled_${kind}.cpp CONTENT "")
  add_library(lumora_precompiled_${kind} OBJECT ${CMAKE_CURRENT_BINARY_DIR}/precompiled_${kind}.cpp)
  set_target_properties(lumora_precompiled_${kind} PROPERTIES AUTOMOC OFF)
  target_link_libraries(lumora_precompiled_${kind} PRIVATE lumora_build_flags ${PCH_LINK})
  target_precompile_headers(lumora_precompiled_${kind} PRIVATE ${PCH_HEADERS})
endfunction()

function(lumora_precompiled target kind)
  target_precompile_headers(${target} REUSE_FROM lumora_precompiled_${kind})
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
  target_link_libraries(lumora_${name} PUBLIC lumora_build_flags ${MODULE_LINK})
  if(NOT MODULE_PRECOMPILED)
    set(MODULE_PRECOMPILED widgets)
  endif()
  lumora_precompiled(lumora_${name} ${MODULE_PRECOMPILED})
endfunction()

# The tests of a module: every *_test.cpp below tests/NAME/ in one GoogleTest program, run without a display.
function(lumora_tests name)
  cmake_parse_arguments(TESTS "" "" "LINK" ${ARGN})
  set(folder ${CMAKE_SOURCE_DIR}/tests/${name})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
  add_executable(test_${name} ${sources})
  if(NOT name MATCHES "^(base|guide|how-to)$")
    set_target_properties(test_${name} PROPERTIES AUTOMOC OFF) # no QObject there
  endif()
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE
    lumora_test_main ${TESTS_LINK} lumora_test_support lumora_test_flags GTest::gtest GTest::gmock Qt6::Test)
  lumora_precompiled(test_${name} tests)
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LUMORA_SOURCE=${CMAKE_SOURCE_DIR};LUMORA_BIN=${CMAKE_BINARY_DIR}/bin"
    TIMEOUT 300)
endfunction()

# One way to make every library, program and test of the house, so that all of them are built alike.

add_library(lumora_build_flags INTERFACE)
target_compile_options(lumora_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  -Werror)
target_compile_definitions(lumora_build_flags INTERFACE
  QT_NO_KEYWORDS QT_NO_FOREACH LUMORA_VERSION="${PROJECT_VERSION}")
target_include_directories(lumora_build_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
if(LUMORA_SANITIZE)
  target_compile_options(lumora_build_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(lumora_build_flags INTERFACE -fsanitize=address,undefined)
endif()

# A room is a folder of src/ and one static library, lumora_NAME; LINK names what it may use.
function(lumora_room name)
  cmake_parse_arguments(ROOM "" "FOLDER" "LINK" ${ARGN})
  if(NOT ROOM_FOLDER)
    set(ROOM_FOLDER ${name})
  endif()
  set(folder ${CMAKE_SOURCE_DIR}/src/${ROOM_FOLDER})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
  if(name STREQUAL "app")
    list(FILTER sources EXCLUDE REGEX "/src/app/settings/")
  endif()
  add_library(lumora_${name} STATIC ${sources})
  target_link_libraries(lumora_${name} PUBLIC lumora_build_flags ${ROOM_LINK})
endfunction()

# The tests of a room: every tests/FOLDER/*_test.cpp in one GoogleTest program, run without a display.
function(lumora_tests name)
  cmake_parse_arguments(TESTS "" "FOLDER" "LINK" ${ARGN})
  if(NOT TESTS_FOLDER)
    set(TESTS_FOLDER ${name})
  endif()
  set(folder ${CMAKE_SOURCE_DIR}/tests/${TESTS_FOLDER})
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp ${folder}/*.h)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources} ${CMAKE_SOURCE_DIR}/tests/support/main.cpp)
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE ${TESTS_LINK} lumora_test_support GTest::gtest GTest::gmock Qt6::Test)
  add_test(NAME ${name} COMMAND test_${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LUMORA_SOURCE=${CMAKE_SOURCE_DIR};LUMORA_BIN=${CMAKE_BINARY_DIR}/bin"
    TIMEOUT 300)
endfunction()

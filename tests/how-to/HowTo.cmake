# Lumora with what docs/how-to.md says how to add: the files in src/, and the rows in rows/ in copies of their tables.
# A copy replaces the table of the library, since the linker takes a program's own object first.

lumora_tests(how-to LINK lumora_window lumora_test_texts)
target_include_directories(test_how-to PRIVATE ${CMAKE_CURRENT_LIST_DIR}/src)

# Puts the row in rows/NAME.txt into a copy of src/TABLE, before the line that begins with ANCHOR; INCLUDE is the header
# that the row needs.
function(lumora_add_row table anchor)
  cmake_parse_arguments(ROW "" "INCLUDE" "" ${ARGN})
  get_filename_component(name ${table} NAME_WE)
  set(source ${CMAKE_SOURCE_DIR}/src/${table})
  set(row ${CMAKE_SOURCE_DIR}/tests/how-to/rows/${name}.txt)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${source} ${row})
  file(READ ${source} text)
  file(READ ${row} added)
  string(FIND "${text}" "\n${anchor}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "${table} has no line that begins with ${anchor}")
  endif()
  math(EXPR at "${at} + 1")
  string(SUBSTRING "${text}" 0 ${at} before)
  string(SUBSTRING "${text}" ${at} -1 after)
  if(ROW_INCLUDE)
    string(PREPEND before "#include \"${ROW_INCLUDE}\"\n")
  endif()
  file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/how-to/${table} CONTENT "@before@@added@@after@" @ONLY)
  target_sources(test_how-to PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/how-to/${table})
endfunction()

# An effect.
lumora_add_row(effects/EffectTable.cpp "        {.group = Adjustment," INCLUDE imaging/effects/Posterise.h)
lumora_add_row(base/TextTable.cpp "    {\"frmMain\", \"Colour1\",")

# A tool.
lumora_add_row(window/ToolTable.cpp "    {\"popArt\"," INCLUDE tools/dot/DotTool.h)

# The page of a report, as texts in a program: each file of simulator/companion/page as a literal.
set(page_definitions)
foreach(pair "PAGE;report.html" "STYLE;report.css" "SCRIPT;report.js")
  list(GET pair 0 name)
  list(GET pair 1 file)
  set(source "${CMAKE_SOURCE_DIR}/simulator/companion/page/${file}")
  set(literal "${CMAKE_BINARY_DIR}/page/${file}.inc")
  file(READ "${source}" text)
  file(CONFIGURE OUTPUT "${literal}" CONTENT "R\"page(@text@)page\"" @ONLY)
  list(APPEND page_definitions "${name}_TEXT=\"${literal}\"")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
endforeach()
set_source_files_properties(simulator/companion/report_page.cpp PROPERTIES
  COMPILE_DEFINITIONS "${page_definitions}"
  SKIP_UNITY_BUILD_INCLUSION ON SKIP_PRECOMPILE_HEADERS ON)

# The pages that browsers show, as texts in a program: each file of simulator/companion/page as its
# name and a literal.
file(GLOB page_files CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/simulator/companion/page/*)
set(page_list "${CMAKE_BINARY_DIR}/page_files.inc")
set(page_rows "")
foreach(source IN LISTS page_files)
  get_filename_component(name "${source}" NAME)
  file(READ "${source}" text)
  string(APPEND page_rows "File{\"${name}\", R\"page(${text})page\"},\n")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
endforeach()
file(CONFIGURE OUTPUT "${page_list}" CONTENT "@page_rows@" @ONLY)
set_source_files_properties(simulator/companion/page_files.cpp PROPERTIES
  COMPILE_DEFINITIONS "PAGE_FILES=\"${page_list}\""
  OBJECT_DEPENDS "${page_list}"
  SKIP_UNITY_BUILD_INCLUSION ON SKIP_PRECOMPILE_HEADERS ON)

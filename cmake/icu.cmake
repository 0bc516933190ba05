# ICU as a static library, with the data that is used of it (packaging/icu) in the place of all 30 MB.
find_library(ICU_UC_STATIC libicuuc.a REQUIRED)
find_library(ICU_DATA_STATIC libicudata.a REQUIRED)
string(REGEX MATCH "^[0-9]+" icu_major "${ICU_VERSION}")

set(icu_data "${CMAKE_BINARY_DIR}/icu/data.cpp")
add_custom_command(OUTPUT ${icu_data}
  COMMAND ${CMAKE_COMMAND} -DALL=${ICU_DATA_STATIC}
    -DPACKAGER=${ICU_ICUPKG_EXECUTABLE} -DBUNDLER=${ICU_GENRB_EXECUTABLE} -DARCHIVER=${CMAKE_AR}
    -DCOPIER=${CMAKE_OBJCOPY} -DNAME=icudt${icu_major}l
    -DBUNDLE=${CMAKE_SOURCE_DIR}/packaging/icu/root.txt -DOUT=${icu_data}
    -P ${CMAKE_SOURCE_DIR}/cmake/icu_data.cmake
  DEPENDS ${CMAKE_SOURCE_DIR}/packaging/icu/root.txt ${CMAKE_SOURCE_DIR}/cmake/icu_data.cmake
    ${ICU_DATA_STATIC}
  COMMENT "Taking what is used of ICU's data" VERBATIM)
add_library(icu_data STATIC ${icu_data})
add_library(icu_static INTERFACE)
target_link_libraries(icu_static INTERFACE ${ICU_UC_STATIC} icu_data)

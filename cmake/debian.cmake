# The Debian package of the simulated Mac, with the driver that runs on it:
#   cpack -G DEB --config build/release/CPackConfig.cmake -B OUT
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME simulated-mac)
set(CPACK_PACKAGE_VERSION "${PRODUCT_VERSION}")
set(CPACK_PACKAGE_CONTACT "Zentrove Desk <desk@zentrove.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "simulated Mac for testing agents, and the driver that runs on it")
string(CONCAT CPACK_PACKAGE_DESCRIPTION
  "A strict model of a Mac, under virtual time, on which agents that operate\n"
  " applications through driver are tested on Linux, without a Mac.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL driver simulated-mac docs)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DRIVER_SOURCES "${CMAKE_SOURCE_DIR}")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/debian_files.cmake")
# NAME_VERSION_ARCHITECTURE.deb
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "fonts-dejavu-core, fonts-noto-cjk, python3")
include(CPack)

# What is installed, by components: driver, simulated-mac (not on a Mac) and docs.
#   cmake --install build/release --prefix /usr/local [--component driver]

# By one name on both systems, whatever the project is called that builds it.
set(CMAKE_INSTALL_DOCDIR share/doc/driver CACHE STRING "Where the documents are installed")
include(GNUInstallDirs)
include("${CMAKE_CURRENT_LIST_DIR}/identity.cmake")

install(TARGETS driver RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT driver)
install(FILES "${product_folder}/packaging/man/driver.1"
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT driver)
install(FILES "${product_folder}/packaging/man/driver-service.7"
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man7 COMPONENT driver)
install(FILES "${product_folder}/packaging/completions/driver.bash"
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME driver COMPONENT driver)
install(FILES "${product_folder}/packaging/completions/_driver"
  DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT driver)
install(FILES "${product_folder}/packaging/completions/driver.fish"
  DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT driver)
install(PROGRAMS "${product_folder}/scripts/doctor"
  DESTINATION ${CMAKE_INSTALL_DATADIR}/driver COMPONENT driver)
install(DIRECTORY "${product_folder}/packaging/contract/schemas"
  "${product_folder}/packaging/contract/arguments"
  DESTINATION ${CMAKE_INSTALL_DATADIR}/driver/contract COMPONENT driver)
install(FILES "${product_folder}/packaging/contract/errors.json"
  DESTINATION ${CMAKE_INSTALL_DATADIR}/driver/contract COMPONENT driver)

if(TARGET simulated-mac)
  install(TARGETS simulated-mac simulated-mac-view RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    COMPONENT simulated-mac)
  install(TARGETS virtual_sleep LIBRARY DESTINATION libexec/simulated-mac COMPONENT simulated-mac)
  install(FILES "${product_folder}/packaging/man/simulated-mac.1"
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT simulated-mac)
  install(FILES "${product_folder}/packaging/completions/simulated-mac.bash"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME simulated-mac
    COMPONENT simulated-mac)
  install(FILES "${product_folder}/packaging/completions/_simulated-mac"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT simulated-mac)
  install(FILES "${product_folder}/packaging/completions/simulated-mac.fish"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT simulated-mac)
  install(DIRECTORY "${product_folder}/packaging/contract/simulated-mac"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/driver/contract COMPONENT simulated-mac)
  install(DIRECTORY "${product_folder}/demo/"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/driver/worlds COMPONENT simulated-mac
    FILES_MATCHING PATTERN "*.world")
  include("${CMAKE_CURRENT_LIST_DIR}/examples.cmake")
  install(DIRECTORY "${examples_folder}/"
    DESTINATION ${CMAKE_INSTALL_DATADIR}/driver/examples COMPONENT simulated-mac)
  install(DIRECTORY "${product_folder}/worlds/" DESTINATION ${CMAKE_INSTALL_DATADIR}/driver/worlds
    COMPONENT simulated-mac FILES_MATCHING PATTERN "*.world" PATTERN "*.md")
endif()

# They lie to each other as in the sources, so that their links lead somewhere.
install(FILES "${product_folder}/README.md" "${product_folder}/CHANGELOG.md"
  "${product_folder}/CONTRIBUTING.md" "${product_folder}/SECURITY.md"
  DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT docs)
install(DIRECTORY "${product_folder}/docs" DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT docs
  FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg")
install(DIRECTORY "${product_folder}/worlds" DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT docs)
install(DIRECTORY "${product_folder}/packaging/contract"
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/packaging COMPONENT docs)
foreach(client typescript python mcp)
  install(FILES "${product_folder}/clients/${client}/README.md"
    DESTINATION ${CMAKE_INSTALL_DOCDIR}/clients/${client} COMPONENT docs)
endforeach()

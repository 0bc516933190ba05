# Makes of the installed files what Debian asks of a package, before they are packed: the notices of what is
# linked statically, a changelog, and documents that are compressed. CPack runs it.
file(GLOB_RECURSE executable ${CPACK_TEMPORARY_DIRECTORY}/*/usr/bin/simulated-mac
  ${CPACK_TEMPORARY_DIRECTORY}/usr/bin/simulated-mac)
list(GET executable 0 executable)
get_filename_component(root ${executable}/../../.. ABSOLUTE)
set(documents ${root}/usr/share/doc/simulated-mac)

file(READ ${CPACK_DRIVER_SOURCES}/packaging/debian/copyright copyright)
foreach(library libicu-dev nlohmann-json3-dev)
  set(notice /usr/share/doc/${library}/copyright)
  if(NOT EXISTS ${notice})
    message(FATAL_ERROR "there is no ${notice}")
  endif()
  file(READ ${notice} text)
  string(APPEND copyright "\n--- ${library}\n\n${text}")
endforeach()
file(WRITE ${documents}/copyright "${copyright}")

# SOURCE_DATE_EPOCH decides, where it is set.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${documents}/changelog "simulated-mac (${CPACK_PACKAGE_VERSION}) stable; urgency=medium\n\n"
  "  * The changes are listed in /usr/share/doc/driver/CHANGELOG.md.\n\n"
  " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")

file(GLOB pages ${root}/usr/share/man/man*/*.[0-9])
execute_process(COMMAND gzip -9nf ${documents}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)

# simulated-mac starts it; its manual has both.
file(CREATE_LINK simulated-mac.1.gz ${root}/usr/share/man/man1/simulated-mac-view.1.gz SYMBOLIC)

# Where Debian's zsh looks for what packages bring.
file(RENAME ${root}/usr/share/zsh/site-functions ${root}/usr/share/zsh/vendor-completions)

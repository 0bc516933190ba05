# A script: writes OUT, a source with the part of ICU's data that BUNDLE names and that bundle itself.
# ALL is the static library of the data, NAME what ICU calls them.
get_filename_component(folder ${OUT} DIRECTORY)
set(items ${folder}/items)
file(MAKE_DIRECTORY ${items}/brkitr)
file(WRITE ${folder}/characters.txt "brkitr/char.brk\n")
file(WRITE ${folder}/kept.txt "brkitr/char.brk\nbrkitr/root.res\n")

set(in_folder WORKING_DIRECTORY ${folder} COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
execute_process(COMMAND ${ARCHIVER} x ${ALL} ${in_folder})
file(GLOB object ${folder}/icudt*_dat.o)
execute_process(COMMAND ${COPIER} -O binary -j .rodata ${object} ${NAME}.dat ${in_folder})
execute_process(COMMAND ${PACKAGER} -x characters.txt -d items ${NAME}.dat ${in_folder})
execute_process(COMMAND ${BUNDLER} --quiet --destdir items/brkitr ${BUNDLE} ${in_folder})
file(MAKE_DIRECTORY ${folder}/kept)
execute_process(COMMAND ${PACKAGER} -a kept.txt -s items new kept/${NAME}.dat ${in_folder})
file(REMOVE ${object} ${folder}/${NAME}.dat)

file(READ ${folder}/kept/${NAME}.dat bytes HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
string(REGEX REPLACE "((0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,)(0x..,))" "\\1\n" bytes "${bytes}")
file(WRITE ${OUT} "#include <unicode/utypes.h>\n\n"
  "extern \"C\" alignas(16) const unsigned char U_ICUDATA_ENTRY_POINT[];\n"
  "alignas(16) const unsigned char U_ICUDATA_ENTRY_POINT[] = {\n${bytes}};\n")

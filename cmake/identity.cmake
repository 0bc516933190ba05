# What the product is called: its version, from VERSION, and its identifier, from main/product.h.
get_filename_component(product_folder "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
file(STRINGS "${product_folder}/VERSION" PRODUCT_VERSION LIMIT_COUNT 1)
file(STRINGS "${product_folder}/main/product.h" identifier_line REGEX "productIdentifier = ")
string(REGEX REPLACE ".*\"(.*)\".*" "\\1" PRODUCT_PREFIX "${identifier_line}")
set(PRODUCT_IDENTIFIER "${PRODUCT_PREFIX}.driver")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
  "${product_folder}/VERSION" "${product_folder}/main/product.h")

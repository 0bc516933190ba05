#include "platform/loader.h"

#include <gtest/gtest.h>

TEST(loader, finds_what_a_loaded_library_exports) {
  EXPECT_NE(loader::findLoadedSymbol("malloc"), nullptr);
  EXPECT_EQ(loader::findLoadedSymbol("no_such_symbol_anywhere"), nullptr);
}

TEST(loader, opens_a_library_and_finds_its_symbols) {
  void* program = loader::openLibrary(nullptr);
  ASSERT_NE(program, nullptr);
  EXPECT_NE(loader::findSymbol(program, "malloc"), nullptr);
  EXPECT_EQ(loader::findSymbol(program, "no_such_symbol_anywhere"), nullptr);
}

TEST(loader, opens_nothing_at_a_path_without_a_library) {
  EXPECT_EQ(loader::openLibrary("/nonexistent/library"), nullptr);
}

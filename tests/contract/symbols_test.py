"""The page of symbols, of a product of three sources: what it says, and what is refused."""
import struct
import sys
import tempfile
import unittest
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPTS = Path(__file__).resolve().parent.parent.parent / "scripts"
sys.path.insert(0, str(SCRIPTS))
LOADER = SourceFileLoader("generate_mac_symbols", str(SCRIPTS / "generate-mac-symbols"))
generator = module_from_spec(spec_from_loader(LOADER.name, LOADER))
LOADER.exec_module(generator)
from mac_declarations import read_header

HEADER = """
typedef struct { int side; } ThingSize;
enum { kThingRed = 1 << 2, };  // int kThingBlue(void);
extern const int kThingName;
int ThingMake(ThingSize size);
@interface Thing : NSObject
@property(getter=isOpen) BOOL open;
- (void)move:(int)x by:(int (^)(int))step;
- (void)close;
@end
@interface Other : NSObject
@property(readonly) BOOL empty;
+ (instancetype)close;
@end
"""
ADAPTER = """
#import <Things/Things.h>
void use(Thing* thing) {
  [thing move:thing.open ? kThingName : kThingRed by:nil];
  [thing close];
  ThingMake({});
}
"""
OTHER_ADAPTER = "bool isEmpty() { return [Other close].empty; }"
CORE = '''
#include "platform/loader.h"
void* found = loader::findSymbol(loader::openLibrary("/System/Secret"), "SecretCall");
const char* role = "AXThing";  // "AXComment"
constexpr int secretField = 51;
'''
TABLE = """
[basis.sdk]
confirmed = true
text = "compared"
[basis.private]
confirmed = false
text = "not compared"
[[library]]
name = "Things"
about = "All things."
[[group]]
source = "Things.h"
basis = "sdk"
names = '''ThingMake kThingName kThingRed ThingSize Thing.open -[Thing move:by:] -[Thing close]
Other.empty +[Other close]'''
[[group]]
source = "nowhere"
basis = "private"
names = '''SecretCall "/System/Secret" "AXThing"'''
[[number]]
name = "field 51"
source = "nowhere"
basis = "private"
file = "input/core.cpp"
texts = ["secretField = 51"]
[[assumption]]
id = "secret-call"
names = ["SecretCall"]
assumed = "It is there."
shown = "A call."
probe = "secrets"
[[assumption]]
id = "secret-names"
names = ['"/System/Secret"', '"AXThing"', "field 51"]
assumed = "So are these."
published = "Somebody says so."
shown = "A look."
person = "it has to be looked at"
"""
PROBES = """
[probe.secrets]
about = "calls"
seconds = 1
"""
ALL_SYMBOLS = """\
### Names and numbers in our sources

Functions that are looked up:

| Symbol | Described in | Checked | Used in |
|---|---|---|---|
| `SecretCall`\\* | nowhere | private | `input/core.cpp` |

Numbers:

| Symbol | Described in | Checked | Used in |
|---|---|---|---|
| `field 51`\\* | nowhere | private | `input/core.cpp` |

Files and tools:

| Symbol | Described in | Checked | Used in |
|---|---|---|---|
| `"/System/Secret"`\\* | nowhere | private | `input/core.cpp` |

Names in Accessibility, and other identifiers:

| Symbol | Described in | Checked | Used in |
|---|---|---|---|
| `"AXThing"`\\* | nowhere | private | `input/core.cpp` |

### Things

All things.

Functions and constants:

| Symbol | Described in | Checked | Used in |
|---|---|---|---|
| `kThingName`, `ThingMake` | Things.h | sdk | `use.mm` |

Methods and properties:

| Symbol | Described in | Checked | Used in |
|---|---|---|---|
| `+[Other close]`, `Other.empty` | Things.h | sdk | `other.mm` |
| `-[Thing close]`, `-[Thing move:by:]`, `Thing.open` | Things.h | sdk | `use.mm` |

Structures:

| Symbol | Described in | Checked | Used in |
|---|---|---|---|
| `ThingSize` | Things.h | sdk | — |

Values:

| Symbol | Described in | Checked | Used in |
|---|---|---|---|
| `kThingRed = 1 << 2` | Things.h | sdk | `use.mm` |

"""


def section(name, size, start, relocations=0, relocation_count=0):
    return struct.pack("<16s16s2Q8I", name, b"", 0, size, start, 0, relocations, relocation_count,
                       0, 0, 0, 0)


def mach_o(libraries=(), imported=(), sent=()):
    """A file that loads these libraries, imports these names from the first one, and whose code
    sends these selectors."""
    loads = b""
    for library in libraries:
        name = library.encode() + b"\0" * (8 - len(library) % 8)
        loads += struct.pack("<6I", 0xC, 24 + len(name), 24, 0, 0, 0) + name
    start = 32 + len(loads) + 24 + 72 + 2 * 80
    methods = b"".join(selector.encode() + b"\0" for selector in sent)
    references = b"".join(struct.pack("<2I", 0, len(imported) + index | 1 << 27)
                          for index in range(len(sent)))
    names, symbols = b"\0", b""
    for name in imported:
        symbols += struct.pack("<IBBHQ", len(names), 1, 0, 1 << 8, 0)
        names += name.encode() + b"\0"
    for selector in sent:
        symbols += struct.pack("<IBBHQ", 0, 0xE, 1, 0, methods.index(selector.encode() + b"\0"))
    symbols_start = start + len(methods) + len(references)
    segment = struct.pack("<2I16s4Q4I", 0x19, 72 + 2 * 80, b"", 0, 0, 0, 0, 0, 0, 2, 0)
    segment += section(b"__objc_methname", len(methods), start)
    segment += section(b"__objc_selrefs", 0, 0, start + len(methods), len(sent))
    table = struct.pack("<6I", 0x2, 24, symbols_start, len(imported) + len(sent),
                        symbols_start + len(symbols), len(names))
    commands = loads + table + segment
    header = struct.pack("<8I", 0xFEEDFACF, 0, 0, 2, len(libraries) + 2, len(commands), 0, 0)
    return header + commands + methods + references + symbols + names


class Symbols(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.write("platform/macos/declarations/Things.framework/Headers/Things.h", HEADER)
        self.write("platform/macos/use.mm", ADAPTER)
        self.write("platform/macos/other.mm", OTHER_ADAPTER)
        self.write("input/core.cpp", CORE)
        self.write("platform/macos/symbols.toml", TABLE)
        self.write("tests/mac/probes.toml", PROBES)
        self.write("tests/mac/secrets.cpp", "")
        self.write("docs/SIMULATOR.md", "# Rules\n")
        self.compile("_ThingMake", "_kThingName")

    def write(self, name, contents):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(contents if isinstance(contents, bytes) else contents.encode())

    def compile(self, *imported):
        """The objects of adapters, one of which is gone by now, and an executable that
        imports these names."""
        objects = "build/macos/driver.dir/"
        self.write(objects + "use.mm.o",
                   mach_o(imported=imported, sent=["isOpen", "move:by:", "close"]))
        self.write(objects + "other.mm.o", mach_o(sent=["close", "empty"]))
        self.write(objects + "gone.mm.o", mach_o(imported=imported))
        self.write("build/macos/driver",
                   mach_o(["/Things.framework/Versions/A/Things"], imported, ["empty"]))

    def change(self, name, old, new):
        text = (self.root / name).read_text()
        self.assertIn(old, text)
        self.write(name, text.replace(old, new))

    def change_table(self, old, new):
        self.change("platform/macos/symbols.toml", old, new)

    def generate(self):
        return generator.generate(self.root, self.root / "build/macos")

    def page(self):
        """The page of symbols, without a problem."""
        pages, problems = self.generate()
        self.assertEqual([], problems)
        return pages[Path("docs/MAC.md")]

    def expect_problems(self, *problems):
        self.assertEqual(({}, list(problems)), self.generate())

    def test_are_all_listed_with_their_users(self):
        text = self.page()
        listed = text.split("## All symbols\n\n")[1].split("## What is not used")[0]
        self.assertEqual(ALL_SYMBOLS, listed)

    def test_that_are_assumed_come_first_the_private_functions_before_all(self):
        self.assertIn("## Private functions\n\n"
                      "- **secret-call**: `SecretCall` (`input/core.cpp`)  \n"
                      "  Assumed: It is there.  \n  A Mac shows it: A call.  \n"
                      "  Probe: `tests/mac/secrets`  \n\n"
                      "## Other names and numbers without documentation\n\n"
                      "- **secret-names**: `\"/System/Secret\"`, `\"AXThing\"`, `field 51` "
                      "(`input/core.cpp`)  \n  Assumed: So are these.  \n"
                      "  Published: Somebody says so.  \n  A Mac shows it: A look.  \n"
                      "  A person is needed: it has to be looked at  \n\n", self.page())

    def test_that_are_imported_need_an_entry(self):
        self.compile("_ThingMake", "_kThingName", "_ThingNew")
        self.expect_problems("ThingNew is used and has no entry")

    def test_of_a_library_with_an_entry_for_all_need_none(self):
        self.compile("_ThingMake", "_kThingName", "_ThingNew")
        self.change_table('name = "Things"', 'name = "Things"\nsource = "pages"\nbasis = "sdk"')
        text = self.page()
        self.assertIn("| `ThingNew` | pages | sdk | `use.mm` |", text)

    def test_of_the_system_library_are_used_by_who_names_them(self):
        imported = ["_ThingMake", "_kThingName", "_strcmp"]
        self.compile(*imported)
        self.write("build/macos/driver", mach_o(["/libSystem.B.dylib"], imported))
        self.change_table("[[library]]", '[[library]]\nname = "libSystem"\nabout = "C."\n'
                          'source = "pages"\nbasis = "sdk"\n[[library]]')
        text = self.page()
        self.assertIn("| `strcmp` | pages | sdk | — |", text)
        self.assertIn("| `kThingName`, `ThingMake` | Things.h | sdk | `use.mm` |", text)

    def test_that_are_looked_up_need_an_entry(self):
        self.change("input/core.cpp", "SecretCall", "OtherCall")
        self.expect_problems("OtherCall is used and has no entry",
                             "SecretCall has an entry and is not used")

    def test_that_are_looked_up_may_have_any_name(self):
        self.change("input/core.cpp", "SecretCall", "secret_call")
        self.expect_problems("secret_call is used and has no entry",
                             "SecretCall has an entry and is not used")

    def test_that_are_written_as_text_need_an_entry(self):
        self.change("input/core.cpp", '"AXThing"', '"AXThing", "AXNew"')
        self.expect_problems('"AXNew" is used and has no entry')

    def test_that_are_sent_without_a_declaration_need_an_entry(self):
        self.write("build/macos/driver.dir/other.mm.o", mach_o(sent=["empty", "close", "hide"]))
        self.expect_problems("-[NSObject hide] is used and has no entry",
                             "libobjc is used and not described")

    def test_without_a_use_have_no_entry(self):
        self.change_table("kThingName kThingRed", "kThingName kThingGreen kThingRed")
        self.expect_problems("kThingGreen has an entry and is not used")

    def test_have_one_entry_each(self):
        self.change_table("kThingName kThingRed", "kThingName kThingName kThingRed")
        self.expect_problems("kThingName has two entries")

    def test_that_are_declared_are_used(self):
        self.change("platform/macos/use.mm", " : kThingRed", " : 4")
        self.compile("_ThingMake")
        self.expect_problems("kThingName is declared and not used",
                             "kThingRed is declared and not used",
                             "kThingName has an entry and is not used")

    def test_that_the_oldest_sdk_lacks_are_not_declared(self):
        header = "platform/macos/declarations/Things.framework/Headers/Things.h"
        self.change(header, "- (void)close;",
                    "- (void)close __attribute__((availability(macos, introduced=14.2)));")
        self.assertEqual([], self.generate()[1])
        self.change(header, "introduced=14.2", "introduced = 14.4")
        self.expect_problems("Things declares what came with macOS 14.4, and the oldest SDK is that "
                             "of 14.2")

    def test_that_are_not_confirmed_need_an_assumption(self):
        self.change_table('["SecretCall"]', '["ThingMake"]')
        self.expect_problems(
            "SecretCall is not confirmed, and nothing is said to be assumed")

    def test_that_nobody_uses_are_not_assumed(self):
        self.change_table('["SecretCall"]', '["SecretCall", "LostCall"]')
        self.expect_problems("an assumption is made of LostCall, which has no entry")

    def test_that_are_numbers_stand_in_their_file(self):
        self.change("input/core.cpp", "= 51", "= 52")
        self.expect_problems('input/core.cpp has no "secretField = 51"')

    def test_of_a_header_are_what_it_declares(self):
        header = read_header(HEADER)
        self.assertEqual([{"Thing.open": ["isOpen", "setOpen:"],
                           "-[Thing move:by:]": ["move:by:"], "-[Thing close]": ["close"]},
                          {"Other.empty": ["empty"], "+[Other close]": ["close"]}],
                         [each.members for each in header.types])
        self.assertEqual(({"kThingRed": "1 << 2"}, ["ThingSize"], ["kThingName", "ThingMake"]),
                         (header.values, header.structures, header.plain))

    def test_are_checked_without_writing(self):
        with self.assertRaisesRegex(SystemExit, "scripts/generate-mac-symbols writes these pages"):
            generator.main(["--check"], self.root)
        self.assertFalse((self.root / "docs/MAC.md").exists())
        generator.main([], self.root)
        self.assertEqual(self.page(), (self.root / "docs/MAC.md").read_text())
        generator.main(["--check"], self.root)
        self.change("docs/MAC.md", "A call.", "A letter.")
        with self.assertRaisesRegex(SystemExit, r"-  A Mac shows it: A letter\."):
            generator.main(["--check"], self.root)

    def test_of_the_simulated_mac_say_what_macs_have_answered(self):
        self.write("simulator/calls.cpp", "")
        self.write("docs/SIMULATOR.md", "| Calls call. | assumed (`secret-call`) |\n")
        self.change_table('probe = "secrets"\n',
                          'probe = "secrets"\nsimulated = ["simulator/calls.cpp"]\n'
                          '[[assumption.answer]]\nverdict = "confirmed"\nversion = "15.5"\n'
                          'hardware = "Mac"\ndate = "2026-11-30"\nevidence = "seen"\n')
        self.assertEqual("| Calls call. | assumed (`secret-call`: confirmed on 15.5) |\n",
                         self.generate()[0][Path("docs/SIMULATOR.md")])
        self.assertIn("  Probe: `tests/mac/secrets`  \n  A Mac has answered: confirmed on "
                      "macOS 15.5 (Mac, 2026-11-30): seen  \n\n", self.page())


if __name__ == "__main__":
    unittest.main()

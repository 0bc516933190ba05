"""Reads 64-bit Mach-O files: the executable for a Mac, and the objects that it is linked from."""
import struct
import sys
from dataclasses import dataclass

MAGIC = bytes.fromhex('CFFAEDFE')
COUNT_OFFSET = 16
HEADER_SIZE = 32
LOAD_COMMAND_SYMBOLS = 0x2
LOAD_COMMAND_LIBRARY = 0xC
LOAD_COMMAND_SEGMENT = 0x19
SEGMENT_SIZE = 72
SECTION_SIZE = 80
SYMBOL_SIZE = 16
RELOCATION_SIZE = 8
SYMBOL_NUMBER_BITS = 0xFFFFFF
DEBUG_BITS = 0xE0
TYPE_BITS = 0x0E
CLASS_PREFIX = '_OBJC_CLASS_$_'
# A class of our own also imports that of its superclass's class, which comes with it.
METACLASS_PREFIX = '_OBJC_METACLASS_$_'


def text_at(data, offset):
    return data[offset:data.index(b'\0', offset)].decode()


def load_commands(data):
    if not data.startswith(MAGIC):
        sys.exit('not a 64-bit Mach-O file')
    count, = struct.unpack_from('<I', data, COUNT_OFFSET)
    offset = HEADER_SIZE
    for _ in range(count):
        command, size = struct.unpack_from('<2I', data, offset)
        yield command, offset
        offset += size


def libraries(data):
    """The install names of the libraries, in the order in which symbols refer to them."""
    return [text_at(data, offset + struct.unpack_from('<I', data, offset + 8)[0])
            for command, offset in load_commands(data) if command == LOAD_COMMAND_LIBRARY]


def symbols(data):
    """(name, kind, address, description) of each symbol, by their numbers."""
    table = next(offset for command, offset in load_commands(data)
                 if command == LOAD_COMMAND_SYMBOLS)
    start, count, names, _ = struct.unpack_from('<4I', data, table + 8)
    for index in range(count):
        name, kind, _, description, address = struct.unpack_from('<IBBHQ', data,
                                                                 start + index * SYMBOL_SIZE)
        yield text_at(data, names + name), kind, address, description


def imports(data):
    """(name, number of its library, counted from 1) of each undefined symbol."""
    for name, kind, _, description in symbols(data):
        if not kind & (DEBUG_BITS | TYPE_BITS):
            yield name.replace(METACLASS_PREFIX, CLASS_PREFIX), description >> 8


@dataclass
class Section:
    address: int
    contents: bytes
    references: list  # the number of the symbol that each relocation refers to; objects have them


def sections(data):
    """The sections by name, of which '__text' is one."""
    found = {}
    for command, offset in load_commands(data):
        if command != LOAD_COMMAND_SEGMENT:
            continue
        count, = struct.unpack_from('<I', data, offset + 64)
        for index in range(count):
            name, _, address, size, start, _, relocations, relocation_count = struct.unpack_from(
                '<16s16s2Q4I', data, offset + SEGMENT_SIZE + index * SECTION_SIZE)
            references = [symbol_number & SYMBOL_NUMBER_BITS for _, symbol_number
                          in struct.iter_unpack('<iI', data[relocations:relocations
                                                            + relocation_count * RELOCATION_SIZE])]
            found[name.rstrip(b'\0').decode()] = Section(
                address, data[start:start + size] if start else b'', references)
    return found


def sent_selectors(data):
    """The selectors of the messages that an object's code sends."""
    found = sections(data)
    if '__objc_selrefs' not in found:
        return set()
    texts, numbered = found['__objc_methname'], list(symbols(data))
    return {text_at(texts.contents, numbered[number][2] - texts.address)
            for number in found['__objc_selrefs'].references}

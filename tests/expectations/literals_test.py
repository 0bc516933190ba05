"""What string and number literals of C++ mean, and how they are written anew."""
import pathlib
import sys
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / 'scripts'))

from cpp_literals import (folded, number_value, plain, text_value, tokens,  # noqa: E402
                          with_number, with_text, with_texts)


class Literals(unittest.TestCase):
    def test_tokens_leave_out_comments_and_keep_literals_whole(self):
        source = '#include "a"\nf("a, \\"b", R"x(")")x", 1\'000U); // "c"\n/* "d" */ \'"\''
        self.assertEqual([token.text for token in tokens(source)],
                         ['f', '(', '"a, \\"b"', ',', 'R"x(")")x"', ',', "1'000U", ')', ';',
                          "'\"'"])

    def test_escapes_mean_bytes(self):
        for literal, value in [
                (r'"a\n\t\\\""', b'a\n\t\\"'), (r'"\0"', b'\0'), (r'"\0011"', b'\x011'),
                (r'"\xFF"', b'\xff'), (r'"\u00e9\U0001F600"', 'é😀'.encode()),
                ('"é"', 'é'.encode()),
                ('R"(\\n")"', b'\\n"'), ('R"a(x)")a"', b'x)"'), ('u"a"', None)]:
            self.assertEqual(text_value(literal), value, literal)

    def test_what_is_written_means_what_was_meant(self):
        for value in [b'', b'plain', b'a"b\\c\n\t\r', b'\0001', b'\x7f\xff1', 'é😀'.encode(),
                      b'\xc3', b'?\x1bf', b')"', b'a)~"b"']:
            self.assertEqual(text_value(f'"{plain(value)}"'), value)
            for old in ['""', r'"a\x1"', 'R"(old)"', '"é"']:
                new = with_text(old, value)
                meant = b''.join(text_value(token.text) for token in tokens(new))
                self.assertEqual(meant, value, new)

    def test_what_stays_is_written_as_before(self):
        self.assertEqual(with_text(r'"\x41 old \u00e9"', 'A new é'.encode()), r'"\x41 new \u00e9"')
        self.assertEqual(with_text('"é old"', 'é new'.encode()), '"é new"')
        self.assertEqual(with_text('"old"', 'é'.encode()), r'"\u00E9"')
        self.assertEqual(with_text(r'"\x1 z"', b'\x01b'), r'"\x1""b"')

    def test_raw_stays_raw_where_it_can(self):
        self.assertEqual(with_text('R"({"a":1})"', b'{"b":2}'), 'R"({"b":2})"')
        self.assertEqual(with_text('R"(old)"', b'a\nb'), 'R"(a\nb)"')
        self.assertEqual(with_text('R"(old)"', b'x)"'), 'R"~(x)")~"')
        self.assertEqual(with_text('R"(old)"', b'a\x01'), r'"a\001"')

    def test_of_adjacent_literals_only_those_change_that_must(self):
        self.assertEqual(with_texts(['"one "', 'R"("two" )"', '"three"'], b'one "2" three'),
                         ['"one "', 'R"("2" )"', '"three"'])
        self.assertEqual(with_texts(['"a"', '"b"'], b'abc'), ['"a"', '"bc"'])
        self.assertEqual(with_texts(['"ab"', '"cd"'], b'aXd'), ['"aX"', '"d"'])
        self.assertEqual(with_texts(['"ab"', '"cd"'], b''), ['""', '""'])
        self.assertEqual(with_texts(['""', '"b"'], b'ab'), ['""', '"ab"'])

    def test_raw_literals_that_have_grown_too_long_are_parted(self):
        self.assertEqual(folded('R"(ab,cd ef)"', 13), 'R"(ab,cd ef)"')
        self.assertEqual(folded('R"(ab,cd ef)"', 12), 'R"(ab,cd )" R"(ef)"')
        self.assertEqual(folded('R"(abcdefgh)"', 8), 'R"(abcdefgh)"')
        self.assertEqual(folded('"ab,cd ef"', 8), '"ab,cd ef"')

    def test_numbers_keep_their_way(self):
        for literal, value in [("584'000", 584000), ('7', 7), ('0x1F', 31), ('16U', 16),
                               ('1.5', None), ("0x5A'54", 0x5a54), ('0b11', 3), ('2LL', 2)]:
            self.assertEqual(number_value(literal), value, literal)
        self.assertEqual(with_number("584'000", 596000), "596'000")
        self.assertEqual(with_number("9'500", 100), '100')
        self.assertEqual(with_number('900', 1100), '1100')
        self.assertEqual(with_number('900U', 12000000), "12'000'000U")
        self.assertEqual(with_number('0x1F', 255), '0xFF')


if __name__ == '__main__':
    unittest.main()

"""scripts/update-expectations on small sources: what it rewrites, and what it leaves to a human."""
import contextlib
import importlib.machinery
import importlib.util
import io
import json
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
from unittest import mock

sys.dont_write_bytecode = True
ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / 'scripts'))
NAME = 'tests/some_test.cpp'


def loaded(path):
    """A script as a module: it runs many times here, and starts once."""
    loader = importlib.machinery.SourceFileLoader(path.name.replace('-', '_'), str(path))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(loader.name, loader))
    loader.exec_module(module)
    return module


SCRIPT = loaded(ROOT / 'scripts/update-expectations')


def kept(value):
    """A value as the tests keep it."""
    if isinstance(value, (str, bytes)):
        return {'text': (value.encode() if isinstance(value, str) else value).hex()}
    return [kept(each) for each in value] if isinstance(value, (list, tuple)) else value


def compared(line, expected, *comparisons, test='a.test', actual='seen(run)', file=NAME):
    """A place of a test: (actual, expected) values; without any all comparisons have held."""
    return {'test': kept(test), 'file': kept(f'../../{file}'), 'line': line, 'actual': kept(actual),
            'expected': kept(expected), 'count': len(comparisons) or 1,
            'compared': [[a == b, kept(a), kept(b)] for a, b in comparisons]}


class Update(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        (self.root / 'build/release/expectations').mkdir(parents=True)
        (self.root / 'tests').mkdir()
        shutil.copy(ROOT / '.clang-format', self.root)

    def update(self, source, *records):
        """Runs the script on a source; its status and output."""
        (self.root / NAME).write_text(source)
        lines = ''.join(json.dumps(record) + '\n' for record in records)
        (self.root / 'build/release/expectations/1.jsonl').write_text(lines)
        output, errors = io.StringIO(), io.StringIO()
        words = ['update-expectations', '--root', str(self.root)]
        with mock.patch.object(sys, 'argv', words), contextlib.redirect_stdout(output), \
                contextlib.redirect_stderr(errors):
            status = SCRIPT.main()
        self.assertEqual(errors.getvalue(), '')
        return status, output.getvalue()

    def rewrites(self, old, new, *records):
        status, output = self.update(old, *records)
        new = subprocess.run(['clang-format-14', '--assume-filename', self.root / NAME], input=new,
                             capture_output=True, text=True, check=True).stdout
        self.assertEqual((self.root / NAME).read_text(), new, output)
        self.assertEqual(status, 1)
        self.assertNotIn('by hand', output)
        return output

    def leaves(self, source, why, *records):
        status, output = self.update(source, *records)
        self.assertEqual((self.root / NAME).read_text(), source, output)
        self.assertEqual(status, 1)
        self.assertIn(f'by hand: {NAME}:{records[0]["line"]}: ', output)
        self.assertIn(why, output)

    def of_call(self, old, new, actual, expected):
        """One comparison with `old` in a test becomes one with `new`."""
        test = 'TEST(a, test) {{ EXPECT_EQ(seen(run), {}); }}\n'
        self.rewrites(test.format(old), test.format(new), compared(1, old, (actual, expected)))

    def test_where_all_holds_nothing_is_done(self):
        source = 'TEST(a, test) { EXPECT_EQ(seen(run), "x"); }\n'
        self.assertEqual(self.update(source, compared(1, '"x"')), (0, ''))
        self.assertEqual((self.root / NAME).read_text(), source)

    def test_shows_what_has_changed(self):
        test = 'TEST(a, test) {{ EXPECT_EQ(f(), {}); }}\n'
        output = self.rewrites(test.format(1), test.format(2), compared(1, '1', (2, 1)))
        self.assertIn(f'-{test.format(1)}+{test.format(2)}', output)

    def test_literals(self):
        self.of_call('"old"', '"new"', 'new', 'old')
        self.of_call('R"(a "b")"', 'R"(a "c")"', 'a "c"', 'a "b"')
        self.of_call("584'000", "596'000", 596000, 584000)
        self.of_call('-1', '7', 7, -1)
        self.of_call('7', '-1', -1, 7)
        self.of_call('16U', '17U', 17, 16)
        self.of_call('true', 'false', False, True)
        self.of_call('std::nullopt', '3', 3, {})
        self.of_call('3', 'std::nullopt', {}, 3)
        self.of_call(r'std::string("a\0b", 3)', r'std::string("a\0bc", 4)', b'a\0bc', b'a\0b')
        self.of_call("2 * 6'000'000 + 984'000", "2 * 6'000'000 + 996'000", 12996000, 12984000)
        self.of_call('2 * timeOut + 5', '2 * timeOut + 6', 26, 25)
        source = ('constexpr int timeOut = 10;\n'
                  'TEST(a, test) {{ EXPECT_EQ(f(), {} + 2 * timeOut); }}\n')
        self.rewrites(source.format(5), source.format(6),
                      compared(2, '5 + 2 * timeOut', (26, 25)))
        self.of_call('400 + 15', '500', 500, 415)

    def test_literals_in_helpers(self):
        self.of_call('failure("no \\"x\\"")', 'failure("no \\"y\\"")',
                     '1 {"error":"no \\"y\\"","ok":false}\n',
                     '1 {"error":"no \\"x\\"","ok":false}\n')
        self.of_call('text("a") + b + "c"', 'text("x") + b + "z"', 'x-z', 'a-c')
        self.of_call('window(7)', 'window(8)', '{"window":8}', '{"window":7}')

    def test_lists(self):
        self.of_call('(Calls{"a", "b"})', '(Calls{"a", "x", "b"})', ['a', 'x', 'b'], ['a', 'b'])
        self.of_call('(Calls{"a", "b"})', '(Calls{"a"})', ['a'], ['a', 'b'])
        self.of_call('Calls{}', 'Calls{"a"}', ['a'], [])
        self.of_call('after(first, {"a"})', 'after(first, {"a", "b"})', ['f', 'a', 'b'], ['f', 'a'])
        self.of_call('(Calls{first, "a"})', '(Calls{first, "b"})', ['f', 'b'], ['f', 'a'])
        self.of_call('(Calls{plain("x"), "a"})', '(Calls{plain("y"), "a"})',
                     ['<y>', 'a'], ['<x>', 'a'])
        self.of_call('(std::vector<int>{1, 2})', '(std::vector<int>{1, 3, 2})', [1, 3, 2], [1, 2])

    def test_finds_the_comparison_over_several_lines(self):
        old = ('TEST(a, test) {\n  EXPECT_EQ(seen(run),\n            "old line"\n'
               '            "s");\n}\n')
        for line in (2, 4):
            self.rewrites(old, 'TEST(a, test) {\n  EXPECT_EQ(seen(run),\n            "new line"\n'
                          '            "s");\n}\n',
                          compared(line, '"old line" "s"', ('new lines', 'old lines')))

    def test_a_constant_becomes_what_all_its_comparisons_saw(self):
        source = ('const std::string done = success("{}");\n'
                  'TEST(a, test) {{ EXPECT_EQ(f(), done); }}\n'
                  'TEST(a, other) {{ EXPECT_EQ(g(), done); }}\n')
        old, new = source.format('old'), source.format('new')
        both = ('<new>', '<old>')
        self.rewrites(old, new, compared(2, 'done', both),
                      compared(3, 'done', both, test='a.other'))
        self.leaves(old, 'holds', compared(2, 'done', both), compared(3, 'done', test='a.other'))
        self.leaves(old, 'two things', compared(2, 'done', both),
                    compared(3, 'done', ('<else>', '<old>'), test='a.other'))

    def test_one_literal_for_all_rounds_of_a_loop(self):
        source = ('TEST(a, test) {{\n  for (int i : {{1, 2}}) {{\n'
                  '    EXPECT_EQ(f(i), {});\n  }}\n}}\n')
        self.rewrites(source.format(7), source.format(8), compared(3, '7', (8, 7), (8, 7)))
        self.leaves(source.format(7), 'holds', compared(3, '7', (8, 7), (7, 7)))
        self.leaves(source.format(7), 'two things', compared(3, '7', (8, 7), (9, 7)))

    TABLE = ('TEST(a, test) {{\n  const std::pair<const char*, int> cases[] = {{\n'
             '      {{"a", {}}}, {{"b", {}}}, {{"c", 2}}}};\n'
             '  for (const auto& [text, number] : cases) {{\n'
             '    EXPECT_EQ(f(text), number);\n  }}\n}}\n')

    def test_rows_are_told_by_their_order(self):
        self.rewrites(self.TABLE.format(2, 2), self.TABLE.format(2, 3),
                      compared(5, 'number', (2, 2), (3, 2), (2, 2)))

    def test_rows_without_an_order_are_told_by_their_value_alone(self):
        self.rewrites(self.TABLE.format(1, 2), self.TABLE.format(4, 2),
                      compared(5, 'number', (4, 1)))
        self.leaves(self.TABLE.format(2, 1), 'holds', compared(5, 'number', (4, 2), (2, 2)))

    def test_fields_of_rows(self):
        source = ('struct Case {{\n  std::string text;\n  int number = 0;\n}};\n'
                  'const Case cases[] = {{{{"a", {}}}, {{.text = "b", .number = {}}}}};\n'
                  'TEST(a, test) {{\n  for (const Case& each : cases) {{\n'
                  '    EXPECT_EQ(f(each.text), each.number);\n  }}\n}}\n')
        self.rewrites(source.format(1, 1), source.format(2, 3),
                      compared(8, 'each.number', (2, 1), (3, 1)))

    def test_arguments_of_a_test_are_told_from_those_of_others(self):
        source = ('void check(int given, const std::string& text) {{\n'
                  '  EXPECT_EQ(f(given), text);\n}}\n'
                  'TEST(a, test) {{\n  check(1, "{}");\n  check(2, "{}");\n}}\n'
                  'TEST(a, other) {{ check(1, "old"); }}\n')
        self.rewrites(source.format('old', 'old'), source.format('new', 'old'),
                      compared(2, 'text', ('new', 'old'), ('old', 'old')),
                      compared(2, 'text', test='a.other'))

    def test_what_a_helper_of_the_source_returns(self):
        source = ('std::string reply(int x) {{ return success("{}:" + text(x)); }}\n'
                  'TEST(a, test) {{\n  EXPECT_EQ(f(), reply(1));\n'
                  '  EXPECT_EQ(g(), reply(2));\n}}\n')
        self.rewrites(source.format('key'), source.format('name'),
                      compared(3, 'reply(1)', ('{name:1}', '{key:1}')),
                      compared(4, 'reply(2)', ('{name:2}', '{key:2}')))

    def test_effects_in_a_raw_text(self):
        source = ('TEST(a, test) {{\n  EXPECT_EQ(effects, R"(   40 ms  post\n'
                  '   {} ms  post\n)");\n}}\n')
        self.rewrites(source.format(67), source.format(70), compared(
            2, 'R"..."', ('   40 ms  post\n   70 ms  post\n', '   40 ms  post\n   67 ms  post\n')))

    def test_what_has_no_literal_is_left(self):
        self.leaves('TEST(a, test) { EXPECT_EQ(f(), g()); }\n', 'no literal',
                    compared(1, 'g()', (1, 2)))
        self.leaves('TEST(a, test) { EXPECT_EQ(f(), Rect{1}); }\n', 'no literal',
                    compared(1, 'Rect{1}', (None, None)) | {'compared': [[False, None, None]]})
        self.leaves('TEST(a, test) { EXPECT_EQ(f(), "a"); }\n', 'no literal',
                    compared(1, '"a"', (b'a\0', 'a')))
        self.leaves('TEST(a, test) { EXPECT_EQ(f(), failure("a")); }\n', 'no literal',
                    compared(1, 'failure("a")', ('0 b', '1 a')))

    def test_what_is_input_too_is_left(self):
        for source, line, expected in [
                ('const std::string a = "x";\nTEST(a, test) {\n  EXPECT_EQ(f(a), a);\n}\n', 3, 'a'),
                ('TEST(a, test) {\n  const std::string a = "x";\n  f(a);\n'
                 '  EXPECT_EQ(g(), a);\n}\n',
                 4, 'a'),
                ('TEST(a, test) {\n  const std::string a = "x";\n'
                 '  const std::string world = a + "y";\n'
                 '  EXPECT_EQ(g(world), a);\n}\n', 4, 'a'),
                ('TEST(a, test) {\n  for (const char* a : {"x", "y"}) {\n    EXPECT_EQ(g(a), a);\n'
                 '  }\n}\n', 3, 'a'),
                ('void check(const std::string& a) {\n  f(a);\n  EXPECT_EQ(g(), a);\n}\n'
                 'TEST(a, test) { check("x"); }\n', 3, 'a')]:
            self.leaves(source, 'no literal', compared(line, expected, ('z', 'x')))

    def test_what_makes_only_expected_values_is_none(self):
        old = ('const std::string a = "x";\nconst std::string b = success(a);\n'
               'TEST(a, test) {\n  SCOPED_TRACE(a);\n  EXPECT_EQ(f(), b) << a;\n}\n')
        self.rewrites(old, old.replace('"x"', '"z"'), compared(5, 'b', ('0 z', '0 x')))

    def test_two_constants_that_adjoin(self):
        old = ('const char* a = "1 ms  a\\n";\nconst char* b = "3 ms  b\\n";\n'
               'TEST(a, test) {\n  EXPECT_EQ(f(), std::string(a) + b) << "x";\n}\n')
        self.rewrites(old, old.replace('1 ms', '22 ms').replace('3 ms', '24 ms'), compared(
            4, 'std::string(a) + b', ('22 ms  a\n24 ms  b\n', '1 ms  a\n3 ms  b\n')))

    def test_what_rules_judge_is_never_rewritten(self):
        source = 'TEST(a, test) { EXPECT_EQ(mac.takeViolations(), "I1"); }\n'
        self.leaves(source, 'rule',
                    compared(1, '"I1"', ('I2', 'I1'), actual='mac.takeViolations()'))


if __name__ == '__main__':
    unittest.main()

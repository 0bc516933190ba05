"""Sources with many mistakes compiled in: what they become, and whose line each line is."""
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))
from mutations import mutations
from schemata import Schema


def schema(source, *texts):
    """With the mistakes that write one of these texts, numbered from 1 as they come."""
    made = [each for each in mutations(source) if not texts or each.text in texts]
    return Schema(source, dict(enumerate(made, 1)))


def rewritten(source, *texts):
    """In one line."""
    return " ".join(schema(source, *texts).text.split())


class Rewriting(unittest.TestCase):
    def test_an_expression_is_chosen_as_a_whole(self):
        self.assertEqual(rewritten("void f() {\n  x = a < b && c;\n}\n", "<=", "||"),
                         "void f() { x = ( mutant::is(1) ? (a <= b && c) : mutant::is(2) ? (a < b || c) : "
                         "(a < b && c)) ; }")

    def test_an_expression_within_another_one_has_a_choice_of_its_own(self):
        self.assertEqual(rewritten("int f() {\n  return a + g(b + c);\n}\n", "-"),
                         "int f() { return ( mutant::is(1) ? (a - g(b + c)) : (a + g( ( mutant::is(2) ? (b - c) : "
                         "(b + c)) ))) ; }")

    def test_an_assignment_takes_a_choice_with_it(self):
        self.assertEqual(rewritten("void f() {\n  if (c) a += b ? d : e;\n}\n", "-="),
                         "void f() { if (c) ( mutant::is(1) ? (a -= b ? d : e) : (a += b ? d : e)) ; }")

    def test_a_statement_is_left_out(self):
        self.assertEqual(rewritten("void f() {\n  if (a)\n    g(b);\n}\n", ";"),
                         "void f() { if (a) {if (!mutant::is(1)) g(b);} }")

    def test_the_end_of_a_longer_statement_is_none(self):
        self.assertEqual(rewritten("void f() {\n  const T x =\n      g(b);\n}\n", ";"),
                         "void f() { const T x = g(b); }")

    def test_a_condition_need_not_be_of_one_type_with_its_variants(self):
        self.assertEqual(rewritten("void f() {\n  if (T x = g(); x.y()) h();\n}\n", "true", "false"),
                         "void f() { if (T x = g(); (!mutant::is(1) && (mutant::is(2) || (x.y() )))) h(); }")

    def test_a_condition_that_declares_stays(self):
        self.assertEqual(rewritten("void f() {\n  if (const auto* x = g()) h(x);\n}\n", "true", "false"),
                         "void f() { if (const auto* x = g()) h(x); }")

    def test_a_negation_is_of_the_same_type_without_it(self):
        self.assertEqual(rewritten("bool f() {\n  return !a;\n}\n", ""),
                         "bool f() { return ( mutant::is(1) ? (!!a) : (!a)) ; }")

    def test_a_function_that_the_compiler_may_evaluate_is_as_it_was_there(self):
        self.assertEqual(rewritten("constexpr int f(int x) {\n  return x + y;\n}\n", "-"),
                         "constexpr int f(int x) { return ( mutant::isAtRun(1) ? (x - y) : (x + y)) ; }")

    def test_a_constant_becomes_a_variable(self):
        made = schema("constexpr int limit = 3;\n", "4")
        self.assertEqual((" ".join(made.text.split()), made.names),
                         ("const int limit = ( mutant::is(1) ? (4) : (3)) ;", {"limit": {1}}))

    def test_an_argument_of_a_template_is_left_out(self):
        made = schema("std::array<int, 4> table;\n", "5")
        self.assertEqual((made.text, made.compiled_in), ("std::array<int, 4> table;\n", set()))

    def test_a_reference_is_no_operator(self):
        self.assertEqual(rewritten("void f(T&& x) {\n  g(&x);\n}\n", "||", "|"), "void f(T&& x) { g(&x); }")

    def test_texts_are_only_added(self):
        self.assertEqual(rewritten('auto f() { return "a" + b; }\n', "-"), 'auto f() { return "a" + b; }')


class Blame(unittest.TestCase):
    def setUp(self):
        self.made = schema("int f() {\n  return a + g(b + c);\n}\nint h();\n", "-")
        self.lines = self.made.text.splitlines()

    def blamed(self, text):
        """For the only line that begins so."""
        line, = (number for number, each in enumerate(self.lines, 1) if each.startswith(text))
        return self.made.blamed(line)

    def test_a_variant_is_to_blame_for_its_line(self):
        self.assertEqual((self.blamed("mutant::is(1) ? (a - g"), self.blamed("mutant::is(2) ? (b - c)")), ({1}, {2}))

    def test_the_nearest_choice_is_to_blame_for_the_original(self):
        self.assertEqual((self.blamed("(a + g("), self.blamed("(b + c))")), ({1}, {2}))

    def test_the_last_choice_before_it_is_to_blame_for_another_line(self):
        self.assertEqual(self.blamed("int h"), {1})


if __name__ == "__main__":
    unittest.main()

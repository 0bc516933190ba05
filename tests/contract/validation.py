"""Validation against the published schemas, by a validator that is not ours."""
import json

from mac import ROOT

from jsonschema import Draft202012Validator

FOLDER = ROOT / "packaging" / "contract" / "schemas"
ARGUMENTS = ROOT / "packaging" / "contract" / "arguments"


def validator(name):
    schema = json.loads((FOLDER / f"{name}.json").read_text())
    Draft202012Validator.check_schema(schema)
    return Draft202012Validator(schema)


class Validation:
    """Keeps the validators, and every error text that was seen."""

    def __init__(self):
        self._validators = {}
        self.errors = set()
        self.count = 0

    def faults(self, name, value):
        if name not in self._validators:
            self._validators[name] = validator(name)
        if "error" in value:
            self.errors.add(value["error"])
        self.count += 1
        if self._validators[name].is_valid(value):
            return []
        return [f"{name}: {json.dumps(value)[:400]}"]

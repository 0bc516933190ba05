"""How the probes in Python say what they found."""
import json
import sys


def print_answer(ask):
    """Asks about the assumption that the command line names, and prints verdict and evidence in one
    line."""
    assumption = sys.argv[1]
    verdict, evidence = ask(assumption)
    print(json.dumps({"assumption": assumption, "verdict": verdict, "evidence": evidence},
                     ensure_ascii=False))

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""json_suite.py tells a right end of a run from a wrong one."""
import json
import signal
import unittest

from json_suite import judge_document, judge_model


def error(**keys):
    return ("a warning\n" + json.dumps({"error": keys}) + "\n").encode()


CORRUPTED = error(type="DecodingError", kind="dataCorrupted", codingPath=[], message="")
MISSING = error(type="DecodingError", kind="keyNotFound", codingPath=[], key="version", message="")

RIGHT = [
    ("JSON is a model", judge_model, "y_a.json", 0, b""),
    ("what is not JSON is refused", judge_model, "n_a.json", 1, CORRUPTED),
    ("what may be either is taken", judge_model, "i_a.json", 0, b""),
    ("what may be either is refused", judge_model, "i_a.json", 1, CORRUPTED),
    ("JSON is not yet a document", judge_document, "y_a.json", 1, MISSING),
    ("what is not JSON is no document", judge_document, "n_a.json", 1, CORRUPTED),
]
WRONG = [
    ("JSON is refused", judge_model, "y_a.json", 1, CORRUPTED),
    ("what is not JSON is taken", judge_model, "n_a.json", 0, b""),
    ("another kind of error", judge_model, "n_a.json", 1, MISSING),
    ("an error without its object", judge_model, "n_a.json", 1, b"error: bad\n"),
    ("a crash", judge_model, "i_a.json", -signal.SIGSEGV, b""),
    ("a crash by an error's look", judge_document, "y_a.json", -signal.SIGABRT, CORRUPTED),
    ("the command line was wrong", judge_document, "y_a.json", 2, error(type="UsageError", message="")),
    ("no document is taken", judge_document, "i_a.json", 0, b""),
]


class JSONSuite(unittest.TestCase):
    def test_right_ends(self):
        for why, judge, name, status, stderr in RIGHT:
            with self.subTest(why):
                self.assertIsNone(judge(name, status, stderr))

    def test_wrong_ends(self):
        for why, judge, name, status, stderr in WRONG:
            with self.subTest(why):
                self.assertIsNotNone(judge(name, status, stderr))


if __name__ == "__main__":
    unittest.main()

#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""faults_suite.py must notice what faults leave."""
import dataclasses

import faults_suite

OLD = {"a.png": b"old a", "a.json": b"old tree", "b.png": b"old b"}
NEW = {"a.png": b"new a", "a.json": b"new tree", "b.png": b"new b", "c.png": b"new c"}
CASE = faults_suite.Case("pairs", [], faults_suite.with_its_pair)


REPORTED = dataclasses.replace(CASE, report=("r.json",))


def judged(status=1, ended_by=None, case=CASE, **left):
    """What is wrong where files differ from the old ones; None stands for a file that is not there."""
    files = {**OLD, **{name.replace("_", "."): data for name, data in left.items()}}
    there = {name: data for name, data in files.items() if data is not None}
    reports = {name: b"" for name in case.report}
    return list(faults_suite.faults_of(case, OLD | reports, NEW | reports, reports | there, status, ended_by))


def main():
    assert judged() == []
    assert judged(b_png=b"new b", c_png=b"new c") == []
    assert judged(a_png=b"new a", a_json=b"new tree", status=-15, ended_by=15) == []
    assert judged(a_png=b"new a") == ["of a some files are new and some old"]
    assert judged(a_png=None) == ["a.png is lost"]
    assert judged(b_png=b"new") == ["b.png is neither old nor new"]
    assert judged(c_tmp=b"") == ["c.tmp is left"]
    assert judged(status=-11) == ["exit status -11"]
    assert judged(status=-15) == ["exit status -15"]
    told = b'[{"file": "a.png"}, {"file": null}]'
    assert judged(case=REPORTED, r_json=told, a_png=b"new a") == []
    assert judged(case=REPORTED, r_json=told) == ["a.png is not what r.json tells"]
    assert judged(case=REPORTED, r_json=told, a_png=b"new a", b_png=b"new b") == ["b.png is not what r.json tells"]
    assert judged(0, a_png=b"new a", a_json=b"new tree", b_png=b"new b") == ["c.png is not what success promises"]


if __name__ == "__main__":
    main()

# SPDX-License-Identifier: MIT
"""Made-up requests, by the server's own description: no answer is a fault of ours, and each is as it is described."""
import pathlib
import subprocess
import sys

CHECKS = ["not_a_server_error", "status_code_conformance", "content_type_conformance", "response_headers_conformance",
          "response_schema_conformance", "unsupported_method", "allow_header_conformance"]


def test_answers_are_as_described(serve, request, tmp_path):
    server = serve("--fetch", "none", "--time-limit", 30)  # however slow the machine is
    seconds = request.config.getoption("--fuzz")
    done = subprocess.run(
        [pathlib.Path(sys.executable).with_name("schemathesis"), "run", server.address + "/openapi.json", "--checks",
         ",".join(CHECKS), "--max-time", str(seconds), "--continue-on-failure", "--request-timeout", "10", "--seed", "1"],
        cwd=tmp_path, capture_output=True, encoding="utf-8", timeout=seconds * 3 + 120)
    assert done.returncode == 0, done.stdout[-6000:] + done.stderr[-2000:]
    assert server.metric("tavrin_http_requests_total") > 100
    assert server.metric("tavrin_pictures_drawn_total") > 0
    assert server.end() == 0

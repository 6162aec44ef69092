# SPDX-License-Identifier: MIT
"""Nothing is drawn for who has no key."""
import subprocess
import time

import pytest

PATH = "/v1/widgets/weather.png?scale=2"
BODY = '{"document": {"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}}'
JSON = {"Content-Type": "application/json"}


@pytest.fixture
def sign(program, tmp_path):
    (tmp_path / "keys").write_text("new key\nold key\n")

    def signed(path, *words, key=None):
        file = tmp_path / "keys"
        if key:
            file = tmp_path / "key"
            file.write_text(key)
        return subprocess.run([program, "sign", path, "--key-file", file, *words], check=True, capture_output=True,
                              encoding="utf-8").stdout.strip()

    signed.keys = tmp_path / "keys"
    return signed


def test_addresses_are_judged(serve, sign):
    server = serve("--key-file", sign.keys)
    right = sign(PATH)
    soon = int(time.time())
    refused = {
        "not signed": PATH,
        "by nobody's key": sign(PATH, key="another key"),
        "expired": sign(PATH, "--expires", str(soon - 1)),
        "of something else": right.replace("scale=2", "scale=3"),
        "with something behind it": right + "&scale=2",
    }
    for why, path in refused.items():
        answer = server.ask(path)
        assert answer.status == 403, why
        assert answer.headers["Content-Type"] == "application/problem+json"
        assert answer.problem["status"] == 403
    assert server.metric("tavrin_pictures_drawn_total") == 0
    assert server.metric("tavrin_signatures_rejected_total") == len(refused)
    assert server.metric('tavrin_signatures_rejected_total{reason="expired"}') == 1

    accepted = [right, sign(PATH, key="old key"), sign(PATH, "--expires", str(soon + 60))]
    assert [server.ask(path).status for path in accepted] == [200] * 3
    assert server.ask(right, method="HEAD").status == 200
    assert all("&s=" not in entry["path"] and "?s=" not in entry["path"] for entry in server.log)


def test_one_bit_is_enough(serve, sign):
    """Each bit of the signature, and of what is signed, as long as it remains a request."""
    server = serve("--key-file", sign.keys)
    right = sign(PATH)
    asked = 0
    for at in range(len("/v1/widgets/"), len(right)):
        for bit in range(7):
            changed = right[:at] + chr(ord(right[at]) ^ 1 << bit) + right[at + 1:]
            if not all(" " < letter <= "~" and letter != "#" for letter in changed):
                continue
            asked += 1
            assert server.ask(changed).status in (403, 404), changed  # 404: another path altogether
    assert asked > 300
    assert server.metric("tavrin_pictures_drawn_total") == 0


def test_documents_are_taken_where_that_is_said(serve, sign):
    closed, opened = serve("--key-file", sign.keys), serve("--key-file", sign.keys, "--open-post")
    for path in ("/v1/render", "/v1/check"):
        assert closed.ask(path, "POST", BODY, JSON).status == 403
        assert opened.ask(path, "POST", BODY, JSON).status == 200
    assert closed.metric("tavrin_pictures_drawn_total") == 0

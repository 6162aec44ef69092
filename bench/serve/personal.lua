-- SPDX-License-Identifier: MIT
-- For wrk: each request asks for a picture that differs from all others in one text. Behind "--" stand the path up to
-- what differs, what stands before and behind the number in it, and whether that is base64url ("base64") or plain.
local digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_"

local function base64url(text)
  local parts = {}
  for at = 1, #text, 3 do
    local a, b, c = text:byte(at, at + 2)
    local bits = a * 65536 + (b or 0) * 256 + (c or 0)
    for place = 0, c and 3 or b and 2 or 1 do
      local digit = math.floor(bits / 64 ^ (3 - place)) % 64 + 1
      parts[#parts + 1] = digits:sub(digit, digit)
    end
  end
  return table.concat(parts)
end

local threads = 0
function setup(thread)
  thread:set("number", threads * 100000000)
  threads = threads + 1
end

local path, before, behind, isEncoded
function init(words)
  path, before, behind, isEncoded = words[1], words[2], words[3], words[4] == "base64"
end

function request()
  number = number + 1
  local text = before .. number .. behind
  return wrk.format("GET", path .. (isEncoded and base64url(text) or text))
end

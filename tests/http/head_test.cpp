// SPDX-License-Identifier: MIT
#include <string>

#include <gtest/gtest.h>

#include "cli/http/http_head.h"

namespace tavrin::cli {
namespace {

const std::string start = "GET / HTTP/1.1\r\nHost: a\r\n";

/// The status that a head is refused with; 0 for a good one.
unsigned statusOf(const std::string& head) {
    const auto fault = headFault(head, {.target = 64, .head = 256});
    return fault ? fault->status : 0;
}

TEST(HTTPHead, EndsWithAnEmptyLine) {
    const struct {
        std::string bytes;
        std::size_t searched;
        bool isWhole;
        bool isBroken;
    } rows[] = {
        {"", 0, false, false},
        {"GET / HTTP/1.1\r\n", 16, false, false},
        {"GET / HTTP/1.1\r\nHost: a\r\n\r\nbody", 27, true, false},
        {"\r\nGET", 2, true, false},  // which is then no head
        {"GET / HTTP/1.1\n", 14, false, true},
        {"GET / HTTP/1.1\r\nHost: a\n\n", 23, false, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bytes);
        const HeadEnd whole = findHeadEnd(row.bytes, 0);
        EXPECT_EQ(whole.isWhole, row.isWhole);
        EXPECT_EQ(whole.isBroken, row.isBroken);
        if (!row.isBroken) {
            EXPECT_EQ(whole.searched, row.searched);
        }
        // Byte by byte it comes to the same.
        HeadEnd end;
        for (std::size_t size = 0; size <= row.bytes.size() && !end.isWhole && !end.isBroken; ++size)
            end = findHeadEnd(std::string_view(row.bytes).substr(0, size), end.searched);
        EXPECT_EQ(end.isWhole, row.isWhole);
        EXPECT_EQ(end.isBroken, row.isBroken);
        EXPECT_EQ(end.searched, whole.searched);
    }
}

TEST(HTTPHead, IsTakenOrRefused) {
    const struct {
        const char* why;
        std::string head;
        unsigned status;
    } rows[] = {
        {"the least", start + "\r\n", 0},
        {"of the older version, which needs no Host", "GET / HTTP/1.0\r\n\r\n", 0},
        {"a length", start + "Content-Length: 12\r\n\r\n", 0},
        {"chunks, in any letter case", start + "transfer-encoding:  Chunked \r\n\r\n", 0},
        {"an empty value", start + "X:\r\n\r\n", 0},
        {"bytes that are not ASCII", start + "X: \xC3\xA9\r\n\r\n", 0},
        {"no words", "\r\n", 400},
        {"two words", "GET /\r\n\r\n", 400},
        {"another version", "GET / HTTP/2.0\r\nHost: a\r\n\r\n", 400},
        {"a version in small letters", "GET / http/1.1\r\nHost: a\r\n\r\n", 400},
        {"two blanks", "GET  / HTTP/1.1\r\nHost: a\r\n\r\n", 400},
        {"a tab for a blank", "GET\t/\tHTTP/1.1\r\nHost: a\r\n\r\n", 400},
        {"a blank in the path", "GET /a b HTTP/1.1\r\nHost: a\r\n\r\n", 400},
        {"a byte above ASCII in the path", "GET /\xC3\xA9 HTTP/1.1\r\nHost: a\r\n\r\n", 400},
        {"a method that is none", "G(T / HTTP/1.1\r\nHost: a\r\n\r\n", 400},
        {"no Host", "GET / HTTP/1.1\r\n\r\n", 400},
        {"two Hosts", start + "Host: a\r\n\r\n", 400},
        {"two lengths", start + "Content-Length: 1\r\nContent-Length: 2\r\n\r\n", 400},
        {"a length twice", start + "Content-Length: 1\r\ncontent-length: 1\r\n\r\n", 400},
        {"a list of lengths", start + "Content-Length: 1, 1\r\n\r\n", 400},
        {"a length with a sign", start + "Content-Length: +1\r\n\r\n", 400},
        {"a length below zero", start + "Content-Length: -1\r\n\r\n", 400},
        {"a length in hexadecimal", start + "Content-Length: 0x1\r\n\r\n", 400},
        {"no digits", start + "Content-Length:\r\n\r\n", 400},
        {"more digits than bytes there are", start + "Content-Length: 99999999999999999999\r\n\r\n", 400},
        {"a length and chunks", start + "Content-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n", 400},
        {"chunks and a length", start + "Transfer-Encoding: chunked\r\nContent-Length: 1\r\n\r\n", 400},
        {"chunks twice", start + "Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n\r\n", 400},
        {"chunks in chunks", start + "Transfer-Encoding: chunked, chunked\r\n\r\n", 400},
        {"another coding", start + "Transfer-Encoding: gzip, chunked\r\n\r\n", 400},
        {"a coding of no name", start + "Transfer-Encoding: xchunked\r\n\r\n", 400},
        {"identity", start + "Transfer-Encoding: identity\r\n\r\n", 400},
        {"a vertical tab",
         start + "Transfer-Encoding: \x0B"
                 "chunked\r\n\r\n",
         400},
        {"chunks of the older version", "POST / HTTP/1.0\r\nTransfer-Encoding: chunked\r\n\r\n", 400},
        {"a folded line", start + "X: a\r\n b\r\n\r\n", 400},
        {"a line folded with a tab", start + "X: a\r\n\tb\r\n\r\n", 400},
        {"a blank before the colon", start + "Content-Length : 1\r\n\r\n", 400},
        {"no colon", start + "Content-Length 1\r\n\r\n", 400},
        {"no name", start + ": 1\r\n\r\n", 400},
        {"a CR by itself", start + "X: a\rb\r\n\r\n", 400},
        {"a zero byte", start + "X: a" + std::string(1, '\0') + "\r\n\r\n", 400},
        {"a path that is too long", "GET /" + std::string(64, 'a') + " HTTP/1.1\r\nHost: a\r\n\r\n", 414},
        {"headers that are too long", start + "X: " + std::string(256, 'a') + "\r\n\r\n", 431},
        {"both", "GET /" + std::string(300, 'a') + " HTTP/1.1\r\nHost: a\r\n\r\n", 414},
    };
    for (const auto& row : rows) EXPECT_EQ(statusOf(row.head), row.status) << row.why;
}

TEST(HTTPHead, IsTooLongBeforeItEnds) {
    const HTTPLimits limits{.target = 64, .head = 256};
    EXPECT_EQ(tooLongFault("GET /" + std::string(300, 'a'), limits).status, 414U);
    EXPECT_EQ(tooLongFault(start + "X: " + std::string(300, 'a'), limits).status, 431U);
}

}  // namespace
}  // namespace tavrin::cli

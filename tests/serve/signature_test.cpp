// SPDX-License-Identifier: MIT
#include "cli/serve/signature.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/io_error.h"
#include "cli/serve/hmac.h"
#include "cli/usage_error.h"
#include "tavrin/json/json.h"

namespace tavrin::cli {
namespace {

using ::testing::HasSubstr;

/// What the helpers of other languages have to agree on, made with another program.
JSON signatureTable() {
    std::ifstream file(TAVRIN_SOURCE_DIR "/tests/serve/signatures.json", std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return JSON::parse(text.str());
}

const JSONArray& rowsOf(const JSON& table, std::string_view name) {
    return std::get<JSONArray>(table.find(name)->object());
}

std::string textIn(const JSON& row, std::string_view key) { return row.find(key)->description(); }

std::optional<std::uint64_t> expiresIn(const JSON& row) {
    const JSON* const expires = row.find("expires");
    return expires ? std::optional<std::uint64_t>(std::stoull(expires->description())) : std::nullopt;
}

std::string hexadecimal(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        text += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
        text += "0123456789abcdef"[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

TEST(HMAC, MakesTheCodesOfRFC4231) {
    const struct {
        std::string key;
        std::string text;
        const char* code;
    } rows[] = {
        {std::string(20, '\x0b'), "Hi There", "b0344c61d8db38535ca8afceaf0bf12b881dc200c9833da726e9376c2e32cff7"},
        {"Jefe", "what do ya want for nothing?", "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843"},
        {std::string(20, '\xaa'), std::string(50, '\xdd'),
         "773ea91e36800e46854db8ebd09181a72959098b3ef8c122d9635514ced565fe"},
        {std::string(131, '\xaa'), "Test Using Larger Than Block-Size Key - Hash Key First",
         "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54"},
    };
    for (const auto& row : rows) EXPECT_EQ(hexadecimal(HMACKey(row.key).code(row.text)), row.code);
}

TEST(Signature, IsWhatAnotherProgramMakes) {
    const JSON table = signatureTable();
    for (const JSON& row : rowsOf(table, "signed")) {
        SCOPED_TRACE(textIn(row, "why"));
        const SigningKeys keys(textIn(row, "key"), "keys");
        const std::string target = keys.sign(textIn(row, "path"), expiresIn(row));
        EXPECT_EQ(target, textIn(row, "signed"));
        const SignatureVerdict verdict = keys.verdict(target, {1'700'000'000});
        EXPECT_EQ(verdict, expiresIn(row) == 0 ? SignatureVerdict::expired : SignatureVerdict::right);
    }
}

TEST(Signature, IsMadeOnlyForWhatARequestCanHave) {
    const JSON table = signatureTable();
    const SigningKeys keys("secret", "keys");
    for (const JSON& row : rowsOf(table, "refused")) {
        SCOPED_TRACE(textIn(row, "why"));
        EXPECT_THROW(static_cast<void>(keys.sign(textIn(row, "path"), expiresIn(row))), UsageError);
    }
}

TEST(Signature, DoesNotHoldOnceOneBitIsAnother) {
    const SigningKeys keys("secret", "keys");
    const std::string target = keys.sign("/v1/widgets/weather.png?family=systemSmall", 1'800'000'000);
    ASSERT_EQ(keys.verdict(target, {0}), SignatureVerdict::right);
    for (std::size_t at = 0; at < target.size(); ++at)
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::string changed = target;
            changed[at] = static_cast<char>(static_cast<unsigned char>(changed[at]) ^ (1U << bit));
            EXPECT_NE(keys.verdict(changed, {0}), SignatureVerdict::right) << changed;
        }
}

TEST(Signature, IsJudged) {
    const SigningKeys keys("new\nold\n", "keys");
    const SigningKeys old("old", "keys");
    const SigningKeys strangers("another", "keys");
    const std::string path = "/v1/widgets/a.png";
    const std::string expiring = keys.sign(path, 1000);
    const std::string right = keys.sign(path);
    const std::string signature = right.substr(right.rfind('=') + 1);
    const struct {
        const char* why;
        std::string target;
        double now;
        SignatureVerdict verdict;
    } rows[] = {
        {"signed by the first key", right, 0, SignatureVerdict::right},
        {"signed by another key of the file", old.sign(path), 0, SignatureVerdict::right},
        {"signed by nobody's key", strangers.sign(path), 0, SignatureVerdict::wrong},
        {"not signed", path, 0, SignatureVerdict::missing},
        {"an empty query", path + "?", 0, SignatureVerdict::missing},
        {"something behind the signature", right + "&scale=2", 0, SignatureVerdict::missing},
        {"nothing behind the signature", right + "&", 0, SignatureVerdict::missing},
        {"s in another member's value", path + "?model=a?s=" + signature, 0, SignatureVerdict::missing},
        {"a longer name", path + "?ss=" + signature, 0, SignatureVerdict::missing},
        {"s percent-encoded", path + "?%73=" + signature, 0, SignatureVerdict::missing},
        {"an empty signature", path + "?s=", 0, SignatureVerdict::wrong},
        {"padding", right + "=", 0, SignatureVerdict::wrong},
        {"a signature cut short", right.substr(0, right.size() - 1), 0, SignatureVerdict::wrong},
        {"another path", "/v1/widgets/b.png?s=" + signature, 0, SignatureVerdict::wrong},
        {"more in the query", path + "?scale=3&s=" + signature, 0, SignatureVerdict::wrong},
        {"signed twice", right + "&s=" + signature, 0, SignatureVerdict::wrong},
        {"before it expires", expiring, 999.9, SignatureVerdict::right},
        {"at the moment it expires", expiring, 1000, SignatureVerdict::expired},
        {"after it has expired", expiring, 2000, SignatureVerdict::expired},
        {"wrong and expired", expiring + "x", 2000, SignatureVerdict::wrong},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(keys.verdict(row.target, {row.now}), row.verdict) << row.target;
        EXPECT_EQ(reasonOf(row.verdict).empty(), row.verdict == SignatureVerdict::right);
    }
}

TEST(SigningKeys, AreOneALine) {
    const SigningKeys secret("secret", "keys");
    const std::string target = secret.sign("/v1/widgets/a.png");
    const struct {
        const char* why;
        std::string text;
        bool isKey;
    } rows[] = {
        {"without a line's end", "secret", true},
        {"with it", "secret\n", true},
        {"with a CR before it", "secret\r\n", true},
        {"with a CR and no end", "secret\r", true},
        {"behind others", "one\ntwo\nsecret\n", true},
        {"between blank lines", "\n \t\nsecret\r\n\r\n", true},
        {"a CR in the middle is a part", "sec\rret\n", false},
        {"a blank is a part", "secret \n", false},
        {"a comment is a key", "# secret\n", false},
        {"two lines are two keys", "sec\nret\n", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(SigningKeys(row.text, "keys").verdict(target, {0}) == SignatureVerdict::right, row.isKey);
    }
}

TEST(SigningKeys, AreRefused) {
    std::string many;
    for (std::size_t i = 0; i <= SigningKeys::maximumKeys; ++i) many += "key" + std::to_string(i) + "\n";
    const struct {
        const char* why;
        std::string text;
        const char* message;
    } rows[] = {
        {"nothing", "", "there is no key in 'keys'"},
        {"blank lines", "\n\r\n  \n", "there is no key in 'keys'"},
        {"too many", many, "there are 65 keys in 'keys', and at most 64 are tried"},
        {"too much", std::string(SigningKeys::maximumFileBytes + 1, 'k'), "larger than 64 KiB"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        try {
            const SigningKeys keys(row.text, "keys");
            ADD_FAILURE() << "it was taken";
        } catch (const IOError& error) {
            EXPECT_THAT(error.what(), HasSubstr(row.message));
        }
    }
    EXPECT_THROW(static_cast<void>(SigningKeys::read("/nonexistent/keys")), IOError);
}

}  // namespace
}  // namespace tavrin::cli

#include "parse_fixture.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const char* const kDocuments[] = {
    R"({"id":["airable","radio",42],"title":"Caf\u00e9 \"Radio\"","count":3000000000,)"
    R"("streams":[{"url":"http:\/\/x\/s?a=1&b=2","codec":{"name":"mp3","bitrate":128}}],)"
    R"("rating":-4.75e-2,"live":true,"flag":false,"none":null,"empty":{},"list":[]})",
    "{\n  \"content\": {\n    \"entries\": [\n      {\"id\": [\"s\", \"track\", 7], \"duration\": 215,\n"
    "       \"title\": \"Line\\nbreak \\uD83D\\uDE00\"}\n    ]\n  }\n}\n",
    "[1, -2, 3.5, 1e5, -.5, 1., 007, \"\\u0041\\t\", [[[]]], {\"a\":{\"b\":{}}}]",
    "[\"a string that is well over sixteen bytes long, with an \\\"escape\\\" in it\"]",
};

bool allWhitespace(std::string const& text)
{
    return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

TEST(JsonCut, EveryPrefixFailsCleanlyOrParses)
{
    for (const char* document : kDocuments) {
        const std::string full(document);
        Parse whole(full);
        ASSERT_NE(whole.root, nullptr) << full << ": " << whole.message();

        for (std::size_t length = 0; length <= full.size(); ++length) {
            const std::string cut = full.substr(0, length);
            for (bool lengthKnown : {true, false}) {
                Parse p(cut, lengthKnown);
                SCOPED_TRACE(cut);
                if (p.root)
                    continue;
                if (allWhitespace(cut)) {
                    EXPECT_EQ(p.errorDesc, nullptr);
                    continue;
                }
                ASSERT_NE(p.errorDesc, nullptr);
                EXPECT_GE(p.position(), 0);
                EXPECT_LE(p.position(), static_cast<long>(length));
            }
        }
    }
}

} // namespace

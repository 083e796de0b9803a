#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "gate/GateJson.h"

namespace talvora {
namespace {

std::string written(const HostValue& data, const std::string& tag = {}) {
    std::string line;
    appendMessage(line, {7, 1, HostAddress::Everybody, tag, data, 0});
    return line;
}

TEST(GateJson, ValuesGoOutAndComeBack) {
    using namespace std::string_literals;
    const std::pair<HostValue, std::string> cases[] = {
        {{}, "null"},
        {-2147483647 - 1, "-2147483648"},
        {2.5, "2.5"},
        {1e300, "1e+300"},
        {4294967296.0, "4294967296"},
        {true, "true"},
        {"\xCA\xE1\xEB\xE7\xEC\xDD\xF1\xE1", R"("Καλημέρα")"},
        {"\x80 \xAA\xD2\xFF", "\"€ \uF8F9\uF8FA\uF8FB\""},
        {"a\0b\x01\x1F\x7F\x90"s, R"("a\u0000b\u0001\u001f\u007f\u0090")"},
        {"\"\\/\r\n\t", R"("\"\\/\r\n\t")"},
        {HostArray{HostArray{1, HostArray{}}, HostValue(), "x"}, R"([[1,[]],null,"x"])"},
    };
    for (const auto& [value, json] : cases) {
        EXPECT_EQ(written(value),
                  R"({"MsgID":7,"FromID":1,"ToID":-1,"Tag":"","Data":)" + json + R"(,"Extra":0})");
        EXPECT_EQ(readValue(json), value) << json;
    }
    EXPECT_NE(readValue("2e3")->asInteger(), nullptr);
    EXPECT_THAT(written(std::numeric_limits<double>::infinity()), testing::HasSubstr(R"("Data":null)"));
    const auto deepest =
        readValue(std::string(GateArrayDepth, '[') + std::string(GateArrayDepth, ']')).value();
    EXPECT_EQ(readMessage(written(deepest)).Message.value().Data, deepest);
    EXPECT_THAT(written(HostArray{deepest}), testing::HasSubstr("[[null]]"));
}

TEST(GateJson, EveryByteOfTextSurvivesAndNoneOfThemIsAControlCharacterOnTheWay) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    const std::string line = written(HostArray{all}, all);
    for (const char byte : line) EXPECT_GE(static_cast<unsigned char>(byte), 0x20);
    EXPECT_EQ(readMessage(line).Message.value().Tag, all);
    EXPECT_EQ(readMessage(line).Message.value().Data, HostValue(HostArray{all}));
}

TEST(GateJson, FieldsHaveTheirDefaultsAndAWrongLineIsNoMessage) {
    const auto good = readMessage("{\"MsgID\":7,\"FromID\":\"me\"} \r").Message.value_or(HostMessage{});
    EXPECT_TRUE(good.MsgID == 7 && good.FromID == 0 && good.ToID == HostAddress::Everybody);
    const std::string deep(100000, '[');
    const std::pair<std::string, std::string> cases[] = {
        {" \r", "empty line"},
        {"hello", "no JSON"},
        {"{\"MsgID\":1", "no JSON"},
        {"{\"MsgID\":1} {\"MsgID\":1}", "no JSON"},
        {"{\"MsgID\":1,\"Tag\":\"\xC3\x28\"}", "no JSON"},
        {deep, "no JSON"},
        {"{\"MsgID\":1,\"Data\":" + deep.substr(0, 40) + std::string(40, ']') + "}", "too deep"},
        {"[]", "MsgID"},
        {"{\"msgid\":1}", "MsgID"},
        {"{\"MsgID\":\"1\"}", "MsgID is no 32-bit integer"},
        {"{\"MsgID\":1.5}", "MsgID is no 32-bit integer"},
        {"{\"MsgID\":2147483648}", "MsgID is no 32-bit integer"},
        {"{\"MsgID\":1,\"ToID\":null}", "ToID is no 32-bit integer"},
        {"{\"MsgID\":1,\"Tag\":1}", "Tag is no text"},
        {"{\"MsgID\":1,\"Data\":[[{}]]}", "Data holds an object"},
        {"{\"MsgID\":1,\"Extra\":{}}", "Extra holds an object"},
        {"{\"MsgID\":1,\"data\":1}", "unknown field data"},
        {std::string(GateLineLimit + 1, ' ') + "{}", "too long"},
    };
    for (const auto& [line, complaint] : cases) {
        const auto read = readMessage(line);
        EXPECT_FALSE(read.Message) << line.substr(0, 80);
        EXPECT_THAT(read.Error, testing::HasSubstr(complaint)) << line.substr(0, 80);
    }
    for (const char* json : {"", "1,2", "{}", "[", "1e999", "nul"}) EXPECT_FALSE(readValue(json)) << json;
}

TEST(GateJson, AnErrorIsReadAsItWasWrittenAndIsNoMessage) {
    std::string line;
    appendError(line, "no \"\xC1\"");
    EXPECT_EQ(line, R"({"error":"no \"Α\""})");
    EXPECT_EQ(readError(line), "no \"\xC1\"");
    EXPECT_FALSE(readError(written("error")) || peekMsgID(line));
    EXPECT_EQ(peekMsgID(written("error")), 7);
}

}  // namespace
}  // namespace talvora

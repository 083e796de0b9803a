#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "gate/GateJson.h"

namespace talvora {
namespace {

std::string written(const HostMessage& message) {
    std::string line;
    appendMessage(line, message);
    return line;
}

HostMessage message(HostValue data) {
    HostMessage result;
    result.MsgID = 7;
    result.FromID = 1;
    result.Data = std::move(data);
    return result;
}

HostValue nested(int depth) {
    HostValue value("core");
    for (int i = 0; i < depth; ++i) value = HostArray{value};
    return value;
}

TEST(GateJson, AMessageIsOneObjectWithItsFieldsInOrder) {
    HostMessage text = message(HostArray{"#thes", "Nikos", "hello"});
    text.MsgID = 1005;
    text.Tag = "IRC";
    EXPECT_EQ(
        written(text),
        R"({"MsgID":1005,"FromID":1,"ToID":-1,"Tag":"IRC","Data":["#thes","Nikos","hello"],"Extra":0})");
}

TEST(GateJson, ValuesGoOutAndComeBack) {
    using namespace std::string_literals;
    const struct {
        HostValue value;
        std::string json;
    } cases[] = {
        {{}, "null"},
        {-2147483647 - 1, "-2147483648"},
        {2.5, "2.5"},
        {1e300, "1e+300"},
        {4294967296.0, "4294967296"},
        {true, "true"},
        {"", R"("")"},
        {"\xCA\xE1\xEB\xE7\xEC\xDD\xF1\xE1", R"("Καλημέρα")"},
        {"\x80 \xAA\xD2\xFF", "\"€ \uF8F9\uF8FA\uF8FB\""},
        {"a\0b\x01\x1F\x7F\x90"s, R"("a\u0000b\u0001\u001f\u007f\u0090")"},
        {"\"\\/\r\n\t", R"("\"\\/\r\n\t")"},
        {HostArray{}, "[]"},
        {HostArray{HostArray{1, HostArray{}}, HostValue(), "x"}, R"([[1,[]],null,"x"])"},
    };
    for (const auto& [value, json] : cases) {
        EXPECT_EQ(written(message(value)),
                  R"({"MsgID":7,"FromID":1,"ToID":-1,"Tag":"","Data":)" + json + R"(,"Extra":0})");
        EXPECT_EQ(readValue(json), value) << json;
    }
}

TEST(GateJson, EveryByteOfTextSurvivesAndNoneOfThemIsAControlCharacterOnTheWay) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    HostMessage out = message(all);
    out.Tag = all;
    out.Extra = HostArray{all};
    const std::string line = written(out);
    for (const char byte : line) EXPECT_GE(static_cast<unsigned char>(byte), 0x20);
    const auto in = readMessage(line).Message;
    ASSERT_TRUE(in);
    EXPECT_EQ(in->Tag, all);
    EXPECT_EQ(in->Data, HostValue(all));
    EXPECT_EQ(in->Extra, out.Extra);
}

TEST(GateJson, WhatJsonHasNoWordForIsNull) {
    EXPECT_THAT(written(message(std::numeric_limits<double>::infinity())),
                testing::HasSubstr(R"("Data":null)"));
    EXPECT_EQ(readMessage(written(message(nested(GateArrayDepth)))).Message->Data, nested(GateArrayDepth));
    EXPECT_THAT(written(message(nested(GateArrayDepth + 1))), testing::HasSubstr("[[null]]"));
}

TEST(GateJson, FieldsHaveTheirDefaultsAndTheSenderIsNotBelieved) {
    const auto read = readMessage("{\"MsgID\":3,\"FromID\":\"me\"} \r");
    ASSERT_TRUE(read.Message) << read.Error;
    EXPECT_EQ(written(*read.Message), R"({"MsgID":3,"FromID":0,"ToID":-1,"Tag":"","Data":null,"Extra":0})");
}

TEST(GateJson, NumbersWithoutAFractionAreIntegersAsFarAsTheyReach) {
    EXPECT_NE(readValue("3.0")->asInteger(), nullptr);
    EXPECT_NE(readValue("2e3")->asInteger(), nullptr);
    EXPECT_NE(readValue("2147483648")->asDouble(), nullptr);
    EXPECT_EQ(*readValue("3.25")->asDouble(), 3.25);
}

TEST(GateJson, AWrongLineIsNoMessage) {
    const std::string deep(100000, '[');
    const struct {
        std::string line;
        std::string complaint;
    } cases[] = {
        {"", "empty line"},
        {" \r", "empty line"},
        {"hello", "no JSON"},
        {"{\"MsgID\":1", "no JSON"},
        {"{\"MsgID\":1} {\"MsgID\":1}", "no JSON"},
        {"{\"MsgID\":1,\"Tag\":\"\xC3\x28\"}", "no JSON"},
        {deep, "no JSON"},
        {"{\"MsgID\":1,\"Data\":" + deep.substr(0, 40) + std::string(40, ']') + "}", "too deep"},
        {"[]", "MsgID"},
        {"1014", "no JSON"},
        {"{\"msgid\":1}", "MsgID"},
        {"{\"MsgID\":\"1\"}", "MsgID is no 32-bit integer"},
        {"{\"MsgID\":1.5}", "MsgID is no 32-bit integer"},
        {"{\"MsgID\":2147483648}", "MsgID is no 32-bit integer"},
        {"{\"MsgID\":1,\"ToID\":null}", "ToID is no 32-bit integer"},
        {"{\"MsgID\":1,\"Tag\":1}", "Tag is no text"},
        {"{\"MsgID\":1,\"Data\":{}}", "Data holds an object"},
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

TEST(GateJson, AnErrorIsReadAsItWasWritten) {
    std::string line;
    appendError(line, "no \"\xC1\"");
    EXPECT_EQ(line, R"({"error":"no \"Α\""})");
    EXPECT_EQ(readError(line), "no \"\xC1\"");
    EXPECT_FALSE(readError(written(message("error"))));
    EXPECT_EQ(peekMsgID(written(message("error"))), 7);
    EXPECT_FALSE(peekMsgID(line));
}

}  // namespace
}  // namespace talvora

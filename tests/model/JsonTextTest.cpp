#include "model/JsonText.h"
#include "model/CustomFieldCodec.h"
#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <limits>

namespace {

struct WriteCase {
    const char *name;
    QJsonValue value;
    const char *expected;
};

class JsonTextWrite : public testing::TestWithParam<WriteCase> {};

// Scalars, escapes, empty containers and nesting come out in exactly our pretty form.
TEST_P(JsonTextWrite, WritesExactText)
{
    EXPECT_EQ(JsonText::write(GetParam().value), QByteArray(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Values, JsonTextWrite,
    testing::Values(
        WriteCase{"true", true, "true"}, WriteCase{"null", QJsonValue(QJsonValue::Null), "null"},
        WriteCase{"whole", 100.0, "100"}, WriteCase{"fraction", 1234.5, "1234.5"},
        WriteCase{"shortFraction", 0.88, "0.88"}, WriteCase{"negative", -0.25, "-0.25"},
        WriteCase{"inexactSum", 0.1 + 0.2, "0.30000000000000004"}, WriteCase{"huge", 1e21, "1e+21"},
        WriteCase{"infinity", std::numeric_limits<double>::infinity(), "null"},
        WriteCase{"quoteBackslash", QStringLiteral("a\"b\\c"), R"("a\"b\\c")"},
        WriteCase{"namedControls", QStringLiteral("\b\f\n\r\t"), R"("\b\f\n\r\t")"},
        WriteCase{"otherControls", QString(QChar(0x01)) + QChar(0x1f) + QChar(0x7f),
                  "\"\\u0001\\u001f\x7f\""},
        WriteCase{"nonAscii", QStringLiteral("é€😀"), "\"é€😀\""},
        WriteCase{"plainSlash", QStringLiteral("/tmp/a"), "\"/tmp/a\""},
        WriteCase{"emptyArray", QJsonArray(), "[]"}, WriteCase{"emptyObject", QJsonObject(), "{}"},
        WriteCase{
            "nested",
            QJsonArray{QJsonObject{{"b", QJsonArray{1, false}}, {"a", QJsonObject()}, {"c", QJsonArray()}}},
            "[\n  {\n    \"a\" : {},\n    \"b\" : [\n      1,\n      false\n    ],\n    \"c\" : []\n  }\n]"}),
    [](const testing::TestParamInfo<WriteCase> &info) { return std::string(info.param.name); });

// Keys sort by UTF-16 code units: upper case before lower, a surrogate pair (D83D…) before U+FF21.
TEST(JsonText, SortsKeysByUtf16CodeUnits)
{
    const QJsonObject object{
        {"b", 1}, {"a", 2}, {"B", 3}, {QStringLiteral("\uFF21"), 4}, {QStringLiteral("😀"), 5}};
    EXPECT_EQ(JsonText::write(object),
              QByteArray("{\n  \"B\" : 3,\n  \"a\" : 2,\n  \"b\" : 1,\n  \"😀\" : 5,\n  \"Ａ\" : 4\n}"));
}

// The escaped-slash form only changes "/" (keys included).
TEST(JsonText, EscapesSlashesOnRequest)
{
    const QJsonObject object{{"a/b", "c/d\\"}};
    EXPECT_EQ(JsonText::write(object, JsonText::Slashes::Escaped),
              QByteArray("{\n  \"a\\/b\" : \"c\\/d\\\\\"\n}"));
}

// The one-line form keeps key order and numbers but never breaks a line, even for text holding one.
TEST(JsonText, WritesOneLine)
{
    const QJsonObject object{{"b", QJsonArray{1.5, QJsonObject()}}, {"a", "x\ny/z"}, {"c", QJsonArray()}};
    EXPECT_EQ(JsonText::writeLine(object), QByteArray(R"({"a":"x\ny/z","b":[1.5,{}],"c":[]})"));
}

// The custom-fields file form: sorted members, " : ", escaped slashes; it decodes to the same list.
TEST(CustomFieldCodec, EncodesFileFormAndRoundTrips)
{
    const QList<CustomFieldDef> defs{
        {QUuid("{6f9619ff-8b86-d011-b42d-00c04fc964ff}"), QStringLiteral("PO number"), QStringLiteral("P/O"),
         false},
        {QUuid("{0a1b2c3d-0000-4000-8000-00000000000f}"), QString(), QStringLiteral("\\d+ é"), true}};
    const QByteArray text = CustomFieldCodec::encode(defs);
    EXPECT_EQ(text, goldenFile("custom-fields.json"));
    EXPECT_EQ(CustomFieldCodec::decode(text), defs);
    EXPECT_EQ(CustomFieldCodec::encode({}), QByteArray("[]"));
}

} // namespace

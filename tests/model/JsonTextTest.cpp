#include "model/JsonText.h"
#include "model/CustomFieldCodec.h"
#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <limits>

namespace {

using JsonText::Slashes;

// Scalars, escapes, slashes, empty containers and key order (UTF-16 code units: upper case before lower, a
// surrogate pair before U+FF21) come out in exactly our text form (whole numbers, null, nesting and plain
// slashes are pinned by the export's golden file).
TEST(JsonText, WritesExactText)
{
    const auto controls = QString(QChar(0x01)) + QChar(0x1f) + QChar(0x7f);
    const struct {
        QJsonValue value;
        Slashes slashes;
        const char *expected;
    } cases[] = {
        // clang-format off
        {true, Slashes::Plain, "true"},
        {-0.25, Slashes::Plain, "-0.25"},
        {0.1 + 0.2, Slashes::Plain, "0.30000000000000004"},
        {1e21, Slashes::Plain, "1e+21"},
        {std::numeric_limits<double>::infinity(), Slashes::Plain, "null"},
        {QStringLiteral("a\"b\\c"), Slashes::Plain, R"("a\"b\\c")"},
        {QStringLiteral("\b\f\n\r\t"), Slashes::Plain, R"("\b\f\n\r\t")"},
        {controls, Slashes::Plain, "\"\\u0001\\u001f\x7f\""},
        {QStringLiteral("é€😀"), Slashes::Plain, "\"é€😀\""},
        {QJsonObject{{"a/b", "c/d\\"}}, Slashes::Escaped, "{\n  \"a\\/b\" : \"c\\/d\\\\\"\n}"},
        {QJsonArray(), Slashes::Plain, "[]"},
        {QJsonArray{QJsonObject(), QJsonArray()}, Slashes::Plain, "[\n  {},\n  []\n]"},
        {QJsonObject{{"b", 1}, {"B", 2}, {"Ａ", 3}, {"😀", 4}}, Slashes::Plain, "{\n  \"B\" : 2,\n  \"b\" : 1,\n  \"😀\" : 4,\n  \"Ａ\" : 3\n}"},
        // clang-format on
    };
    for (const auto &c : cases)
        EXPECT_EQ(JsonText::write(c.value, c.slashes), QByteArray(c.expected)) << c.expected;
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

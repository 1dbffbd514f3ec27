#include "extract/CustomField.h"
#include "RowFixtures.h"
#include "extract/Extractor.h"
#include "model/CustomFieldCodec.h"

#include <gtest/gtest.h>

using RowFixtures::rowsOf;

namespace {

CustomFieldDef def(const QString &pattern, bool isRegex, const QString &name = QStringLiteral("PO"))
{
    return CustomFieldDef{QUuid::createUuid(), name, pattern, isRegex};
}

// Keyword and pattern modes: value, confidence and which row the box comes from.
TEST(CustomField, Extracts)
{
    // clang-format off
    // boxRow: the row whose box is expected, -1 for none.
    const struct { const char *name, *pattern; bool isRegex; QStringList rows; const char *value; double confidence; int boxRow; } cases[] = {
        {"Keyword", "PO Number", false, {"Total 5", "PO Number: 4711-A"}, "4711-A", 0.75, 1},
        {"KeywordCaseInsensitive", "po number", false, {"PO NUMBER = 88 #"}, "88", 0.75, 0},
        {"KeywordTrimmed", "  Project ", false, {"Project:\tApollo"}, "Apollo", 0.75, 0},
        {"KeywordValueBelow", "Project", false, {"Project:", "Apollo rollout"}, "Apollo rollout", 0.55, 1},
        {"KeywordOnLastRow", "Project", false, {"Project: -"}, "", 0, -1},
        {"FirstKeywordRowOnly", "Project", false, {"Project", "Apollo", "Project: Zeus"}, "Apollo", 0.55, 1},
        {"KeywordMissing", "Project", false, {"Nothing here"}, "", 0, -1},
        {"RegexGroup", R"(PO[- ]?(\d+))", true, {"Ref PO-1234"}, "1234", 0.85, 0},
        {"RegexCaseInsensitive", R"(po-\d+)", true, {"Ref PO-1234"}, "PO-1234", 0.85, 0},
        {"RegexUnusedGroup", R"(PO-(\d+)|REF-\d+)", true, {"REF-77"}, "REF-77", 0.85, 0},
        {"RegexFirstMatchingRow", R"(\d{4})", true, {"abc", "x 2024 y 2025", "1999"}, "2024", 0.85, 1},
        {"RegexEmptyMatch", R"(x*)", true, {"abc"}, "", 0.85, 0},
        {"RegexAcrossRows", R"(Project\s+(\w+))", true, {"Project", "Apollo"}, "Apollo", 0.7, -1},
        {"RegexInvalid", "(", true, {"((("}, "", 0, -1},
        {"RegexNoMatch", R"(\d+)", true, {"none"}, "", 0, -1},
        {"BlankPattern", "   ", false, {"anything"}, "", 0, -1},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const QList<Row> rows = rowsOf(c.rows);
        const Field field = Extractor::extractCustom(def(QString::fromUtf8(c.pattern), c.isRegex), rows);
        EXPECT_EQ(field.value, QString::fromUtf8(c.value));
        EXPECT_DOUBLE_EQ(field.confidence, c.confidence);
        EXPECT_EQ(field.box ? field.box->rect.y() : -1, c.boxRow < 0 ? -1 : rows[c.boxRow].rect.y());
    }
}

// Key and source identify the definition, the source keeping the pattern untrimmed. A keyword value is
// boxed from just after the keyword to the end of the row; a pattern's box covers the chosen group,
// untrimmed.
TEST(CustomField, IdentityAndValueBoxes)
{
    const CustomFieldDef keyword = def(QStringLiteral(" PO Number "), false, QString());
    const Field field = Extractor::extractCustom(keyword, {});
    EXPECT_EQ(field.key, keyword.id.toString(QUuid::WithoutBraces).toUpper());
    EXPECT_EQ(field.source, QStringLiteral("kw| PO Number "));
    EXPECT_TRUE(field.isCustom);
    EXPECT_EQ(Extractor::extractCustom(def(QStringLiteral("a|b"), true), {}).source,
              QStringLiteral("re|a|b"));

    const QList<Row> rows = rowsOf({"PO Number: 4711-A", "Ref PO-1234"});
    EXPECT_EQ(Extractor::extractCustom(def(QStringLiteral("PO Number"), false), rows).box,
              rows[0].box(TextRange{9, 8}));
    EXPECT_EQ(Extractor::extractCustom(def(QStringLiteral(R"(PO-(\s*\d+))"), true), rows).box,
              rows[1].box(TextRange{7, 4}));
}

// Catastrophic backtracking is abandoned at the matching bound: the field stays empty and the caller
// learns it; an ordinary pattern on the same text is not cut short, and keyword fields never are.
TEST(CustomField, SlowPatternIsAbandoned)
{
    const QStringList invoice = {"Bluepeak Supplies Ltd Unit 4 Harbour Trading Estate Bristol",
                                 "Invoice Number BP 2024 0387 issued to Northwind Analytics Group",
                                 "Description Quantity Unit price Amount total due within thirty days",
                                 "Ergonomic office chair with adjustable lumbar support 2 149 00 298 00",
                                 "Subtotal 298 00 VAT twenty percent 59 60 Total due 357 60 GBP"};
    // clang-format off
    const struct { const char *pattern; QStringList rows; bool abandoned; const char *value; bool isRegex = true; } cases[] = {
        {R"(^(\w+\s?)+:$)", invoice, true, ""},
        {"(a+)+$", {QString(40, u'a') + u'b'}, true, ""},
        {R"(Total due (\d+ \d+))", invoice, false, "357 60"},
        {"Total", invoice, false, "due within thirty days", false},
    };
    // clang-format on
    for (const auto &c : cases) {
        bool abandoned = !c.abandoned;
        const Field field = Extractor::extractCustom(def(QString::fromUtf8(c.pattern), c.isRegex),
                                                     rowsOf(c.rows), &abandoned);
        EXPECT_EQ(abandoned, c.abandoned) << c.pattern;
        EXPECT_EQ(field.value, QString::fromUtf8(c.value)) << c.pattern;
    }
}

// The names a custom field may not take are exactly the labels the extractor gives its built-in fields.
TEST(CustomField, ReservedNamesAreTheBuiltInLabels)
{
    QStringList labels;
    for (const Field &field : Extractor::extract({}, {}, RuleSet::Full).fields)
        labels.append(field.label);
    EXPECT_EQ(labels, CustomFieldCodec::builtInLabels());
}

// All custom patterns of a document share one matching budget: the first slow one spends it and is the
// one reported, the regular expressions after it stay empty, keywords still run.
TEST(CustomField, OneBudgetPerDocument)
{
    const QList<CustomFieldDef> defs{def("(a+)+$", true, "Slow"), def("(a+)+b$", true, "Slower"),
                                     def("a+", true, "Quick"), def("aaa", false, "Keyword")};
    const QList<TextLine> lines{{QString(40, u'a') + u'!', QRectF(0.1, 0.1, 0.5, 0.02), 0}};
    const Extractor::Result result = Extractor::extract(lines, defs, RuleSet::Core);
    EXPECT_EQ(result.slowPatterns, QList<QUuid>{defs[0].id});
    ASSERT_EQ(result.fields.size(), 12);
    EXPECT_EQ(result.fields[10].value, QString());
    EXPECT_EQ(result.fields[11].value, QString(37, u'a') + u'!');
}

} // namespace

namespace {

// Re-syncing keeps built-in fields and a current custom field with its hand correction (relabelled),
// searches a keyword at once, leaves a changed pattern as a pending placeholder, drops a deleted
// definition; fillPending then puts the match into that placeholder and nothing else.
TEST(CustomField, ResyncAndFillPending)
{
    const QList<Row> rows = rowsOf({"Ref PO-1234", "Project: Apollo"});
    CustomFieldDef kept = def(QStringLiteral("Ref"), false);
    CustomFieldDef changed = def(QStringLiteral("Project"), false, QStringLiteral("Project"));
    const CustomFieldDef deleted = def(QStringLiteral("Gone"), false);
    const CustomFieldDef added = def(QStringLiteral("Project"), false, QStringLiteral("Added"));
    Field corrected = Extractor::extractCustom(kept, rows);
    corrected.value = QStringLiteral("typed");
    corrected.edited = true;
    const Field builtIn = emptyField(QStringLiteral("total"), QStringLiteral("Total"));
    const QList<Field> before = {builtIn, corrected, Extractor::extractCustom(changed, rows),
                                 Extractor::extractCustom(deleted, rows)};

    kept.name = QStringLiteral("Reference");
    changed.pattern = QStringLiteral(R"(PO-(\d+))");
    changed.isRegex = true;
    Extractor::Resync out = Extractor::resync(before, {changed, kept, added}, rows);
    ASSERT_EQ(out.fields.size(), 4);
    EXPECT_EQ(out.fields[0], builtIn);
    EXPECT_TRUE(out.fields[1].source.isEmpty());
    EXPECT_TRUE(out.fields[1].value.isEmpty());
    EXPECT_EQ(out.fields[2].label, QStringLiteral("Reference"));
    EXPECT_EQ(out.fields[2].value, QStringLiteral("typed"));
    EXPECT_EQ(out.fields[3].value, QStringLiteral("Apollo"));
    EXPECT_EQ(out.pending, QList<CustomFieldDef>{changed});

    const QList<Field> extracted = {Extractor::extractCustom(changed, rows)};
    ASSERT_TRUE(Extractor::fillPending(out.fields, extracted));
    EXPECT_EQ(out.fields[1], extracted[0]);
    EXPECT_FALSE(Extractor::fillPending(out.fields, extracted));
}

} // namespace

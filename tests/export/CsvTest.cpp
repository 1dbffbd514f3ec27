#include "export/Csv.h"
#include "ExportFixtures.h"

namespace {

// Quoting follows whole characters (CR LF and a comma with a combining mark are not special); TSV
// replaces tab, CR and LF by one space each and quotes nothing; CSV starts with a BOM, rows end in CR LF.
TEST(ExportCsv, QuotesAndReplacesCells)
{
    // clang-format off
    const struct { QString cell, csv, tsv; } cases[] = {
        {"plain", "plain", "plain"},
        {"", "", ""},
        {" a ", " a ", " a "},
        {"\"hi\"", "\"\"\"hi\"\"\"", "\"hi\""},
        {"a,b", "\"a,b\"", "a,b"},
        {"a\tb\nc", "\"a\tb\nc\"", "a b c"},
        {"a\rb", "\"a\rb\"", "a b"},
        {"a\r\nb", "a\r\nb", "a  b"},
        {"a\n\rb", "\"a\n\rb\"", "a  b"},
        {"x\r\ny,z", "\"x\r\ny,z\"", "x  y,z"},
        {"a,\u0301b", "a,\u0301b", "a,\u0301b"},
        {"\"\u0301,", "\"\"\"\u0301,\"", "\"\u0301,"},
    };
    // clang-format on
    for (const auto &c : cases) {
        const Table table{{QStringLiteral("h")}, {{c.cell}}, {}};
        EXPECT_EQ(Exporter::csv(table), QStringLiteral("\uFEFFh\r\n") + c.csv + QStringLiteral("\r\n"));
        EXPECT_EQ(Exporter::tsv(table), QStringLiteral("h\n") + c.tsv + QStringLiteral("\n"));
    }
}

// Python's csv module reads our CSV back to the same cells (quoted newlines, doubled quotes, BOM).
TEST(ExportCsv, PythonReadsItBack)
{
    const Table table{{"a", "b,c", "\"d\""}, {{"1", "x\ny", "say \"hi\""}, {"", "é€", "tab\there"}}, {}};
    const QByteArray out =
        runPython(QStringLiteral("import csv, io, json, sys\n"
                                 "text = sys.stdin.buffer.read().decode('utf-8-sig')\n"
                                 "print(json.dumps(list(csv.reader(io.StringIO(text, newline='')))))"),
                  Exporter::csv(table).toUtf8());
    if (out.isNull())
        GTEST_SKIP() << "python3 not found";
    const QByteArray cells =
        R"([["a", "b,c", "\"d\""], ["1", "x\ny", "say \"hi\""], ["", "\u00e9\u20ac", "tab\there"]])";
    EXPECT_EQ(out.trimmed(), cells);
}

} // namespace

namespace {

// Text a spreadsheet would run as a formula is defused with an apostrophe in CSV and TSV, headers
// included; numbers in numeric columns keep their sign, and a formula there is defused all the same.
TEST(ExportCsv, DefusesFormulaText)
{
    // clang-format off
    const struct { QString cell; bool numeric; QString written; } cases[] = {
        {"=HYPERLINK(\"http://evil.example\",\"Click\")", false, "'=HYPERLINK(\"http://evil.example\",\"Click\")"},
        {"+1", false, "'+1"},
        {"-2", false, "'-2"},
        {"@SUM(A1)", false, "'@SUM(A1)"},
        {"\tx", false, "'\tx"},
        {"\rx", false, "'\rx"},
        {"a=b", false, "a=b"},
        {"-12.50", true, "-12.50"},
        {"+1,234.56", true, "+1,234.56"},
        {"-1+cmd|' /C calc'!A0", true, "'-1+cmd|' /C calc'!A0"},
        {"=1+2", true, "'=1+2"},
    };
    // clang-format on
    for (const auto &c : cases) {
        const Table table{{QStringLiteral("h")}, {{c.cell}}, c.numeric ? QSet<int>{0} : QSet<int>{}};
        const QStringList csvLines = Exporter::csv(table).split(QStringLiteral("\r\n"));
        const QStringList tsvLines = Exporter::tsv(table).split(u'\n');
        EXPECT_EQ(csvLines.value(1).remove(u'"'), QString(c.written).remove(u'"')) << c.cell.toStdString();
        EXPECT_EQ(tsvLines.value(1), QString(c.written).replace(u'\t', u' ').replace(u'\r', u' '))
            << c.cell.toStdString();
    }
    const Table header{{QStringLiteral("=cmd")}, {}, {}};
    EXPECT_EQ(Exporter::tsv(header), QStringLiteral("'=cmd\n"));
}

} // namespace

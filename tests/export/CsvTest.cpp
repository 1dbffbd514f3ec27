#include "export/Csv.h"
#include "ExportFixtures.h"

#include <gtest/gtest.h>

namespace {

Table oneCell(const QString &cell)
{
    return Table{{QStringLiteral("h")}, {{cell}}, {}};
}

struct CellCase {
    const char *name;
    QString cell;
    QString csv; ///< the cell as written in CSV
    QString tsv; ///< the cell as written in TSV
};

class ExportCell : public testing::TestWithParam<CellCase> {};

// Quoting follows whole characters (CR LF and a comma with a combining mark are not special);
// TSV replaces tab, CR and LF by one space each and quotes nothing.
TEST_P(ExportCell, QuotesAndReplaces)
{
    const CellCase &c = GetParam();
    EXPECT_EQ(Exporter::csv(oneCell(c.cell)), QStringLiteral("\uFEFFh\r\n") + c.csv + QStringLiteral("\r\n"));
    EXPECT_EQ(Exporter::tsv(oneCell(c.cell)), QStringLiteral("h\n") + c.tsv + QStringLiteral("\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Cells, ExportCell,
    testing::Values(
        CellCase{"plain", "plain", "plain", "plain"}, CellCase{"empty", "", "", ""},
        CellCase{"spaces", " a ", " a ", " a "}, CellCase{"quotedWord", "\"hi\"", "\"\"\"hi\"\"\"", "\"hi\""},
        CellCase{"comma", "a,b", "\"a,b\"", "a,b"}, CellCase{"tabNewline", "a\tb\nc", "\"a\tb\nc\"", "a b c"},
        CellCase{"loneCr", "a\rb", "\"a\rb\"", "a b"}, CellCase{"crLfPair", "a\r\nb", "a\r\nb", "a  b"},
        CellCase{"lfCr", "a\n\rb", "\"a\n\rb\"", "a  b"},
        CellCase{"crLfAndComma", "x\r\ny,z", "\"x\r\ny,z\"", "x  y,z"},
        CellCase{"combiningComma", QStringLiteral("a,\u0301b"), QStringLiteral("a,\u0301b"),
                 QStringLiteral("a,\u0301b")},
        CellCase{"combiningQuote", QStringLiteral("\"\u0301,"), QStringLiteral("\"\"\"\u0301,\""),
                 QStringLiteral("\"\u0301,")}),
    [](const testing::TestParamInfo<CellCase> &info) { return std::string(info.param.name); });

// One approved document: BOM, header and one row, each ended by CR LF, as UTF-8 bytes.
TEST(ExportCsv, WholeFileBytes)
{
    const auto doc = makeDoc(QStringLiteral("/x/Ä.pdf"), {{"vendor", "Café, \"Bar\""}, {"total", "12.50"}});
    const Table table = Exporter::lineItems({doc});
    EXPECT_EQ(
        Exporter::csv(table).toUtf8(),
        QByteArray(
            "\xEF\xBB\xBF"
            "File,Vendor,Number,Date,Currency,Line,Description,Quantity,Unit price,Amount,Document total\r\n"
            "Ä.pdf,\"Café, \"\"Bar\"\"\",,,,,,,,,12.50\r\n"));
    EXPECT_EQ(
        Exporter::tsv(table).toUtf8(),
        QByteArray("File\tVendor\tNumber\tDate\tCurrency\tLine\tDescription\tQuantity\tUnit price\tAmount\t"
                   "Document total\nÄ.pdf\tCafé, \"Bar\"\t\t\t\t\t\t\t\t\t12.50\n"));
}

// Python's csv module reads our CSV back to the same cells (quoted newlines, doubled quotes, BOM).
TEST(ExportCsv, PythonReadsItBack)
{
    const Table table{{"a", "b,c", "\"d\""}, {{"1", "x\ny", "say \"hi\""}, {"", "é€", "tab\there"}}, {}};
    QString error;
    const QByteArray out =
        runPython(QStringLiteral("import csv, io, json, sys\n"
                                 "text = sys.stdin.buffer.read().decode('utf-8-sig')\n"
                                 "print(json.dumps(list(csv.reader(io.StringIO(text, newline='')))))"),
                  Exporter::csv(table).toUtf8(), &error);
    if (out.isNull())
        GTEST_SKIP() << error.toStdString();
    EXPECT_EQ(
        out.trimmed(),
        QByteArray(
            R"([["a", "b,c", "\"d\""], ["1", "x\ny", "say \"hi\""], ["", "\u00e9\u20ac", "tab\there"]])"));
}

} // namespace

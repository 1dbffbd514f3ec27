#include "export/Xlsx.h"
#include "ExportFixtures.h"

#include <QMap>
#include <zip.h>

namespace {

/// Every entry of a zip archive held in memory, by name; empty when it does not open.
QMap<QByteArray, QByteArray> unzip(const QByteArray &archiveBytes)
{
    QMap<QByteArray, QByteArray> entries;
    zip_source_t *source =
        zip_source_buffer_create(archiveBytes.constData(), archiveBytes.size(), 0, nullptr);
    zip_t *archive = source ? zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, nullptr) : nullptr;
    if (!archive) {
        zip_source_free(source);
        return entries;
    }
    for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
        zip_stat_t stat;
        zip_stat_index(archive, zip_uint64_t(i), 0, &stat);
        QByteArray data(qsizetype(stat.size), Qt::Uninitialized);
        zip_file_t *file = zip_fopen_index(archive, zip_uint64_t(i), 0);
        const zip_int64_t read = file ? zip_fread(file, data.data(), stat.size) : -1;
        if (file)
            zip_fclose(file);
        entries.insert(stat.name, read == zip_int64_t(stat.size) ? data : QByteArray("<unreadable>"));
    }
    zip_close(archive);
    return entries;
}

// Bijective base-26 column letters; a negative index has none.
TEST(ExportXlsx, ColumnNames)
{
    QStringList names;
    for (int index : {0, 25, 26, 27, 701, 702, -1})
        names.append(Exporter::colName(index));
    EXPECT_EQ(names, QStringList({"A", "Z", "AA", "AB", "ZZ", "AAA", ""}));
}

// Markup characters become entities, the apostrophe stays, controls other than tab/LF/CR, the two
// non-characters XML forbids and unpaired surrogates vanish; a surrogate pair (an emoji) stays.
TEST(ExportXlsx, XmlEscape)
{
    EXPECT_EQ(Exporter::xmlEscape(QStringLiteral("R&D <Ltd> \"O'Neil\"\t\n\r é")),
              QStringLiteral("R&amp;D &lt;Ltd&gt; &quot;O'Neil&quot;\t\n\r é"));
    const QString dropped = QStringLiteral("a") + QChar(0x0c) + u'b' + QChar(0) + QChar(0x1f) +
                            QChar(0xFFFE) + u'c' + QChar(0xFFFF) + QChar(0xD800) + u'd' + QChar(0xDC00) +
                            QStringLiteral("\U0001F600");
    EXPECT_EQ(Exporter::xmlEscape(dropped), QStringLiteral("abcd\U0001F600"));
}

// A worksheet byte for byte: bold inline headers, numbers (".0" on whole ones) only in numeric columns
// whose text parses, inline text otherwise, no element for empty cells, every row written. Without
// headers the column element still spans one column and the header row is empty; wide tables reach
// two-letter references.
TEST(ExportXlsx, SheetXml)
{
    const Table table{{"File", "Total", "Note"},
                      {{"a.pdf", "1,234.56", ""}, {"", "abc", "x'y & <z>"}, {"b", "100", "12"}, {"", "", ""}},
                      {1}};
    EXPECT_EQ(Exporter::sheetXML(table), goldenFile("xlsx/sheet.xml"));
    EXPECT_EQ(Exporter::sheetXML(Table{}), goldenFile("xlsx/empty-sheet.xml"));
    Table wide{QStringList(28, QStringLiteral("h")), {QStringList(28, QString()), QStringList(28, "v")}, {}};
    const QByteArray xml = Exporter::sheetXML(wide);
    EXPECT_TRUE(xml.contains(R"(<c r="AB3" t="inlineStr" s="0"><is><t xml:space="preserve">v</t></is></c>)"))
        << xml.constData();
}

// A cell over the spreadsheet limit is cut to it (not inside a surrogate pair) and counted; a sheet of
// more rows than a workbook holds fails the export with its count.
TEST(ExportXlsx, SpreadsheetLimits)
{
    const QString longText = QString(Exporter::maxCellChars - 1, u'a') + QStringLiteral("\U0001F600b");
    qsizetype cut = 0;
    const QByteArray xml = Exporter::sheetXML(Table{{"Note"}, {{longText}, {"short"}}, {}}, &cut);
    EXPECT_EQ(cut, 1);
    EXPECT_TRUE(xml.contains(QString(Exporter::maxCellChars - 1, u'a').toUtf8() + "</t>"));
    const Table full{{"Note"}, QList<QStringList>(Exporter::maxSheetRows, QStringList{}), {}};
    const auto refused = Exporter::xlsx({{"Line items", full}});
    ASSERT_TRUE(std::holds_alternative<TabrixError>(refused));
    EXPECT_TRUE(std::get<TabrixError>(refused).message.startsWith(
        "The sheet \"Line items\" would have 1,048,577 rows"));
}

// The package holds exactly the workbook parts with their exact XML, and Python's zipfile and XML parser
// accept it; the sheets are the two tables' worksheets, an item-less document's total a number on the
// line-items sheet.
TEST(ExportXlsx, PackageParts)
{
    const auto doc =
        makeDoc(QStringLiteral("/in/R&D.pdf"), {{"vendor", "R&D <Ltd>\x01"}, {"total", "42.00"}});
    const QList<Exporter::Sheet> sheets = Exporter::workbookSheets({doc}, {});
    const Expected<QByteArray> bytes = Exporter::xlsx(sheets);
    ASSERT_TRUE(std::holds_alternative<QByteArray>(bytes));
    const QMap<QByteArray, QByteArray> parts = unzip(std::get<QByteArray>(bytes));

    const QList<QByteArray> fixed{"[Content_Types].xml", "_rels/.rels", "xl/_rels/workbook.xml.rels",
                                  "xl/styles.xml", "xl/workbook.xml"};
    EXPECT_EQ(parts.keys(),
              (fixed + QList<QByteArray>{"xl/worksheets/sheet1.xml", "xl/worksheets/sheet2.xml"}));
    for (const QByteArray &name : fixed)
        EXPECT_EQ(parts[name], goldenFile("xlsx/" + QString::fromLatin1(name))) << name.constData();
    EXPECT_EQ(parts["xl/worksheets/sheet1.xml"], Exporter::sheetXML(sheets[0].table));
    EXPECT_EQ(parts["xl/worksheets/sheet2.xml"], Exporter::sheetXML(sheets[1].table));
    EXPECT_TRUE(parts["xl/worksheets/sheet2.xml"].endsWith(
        R"(<c r="K2"><v>42.0</v></c></row></sheetData></worksheet>)"));

    const QByteArray python =
        runPython(QStringLiteral("import io, sys, zipfile, xml.etree.ElementTree as ET\n"
                                 "z = zipfile.ZipFile(io.BytesIO(sys.stdin.buffer.read()))\n"
                                 "assert z.testzip() is None\n"
                                 "print(len([ET.fromstring(z.read(n)) for n in z.namelist()]))"),
                  std::get<QByteArray>(bytes));
    if (python.isNull())
        GTEST_SKIP() << "python3 not found";
    EXPECT_EQ(python, "7\n");
}

} // namespace

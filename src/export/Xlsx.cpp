#include "Xlsx.h"

#include "intake/Engines.h"
#include "model/JsonText.h"
#include "model/Money.h"

#include <QLocale>
#include <utility>

namespace Exporter {

namespace {

constexpr char declaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>";
constexpr char mainNs[] = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
constexpr char relsNs[] = "http://schemas.openxmlformats.org/package/2006/relationships";
constexpr char docRelsNs[] = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";

QByteArray number(qsizetype n)
{
    return QByteArray::number(n);
}

/// A spreadsheet number: the shortest round-trip text, with ".0" on whole numbers.
QByteArray cellNumber(double x)
{
    QByteArray text = JsonText::shortestNumber(x);
    if (!text.contains('.') && !text.contains('e'))
        text += ".0";
    return text;
}

QByteArray inlineCell(const QByteArray &ref, int style, const QString &text)
{
    return "<c r=\"" + ref + "\" t=\"inlineStr\" s=\"" + number(style) + "\"><is><t xml:space=\"preserve\">" +
           xmlEscape(text).toUtf8() + "</t></is></c>";
}

QByteArray contentTypes(qsizetype sheetCount)
{
    QByteArray xml =
        QByteArray(declaration) +
        "<Types xmlns=\"http://schemas.openxmlformats.org/package/2006/content-types\">"
        "<Default Extension=\"rels\" "
        "ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
        "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
        "<Override PartName=\"/xl/workbook.xml\" "
        "ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet.main+xml\"/>"
        "<Override PartName=\"/xl/styles.xml\" "
        "ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.styles+xml\"/>";
    for (qsizetype n = 1; n <= sheetCount; ++n) {
        xml += "<Override PartName=\"/xl/worksheets/sheet" + number(n) +
               ".xml\" "
               "ContentType=\"application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml\"/>";
    }
    return xml + "</Types>";
}

QByteArray packageRels()
{
    return QByteArray(declaration) + "<Relationships xmlns=\"" + relsNs +
           "\"><Relationship Id=\"rId1\" Type=\"" + docRelsNs +
           "/officeDocument\" Target=\"xl/workbook.xml\"/></Relationships>";
}

QByteArray workbook(const QList<Sheet> &sheets)
{
    QByteArray xml =
        QByteArray(declaration) + "<workbook xmlns=\"" + mainNs + "\" xmlns:r=\"" + docRelsNs + "\"><sheets>";
    for (qsizetype i = 0; i < sheets.size(); ++i) {
        xml += "<sheet name=\"" + xmlEscape(sheets.at(i).name).toUtf8() + "\" sheetId=\"" + number(i + 1) +
               "\" r:id=\"rId" + number(i + 1) + "\"/>";
    }
    return xml + "</sheets></workbook>";
}

QByteArray workbookRels(qsizetype sheetCount)
{
    QByteArray xml = QByteArray(declaration) + "<Relationships xmlns=\"" + relsNs + "\">";
    for (qsizetype n = 1; n <= sheetCount; ++n) {
        xml += "<Relationship Id=\"rId" + number(n) + "\" Type=\"" + docRelsNs +
               "/worksheet\" Target=\"worksheets/sheet" + number(n) + ".xml\"/>";
    }
    xml += "<Relationship Id=\"rId" + number(sheetCount + 1) + "\" Type=\"" + docRelsNs +
           "/styles\" Target=\"styles.xml\"/>";
    return xml + "</Relationships>";
}

QByteArray styles()
{
    return QByteArray(declaration) + "<styleSheet xmlns=\"" + mainNs +
           "\"><fonts count=\"2\"><font><sz val=\"11\"/><name val=\"Calibri\"/></font><font><b/><sz "
           "val=\"11\"/><name val=\"Calibri\"/></font></fonts><fills count=\"2\"><fill><patternFill "
           "patternType=\"none\"/></fill><fill><patternFill patternType=\"gray125\"/></fill></fills><borders "
           "count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders><cellStyleXfs "
           "count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/></cellStyleXfs><cellXfs "
           "count=\"2\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"/><xf "
           "numFmtId=\"0\" fontId=\"1\" fillId=\"0\" borderId=\"0\" xfId=\"0\" "
           "applyFont=\"1\"/></cellXfs></styleSheet>";
}

using ZipEntries = QList<std::pair<QByteArray, QByteArray>>;
/// The zip module's entry point: fills `archive` and returns true, or fills `error` and returns false.
using ZipInMemory = bool (*)(const ZipEntries *entries, QByteArray *archive, QString *error);

/// A zip archive of `entries` (name, bytes), built in memory by libzip. libzip and the libraries it needs
/// live in the module "tabrix_zip", loaded on the first workbook, so that no other run loads them.
Expected<QByteArray> zipInMemory(const ZipEntries &entries)
{
    static const Engines::Entries module =
        Engines::resolveModule(QStringLiteral("tabrix_zip"), {"tabrix_zip"});
    if (!module.error.isEmpty())
        return TabrixError{QStringLiteral("zip failed (0) the archive module ") + module.error};
    const auto zip = reinterpret_cast<ZipInMemory>(module.symbols[0]);
    QByteArray archive;
    QString error;
    if (!zip(&entries, &archive, &error))
        return TabrixError{error};
    return archive;
}

} // namespace

QList<Sheet> workbookSheets(const QList<DocRecord> &docs, const QList<CustomFieldDef> &defs)
{
    return {{QStringLiteral("Documents"), documents(docs, defs)},
            {QStringLiteral("Line items"), lineItems(docs)}};
}

QString colName(int index)
{
    QString name;
    for (int n = index + 1; n > 0; n = (n - 1) / 26)
        name.prepend(QChar(u'A' + (n - 1) % 26));
    return name;
}

QString xmlEscape(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        // XML has no place for U+FFFE, U+FFFF or a surrogate without its partner: a reader rejects the part.
        if (c.unicode() >= 0xFFFE)
            continue;
        if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            out += c;
            out += text[++i];
            continue;
        }
        if (c.isSurrogate())
            continue;
        switch (c.unicode()) {
        case u'&':
            out += QStringLiteral("&amp;");
            break;
        case u'<':
            out += QStringLiteral("&lt;");
            break;
        case u'>':
            out += QStringLiteral("&gt;");
            break;
        case u'"':
            out += QStringLiteral("&quot;");
            break;
        case u'\t':
        case u'\n':
        case u'\r':
            out += c;
            break;
        default:
            if (c.unicode() >= 0x20)
                out += c;
        }
    }
    return out;
}

QByteArray sheetXML(const Table &table, qsizetype *cutCells)
{
    QByteArray xml = QByteArray(declaration) + "<worksheet xmlns=\"" + mainNs +
                     "\"><sheetViews><sheetView workbookViewId=\"0\"><pane ySplit=\"1\" topLeftCell=\"A2\" "
                     "activePane=\"bottomLeft\" state=\"frozen\"/></sheetView></sheetViews>";
    xml += "<cols><col min=\"1\" max=\"" + number(table.headers.isEmpty() ? 1 : table.headers.size()) +
           "\" width=\"20\" customWidth=\"1\"/></cols><sheetData>";

    xml += "<row r=\"1\">";
    for (qsizetype j = 0; j < table.headers.size(); ++j)
        xml += inlineCell(colName(int(j)).toLatin1() + '1', 1, table.headers.at(j));
    xml += "</row>";

    for (qsizetype k = 0; k < table.rows.size(); ++k) {
        const QByteArray r = number(k + 2);
        xml += "<row r=\"" + r + "\">";
        const QStringList &row = table.rows.at(k);
        for (qsizetype j = 0; j < row.size(); ++j) {
            QString cell = row.at(j);
            if (cell.isEmpty())
                continue;
            if (cell.size() > maxCellChars) {
                cell.truncate(cell[maxCellChars - 1].isHighSurrogate() ? maxCellChars - 1 : maxCellChars);
                if (cutCells)
                    ++*cutCells;
            }
            const QByteArray ref = colName(int(j)).toLatin1() + r;
            const std::optional<double> x =
                table.numeric.contains(int(j)) ? Money::parse(cell) : std::optional<double>();
            if (x)
                xml += "<c r=\"" + ref + "\"><v>" + cellNumber(*x) + "</v></c>";
            else
                xml += inlineCell(ref, 0, cell);
        }
        xml += "</row>";
    }
    return xml + "</sheetData></worksheet>";
}

Expected<QByteArray> xlsx(const QList<Sheet> &sheets, qsizetype *cutCells)
{
    for (const Sheet &sheet : sheets) {
        if (sheet.table.rows.size() + 1 > maxSheetRows) {
            const QLocale english(QLocale::English, QLocale::UnitedStates);
            return TabrixError{QStringLiteral("The sheet \"%1\" would have %2 rows, more than the %3 a "
                                              "workbook sheet holds; export fewer documents or as CSV")
                                   .arg(sheet.name, english.toString(sheet.table.rows.size() + 1),
                                        english.toString(maxSheetRows))};
        }
    }
    QList<std::pair<QByteArray, QByteArray>> entries{
        {"[Content_Types].xml", contentTypes(sheets.size())},
        {"_rels/.rels", packageRels()},
        {"xl/workbook.xml", workbook(sheets)},
        {"xl/_rels/workbook.xml.rels", workbookRels(sheets.size())},
        {"xl/styles.xml", styles()},
    };
    for (qsizetype i = 0; i < sheets.size(); ++i)
        entries.append(
            {"xl/worksheets/sheet" + number(i + 1) + ".xml", sheetXML(sheets.at(i).table, cutCells)});
    return zipInMemory(entries);
}

} // namespace Exporter

#include "Csv.h"

#include <QTextBoundaryFinder>

namespace Exporter {

namespace {

bool isCsvSpecial(QStringView character)
{
    return character == u"," || character == u"\"" || character == u"\n" || character == u"\r";
}

/// Compares whole grapheme clusters, so CR LF (one cluster) and a comma carrying a combining mark
/// do not count as special.
bool needsQuotes(const QString &cell)
{
    bool candidate = false;
    for (QChar c : cell) {
        if (c == u',' || c == u'"' || c == u'\n' || c == u'\r') {
            candidate = true;
            break;
        }
    }
    if (!candidate)
        return false;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, cell);
    qsizetype start = 0;
    for (qsizetype end = finder.toNextBoundary(); end != -1; end = finder.toNextBoundary()) {
        if (isCsvSpecial(QStringView(cell).sliced(start, end - start)))
            return true;
        start = end;
    }
    return false;
}

// A number in an amount or count column ("-12.50", "1,234.56"): a spreadsheet reads it as the number
// it is, and an apostrophe would turn it into text.
bool isPlainNumber(const QString &cell)
{
    qsizetype i = cell.startsWith(u'-') || cell.startsWith(u'+') ? 1 : 0;
    if (i >= cell.size() || !cell.at(i).isDigit())
        return false;
    for (; i < cell.size(); ++i) {
        const QChar c = cell.at(i);
        if (!c.isDigit() && c != u'.' && c != u',' && c != u' ')
            return false;
    }
    return true;
}

// A text cell that a spreadsheet would run as a formula gets a leading apostrophe, which shows the
// text as written (OWASP's advice on CSV injection).
QString defused(const QString &cell, bool numeric)
{
    if (cell.isEmpty() || (numeric && isPlainNumber(cell)))
        return cell;
    switch (cell.front().unicode()) {
    case u'=':
    case u'+':
    case u'-':
    case u'@':
    case u'\t':
    case u'\r':
        return u'\'' + cell;
    default:
        return cell;
    }
}

QString csvCell(const QString &cell)
{
    if (!needsQuotes(cell))
        return cell;
    QString quoted = cell;
    quoted.replace(u'"', QStringLiteral("\"\""));
    return u'"' + quoted + u'"';
}

QString tsvCell(QString cell)
{
    cell.replace(u'\t', u' ');
    cell.replace(u'\r', u' ');
    cell.replace(u'\n', u' ');
    return cell;
}

template <class CellFn>
QString render(const Table &table, CellFn cellText, QStringView cellSep, QStringView rowEnd)
{
    QString out;
    auto appendRow = [&](const QStringList &row, bool header) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (i > 0)
                out += cellSep;
            out += cellText(defused(row.at(i), !header && table.numeric.contains(int(i))));
        }
        out += rowEnd;
    };
    appendRow(table.headers, true);
    for (const QStringList &row : table.rows)
        appendRow(row, false);
    return out;
}

} // namespace

QString csv(const Table &table)
{
    return QChar(0xFEFF) + render(table, csvCell, u",", u"\r\n");
}

QString tsv(const Table &table)
{
    return render(table, tsvCell, u"\t", u"\n");
}

} // namespace Exporter

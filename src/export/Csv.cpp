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
    auto appendRow = [&](const QStringList &row) {
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (i > 0)
                out += cellSep;
            out += cellText(row.at(i));
        }
        out += rowEnd;
    };
    appendRow(table.headers);
    for (const QStringList &row : table.rows)
        appendRow(row);
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

#include "ItemColumns.h"

#include "LineItems.h"
#include "Patterns.h"
#include "model/Money.h"

#include <algorithm>
#include <cmath>

namespace Extractor {

namespace {

enum class Kind { Other, Description, Quantity, Price, Amount };

struct ColumnPatterns {
    // A tax rate or tax amount column ("MwSt. %", "VAT rate") is neither a price nor the line amount.
    RulePattern taxWord{QStringLiteral(R"(\b(tax|vat|gst|hst|mwst|ust|tva|iva|btw{tax.word})\b|%)")};
    // A leading number of a quantity cell ("2", "1,5 Std.", "3 pcs").
    Regex leadingNumber{QStringLiteral(R"(^\s*(-?\d+(?:[.,]\d+)*)(?!\d))")};
};

const ColumnPatterns &patterns()
{
    return Patterns::compiledOnce<ColumnPatterns>();
}

struct Column {
    Kind kind = Kind::Other;
    double left = 0;  ///< the labels' left edge
    double right = 0; ///< the labels' right edge
    double from = 0;  ///< its cells' reach, halfway to the neighbours
    double to = 1;
};

struct Header {
    QList<Column> columns;
    qsizetype next = 0; ///< the first row below the header

    bool has(Kind kind) const
    {
        return std::any_of(columns.begin(), columns.end(),
                           [kind](const Column &c) { return c.kind == kind; });
    }
};

Kind kindOf(const QString &label, const RuleFeatures &rules)
{
    const Patterns::Shared &p = Patterns::shared();
    if (patterns().taxWord(rules).contains(label))
        return Kind::Other;
    if (p.headerAmount(rules).contains(label))
        return Kind::Amount;
    if (p.headerQuantity(rules).contains(label))
        return Kind::Quantity;
    if (p.headerPrice(rules).contains(label))
        return Kind::Price;
    if (p.headerDescription(rules).contains(label))
        return Kind::Description;
    return Kind::Other;
}

// Labels whose extents overlap are one column (a label over its unit: "TOTAL HT" above "(EUR)"); its
// kind is the first one known from the top. Of two columns of one kind the rightmost is the amount, the
// widest the description ("Code article" beside "Désignation"), the leftmost any other kind.
QList<Column> columnsOf(QList<TextLine> labels, const RuleFeatures &rules)
{
    std::stable_sort(labels.begin(), labels.end(),
                     [](const TextLine &a, const TextLine &b) { return a.rect.left() < b.rect.left(); });
    QList<Column> columns;
    QList<double> kindTop;
    for (const TextLine &label : labels) {
        const Kind kind = kindOf(label.text, rules);
        if (columns.isEmpty() || label.rect.left() >= columns.last().right) {
            columns.append(Column{kind, label.rect.left(), label.rect.right()});
            kindTop.append(label.rect.top());
            continue;
        }
        Column &column = columns.last();
        column.right = std::max(column.right, label.rect.right());
        if (kind != Kind::Other && (column.kind == Kind::Other || label.rect.top() < kindTop.last())) {
            column.kind = kind;
            kindTop.last() = label.rect.top();
        }
    }
    for (qsizetype i = 0; i < columns.size(); ++i) {
        const Kind kind = columns[i].kind;
        for (qsizetype j = 0; j < i && kind != Kind::Other; ++j) {
            if (columns[j].kind != kind)
                continue;
            const bool keepRight = kind == Kind::Amount ||
                                   (kind == Kind::Description &&
                                    columns[i].right - columns[i].left > columns[j].right - columns[j].left);
            (keepRight ? columns[j] : columns[i]).kind = Kind::Other;
        }
    }
    for (qsizetype i = 0; i + 1 < columns.size(); ++i) {
        const double middle = (columns[i].right + columns[i + 1].left) / 2;
        columns[i].to = middle;
        columns[i + 1].from = middle;
    }
    return columns;
}

// A header starting at row `i`: rows of labels without amounts, each close under the one before.
std::optional<Header> headerAt(const Scan &scan, qsizetype i)
{
    QList<TextLine> labels;
    qsizetype j = i;
    for (; j < scan.rows.size() && j < i + 6 && scan.amounts[j].isEmpty(); ++j) {
        const Row &row = scan.rows[j];
        if (j > i && (row.page != scan.rows[j - 1].page ||
                      row.rect.top() - scan.rows[j - 1].rect.bottom() > 1.5 * scan.rows[j - 1].rect.height()))
            break;
        labels.append(row.lines);
    }
    if (labels.size() < 3)
        return std::nullopt;
    Header header{columnsOf(labels, scan.features), j};
    const int known = int(header.has(Kind::Quantity)) + int(header.has(Kind::Price));
    if (!header.has(Kind::Amount) || !header.has(Kind::Description) || known == 0)
        return std::nullopt;
    const auto description = std::find_if(header.columns.begin(), header.columns.end(),
                                          [](const Column &c) { return c.kind == Kind::Description; });
    const auto amount = std::find_if(header.columns.begin(), header.columns.end(),
                                     [](const Column &c) { return c.kind == Kind::Amount; });
    if (description > amount)
        return std::nullopt;
    return header;
}

const Column *columnOf(const Header &header, const TextLine &line)
{
    const Column *best = nullptr;
    double bestOverlap = 0;
    for (const Column &column : header.columns) {
        const double overlap =
            std::min(line.rect.right(), column.to) - std::max(line.rect.left(), column.from);
        if (overlap > bestOverlap) {
            best = &column;
            bestOverlap = overlap;
        }
    }
    return best;
}

// The amount a cell holds when it holds nothing else (a currency mark or code aside).
std::optional<double> cellAmount(const TextLine &line, const RuleFeatures &rules)
{
    const QList<Amount> amounts = amountCandidates(line.text, rules);
    if (amounts.size() != 1)
        return std::nullopt;
    QString rest = line.text;
    rest.remove(amounts[0].range.start, amounts[0].range.length);
    rest = rest.trimmed();
    const bool code =
        rest.size() == 3 && std::all_of(rest.begin(), rest.end(), [](QChar c) { return c.isUpper(); });
    const bool other =
        std::any_of(rest.begin(), rest.end(), [](QChar c) { return c.isLetterOrNumber() || c == u'%'; });
    if (other && !code)
        return std::nullopt;
    return amounts[0].value;
}

std::optional<double> cellQuantity(const TextLine &line)
{
    const auto m = patterns().leadingNumber.match(line.text);
    return m ? Money::parse(m->captured(line.text, 1)) : std::nullopt;
}

struct Cells {
    std::optional<double> amount;
    std::optional<double> quantity;
    std::optional<double> price;
    std::optional<double> discount;
    QStringList description;
    PageBox box;
};

// The row's lines sorted into the header's columns.
Cells cellsOf(const Header &header, const Row &row, const RuleFeatures &rules)
{
    Cells cells;
    cells.box = PageBox{row.page, row.rect};
    for (const TextLine &line : row.lines) {
        const Column *column = columnOf(header, line);
        if (!column)
            continue;
        switch (column->kind) {
        case Kind::Amount:
            if (const auto value = cellAmount(line, rules); value && !cells.amount) {
                cells.amount = value;
                cells.box = PageBox{row.page, line.rect};
            }
            break;
        case Kind::Quantity:
            if (!cells.quantity)
                cells.quantity = cellQuantity(line);
            break;
        case Kind::Price:
            if (!cells.price)
                cells.price = cellAmount(line, rules);
            break;
        case Kind::Description:
            cells.description.append(line.text.simplified());
            break;
        case Kind::Other:
            if (!cells.discount)
                cells.discount = cellAmount(line, rules);
            break;
        }
    }
    return cells;
}

bool near(double a, double b)
{
    return std::abs(a - b) <= std::max(std::abs(b) * 0.005, 0.011);
}

LineItem itemOf(const Cells &cells)
{
    const double A = *cells.amount;
    double q = cells.quantity.value_or(1);
    double p = cells.price.value_or(A);
    double confidence = 0.6;
    if (cells.quantity && cells.price) {
        const bool plain = near(q * p, A);
        const bool discounted = cells.discount && near(q * p - std::abs(*cells.discount), A);
        confidence = plain || discounted ? 0.9 : 0.55;
    } else if (cells.quantity && q != 0) {
        p = A / q;
        confidence = 0.75;
    } else if (cells.price && p != 0) {
        const double ratio = A / p;
        q = std::abs(ratio - std::round(ratio)) <= 0.01 ? std::round(ratio) : 1;
        confidence = near(q * p, A) ? 0.75 : 0.55;
    }
    LineItem item;
    item.description = cells.description.join(u' ');
    item.quantity = Money::formatQuantity(q);
    item.unitPrice = Money::twoDecimals(p);
    item.amount = Money::twoDecimals(A);
    item.confidence = confidence;
    item.box = cells.box;
    return item;
}

bool hasLetters(const QStringList &texts)
{
    qsizetype letters = 0;
    for (const QString &text : texts)
        letters += std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
    return letters >= 2;
}

// A row of other column labels (a tax table's "Rate  Net  Tax") ends the item table.
bool isOtherLabels(const Scan &scan, qsizetype i)
{
    if (!isColumnLabelRow(scan, i))
        return false;
    const auto known =
        std::count_if(scan.rows[i].lines.begin(), scan.rows[i].lines.end(), [&scan](const TextLine &line) {
            return kindOf(line.text, scan.features) != Kind::Other ||
                   patterns().taxWord(scan.features).contains(line.text);
        });
    return known >= 2;
}

} // namespace

std::optional<QList<LineItem>> findItemsByColumns(const Scan &scan)
{
    std::optional<Header> header;
    qsizetype i = 0;
    for (; i < scan.rows.size() && !header; ++i) {
        if (scan.amounts[i].isEmpty())
            header = headerAt(scan, i);
    }
    if (!header)
        return std::nullopt;

    // The table's rows read into cells; those with an amount in the amount column are the items.
    struct Entry {
        qsizetype row;
        Cells cells;
    };
    QList<Entry> entries;
    for (i = header->next; i < scan.rows.size(); ++i) {
        const Row &row = scan.rows[i];
        if (row.page != scan.rows[i - 1].page) {
            // A header repeated on the next page gives that page's columns.
            if (auto repeated = headerAt(scan, i)) {
                header = std::move(repeated);
                i = header->next - 1;
                continue;
            }
        }
        const bool anyItem = std::any_of(entries.begin(), entries.end(),
                                         [](const Entry &e) { return e.cells.amount.has_value(); });
        if (isSummaryRow(row, scan.features) && (!scan.amounts[i].isEmpty() || anyItem))
            break;
        if (anyItem && isOtherLabels(scan, i))
            break;
        entries.append(Entry{i, cellsOf(*header, row, scan.features)});
    }

    // Description text printed on rows of its own (above, below or wrapped) belongs to the nearest item
    // row on its page, within three line heights; a row with an amount of its own ("Listenpreis: 99,00")
    // is a detail, not a description.
    QList<QList<qsizetype>> parts(entries.size());
    for (qsizetype e = 0; e < entries.size(); ++e) {
        if (entries[e].cells.amount) {
            parts[e].append(e);
            continue;
        }
        if (!scan.amounts[entries[e].row].isEmpty())
            continue;
        const Row &row = scan.rows[entries[e].row];
        qsizetype nearest = -1;
        double distance = 3 * row.rect.height();
        for (qsizetype a = 0; a < entries.size(); ++a) {
            const Row &item = scan.rows[entries[a].row];
            const double d = std::abs(item.rect.center().y() - row.rect.center().y());
            if (entries[a].cells.amount && item.page == row.page && d <= distance) {
                nearest = a;
                distance = d;
            }
        }
        if (nearest >= 0)
            parts[nearest].append(e);
    }

    QList<LineItem> items;
    QList<bool> quantified;
    for (qsizetype e = 0; e < entries.size(); ++e) {
        if (!entries[e].cells.amount)
            continue;
        std::sort(parts[e].begin(), parts[e].end());
        Cells cells = entries[e].cells;
        cells.description.clear();
        for (const qsizetype part : parts[e])
            cells.description.append(entries[part].cells.description);
        if (!hasLetters(cells.description))
            continue;
        items.append(itemOf(cells));
        quantified.append(cells.quantity.has_value());
    }
    // Where items print a quantity, a row without one is an allowance, a charge or a note.
    if (header->has(Kind::Quantity) && quantified.contains(true)) {
        for (qsizetype k = items.size() - 1; k >= 0; --k) {
            if (!quantified[k])
                items.removeAt(k);
        }
    }
    if (items.isEmpty())
        return std::nullopt;
    return items;
}

} // namespace Extractor

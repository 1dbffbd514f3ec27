#include "store/BatchSummary.h"

#include <gtest/gtest.h>

namespace {

struct Doc {
    Doc(QString vendor, QString number, QString total, QString currency = {}, QString subtotal = {},
        QString tax = {}, DocStatus::Kind status = DocStatus::Ready, bool approved = false)
        : vendor(vendor), number(number), total(total), currency(currency), subtotal(subtotal), tax(tax),
          status(status), approved(approved)
    {
    }
    QString vendor, number, total, currency, subtotal, tax;
    DocStatus::Kind status;
    bool approved;
};

QList<DocPtr> makeDocs(const QList<Doc> &specs)
{
    QList<DocPtr> docs;
    for (const Doc &s : specs) {
        auto d = std::make_shared<DocItem>(QStringLiteral("/tmp/x.pdf"));
        QList<Field> fields;
        auto add = [&](const char *key, const QString &value) {
            if (!value.isNull())
                fields.append(Field{QString::fromLatin1(key), QString(), value, 0.9, false, {}, false, {}});
        };
        add("vendor", s.vendor);
        add("number", s.number);
        add("currency", s.currency);
        add("subtotal", s.subtotal);
        add("tax", s.tax);
        add("total", s.total);
        d->setFields(fields);
        d->setStatus(s.status);
        d->setApproved(s.approved);
        docs.append(d);
    }
    return docs;
}

struct DuplicateCase {
    const char *what;
    QList<Doc> docs;
    QList<int> expected; ///< indices of the documents reported
};

// Duplicates need equal vendor and number (case and outer spaces ignored) and equal totals to the cent,
// among ready documents only; every member of a group is reported.
TEST(BatchSummary, DuplicateIDs)
{
    const DuplicateCase cases[] = {
        {"same totals written differently",
         {{"Acme", "42", "10.00"}, {"Acme", "42", "10"}, {"Acme", "42", "10.01"}},
         {0, 1}},
        {"case and outer spaces",
         {{"ACME Ltd ", "INV-001", "1,250.00"}, {"acme ltd", "inv-001", "1250"}},
         {0, 1}},
        {"inner spelling differs", {{"Acme", "INV-001", "5"}, {"Acme", "INV 001", "5"}}, {}},
        {"empty number, empty vendor, unreadable total",
         {{"Acme", "", "5"},
          {"Acme", "", "5"},
          {"", "7", "5"},
          {"", "7", "5"},
          {"B", "1", "n/a"},
          {"B", "1", "n/a"}},
         {}},
        {"one still being read",
         {{"Acme", "42", "10", {}, {}, {}, DocStatus::Reading}, {"Acme", "42", "10"}},
         {}},
        {"three of a kind",
         {{"A", "1", "3"}, {"B", "1", "3"}, {"A", "1", "3.00"}, {"A", "1", "3"}},
         {0, 2, 3}},
        {"empty batch", {}, {}},
    };
    for (const DuplicateCase &c : cases) {
        const QList<DocPtr> docs = makeDocs(c.docs);
        QSet<QUuid> expected;
        for (int i : c.expected)
            expected.insert(docs[i]->id());
        EXPECT_EQ(BatchSummary::duplicateIDs(docs), expected) << c.what;
    }
}

// Totals group by trimmed upper-case currency ("—" when missing, sorted last), count ready documents
// only, treat unreadable amounts as 0 and add approved totals separately.
TEST(BatchSummary, CurrencyTotals)
{
    const QList<DocPtr> docs = makeDocs({
        {"", "", "10.00", "usd", "8.00", "2.00", DocStatus::Ready, true},
        {"", "", "5.50", " USD", "", "", DocStatus::Ready, false},
        {"", "", "1.25", "USD", "oops", "0.25", DocStatus::Ready, true},
        {"", "", "100", "", "", "", DocStatus::Ready, false},
        {"", "", "7", "EUR", "", "", DocStatus::Ready, false},
        {"", "", "999", "EUR", "", "", DocStatus::Failed, true},
        {"", "", "999", "GBP", "", "", DocStatus::Extracting, true},
    });
    const QList<CurrencyTotals> expected = {
        {"EUR", 0, 0, 7, 0},
        {"USD", 8, 2.25, 16.75, 11.25},
        {"—", 0, 0, 100, 0},
    };
    EXPECT_EQ(BatchSummary::currencyTotals(docs), expected);
    EXPECT_TRUE(BatchSummary::currencyTotals({}).isEmpty());
    EXPECT_TRUE(
        BatchSummary::currencyTotals(makeDocs({{"", "", "5", "USD", "", "", DocStatus::Queued}})).isEmpty());
}

} // namespace

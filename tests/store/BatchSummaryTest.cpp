#include "store/BatchSummary.h"

#include <gtest/gtest.h>

namespace {

/// A document with the given values of vendor, number, total, currency, subtotal and tax.
DocPtr doc(const QStringList &values, DocStatus::Kind status = DocStatus::Ready, bool approved = false)
{
    static const char *const keys[] = {"vendor", "number", "total", "currency", "subtotal", "tax"};
    auto d = std::make_shared<DocItem>(QStringLiteral("/tmp/x.pdf"));
    QList<Field> fields;
    for (qsizetype i = 0; i < values.size(); ++i)
        fields.append({QString::fromLatin1(keys[i]), {}, values[i], 0.0, false, std::nullopt, false, {}});
    d->setFields(fields);
    d->setStatus(status);
    d->setApproved(approved);
    return d;
}

// Duplicates need equal vendor and number (case and outer spaces ignored, both non-empty) and totals
// equal to the cent, among ready documents only; every member of a group is reported.
TEST(BatchSummary, DuplicateIDs)
{
    // clang-format off
    const struct { const char *what; QList<DocPtr> docs; QList<int> expected; } cases[] = {
        {"totals written differently", {doc({"Acme", "42", "10.00"}), doc({"Acme", "42", "10"}), doc({"Acme", "42", "10.01"})}, {0, 1}},
        {"case and spaces", {doc({"ACME Ltd ", "INV-001", "1,250.00"}), doc({"acme ltd", "inv-001", "1250"})}, {0, 1}},
        {"inner spelling", {doc({"Acme", "INV-001", "5"}), doc({"Acme", "INV 001", "5"})}, {}},
        {"empty number", {doc({"Acme", "", "5"}), doc({"Acme", "", "5"})}, {}},
        {"empty vendor", {doc({"", "7", "5"}), doc({"", "7", "5"})}, {}},
        {"unreadable total", {doc({"B", "1", "n/a"}), doc({"B", "1", "n/a"})}, {}},
        {"one still read", {doc({"Acme", "42", "10"}, DocStatus::Reading), doc({"Acme", "42", "10"})}, {}},
        {"three of a kind", {doc({"A", "1", "3"}), doc({"B", "1", "3"}), doc({"A", "1", "3.00"}), doc({"A", "1", "3"})}, {0, 2, 3}},
        {"empty batch", {}, {}},
    };
    // clang-format on
    for (const auto &c : cases) {
        QSet<QUuid> expected;
        for (int i : c.expected)
            expected.insert(c.docs[i]->id());
        EXPECT_EQ(BatchSummary::duplicateIDs(c.docs), expected) << c.what;
    }
}

// Totals group by trimmed upper-case currency ("—" when missing, sorted last), count ready documents
// only, treat unreadable amounts as 0 and add approved totals separately.
TEST(BatchSummary, CurrencyTotals)
{
    const QList<DocPtr> docs = {
        doc({"", "", "10.00", "usd", "8.00", "2.00"}, DocStatus::Ready, true),
        doc({"", "", "5.50", " USD"}),
        doc({"", "", "1.25", "USD", "oops", "0.25"}, DocStatus::Ready, true),
        doc({"", "", "100"}),
        doc({"", "", "7", "EUR"}),
        doc({"", "", "999", "EUR"}, DocStatus::Failed, true),
        doc({"", "", "999", "GBP"}, DocStatus::Extracting, true),
    };
    const QList<CurrencyTotals> expected = {
        {"EUR", 0, 0, 7, 0}, {"USD", 8, 2.25, 16.75, 11.25}, {"—", 0, 0, 100, 0}};
    EXPECT_EQ(BatchSummary::currencyTotals(docs), expected);
    EXPECT_TRUE(BatchSummary::currencyTotals({docs[5], docs[6]}).isEmpty());
}

} // namespace

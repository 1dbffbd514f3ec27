#include "export/Table.h"
#include "ExportFixtures.h"

namespace {

// Per-document rows carry the standard values, the item count and custom columns keyed by upper-case id;
// missing fields are empty cells, unnamed and same-named definitions still get their own columns, and no
// documents still give the header row.
TEST(ExportTables, DocumentsShape)
{
    const auto first = makeDoc(QStringLiteral("/in/a b/inv-1.pdf"),
                               {{"vendor", "ACME"},
                                {"total", "12.50"},
                                {"total", "99.00"},
                                {uuidText(poId), "PO-7"},
                                {poId.toString(), "braced id is not the key"}},
                               {makeItem("x", "1", "2", "2"), makeItem("y", "", "", "3")});
    const auto second = makeDoc(QStringLiteral("/in/scan.png"), {{"dueDate", "2024-02-01"}});
    const QList<CustomFieldDef> defs{{poId, QStringLiteral("PO"), QStringLiteral("PO"), false},
                                     {refId, QString(), QStringLiteral("Ref"), false},
                                     {QUuid::createUuid(), QStringLiteral("PO"), QStringLiteral("x"), true}};

    const Table table = Exporter::documents({first, second}, defs);
    EXPECT_EQ(table.headers,
              QStringList({"File", "Vendor", "Number", "Date", "Due date", "Currency", "Subtotal", "Tax",
                           "Total", "Line items", "PO", "Custom field", "PO"}));
    const QList<QStringList> expected{
        {"inv-1.pdf", "ACME", "", "", "", "", "", "", "12.50", "2", "PO-7", "", ""},
        {"scan.png", "", "", "", "2024-02-01", "", "", "", "", "0", "", "", ""}};
    EXPECT_EQ(table.rows, expected);
    EXPECT_EQ(table.numeric, QSet<int>({6, 7, 8, 9}));
    EXPECT_EQ(Exporter::documents({}, defs), (Table{table.headers, {}, table.numeric}));
}

// Line-item rows: one per item numbered from 1 with the total repeated; an item-less document keeps one
// row, and no documents give the header row alone.
TEST(ExportTables, LineItemsShape)
{
    const auto withItems = makeDoc(
        QStringLiteral("/in/a.pdf"),
        {{"vendor", "V"}, {"number", "N1"}, {"date", "2024-01-02"}, {"currency", "EUR"}, {"total", "9.00"}},
        {makeItem("one", "1", "2.00", "2.00"), makeItem("two", "", "", "3.00"),
         makeItem("three", "2", "2", "4")});
    const auto without = makeDoc(QStringLiteral("/in/b.pdf"), {{"total", "5.00"}, {"tax", "1.00"}});

    const Table table = Exporter::lineItems({withItems, without});
    EXPECT_EQ(table.headers,
              QStringList({"File", "Vendor", "Number", "Date", "Currency", "Line", "Description", "Quantity",
                           "Unit price", "Amount", "Document total"}));
    const QList<QStringList> expected{
        {"a.pdf", "V", "N1", "2024-01-02", "EUR", "1", "one", "1", "2.00", "2.00", "9.00"},
        {"a.pdf", "V", "N1", "2024-01-02", "EUR", "2", "two", "", "", "3.00", "9.00"},
        {"a.pdf", "V", "N1", "2024-01-02", "EUR", "3", "three", "2", "2", "4", "9.00"},
        {"b.pdf", "", "", "", "", "", "", "", "", "", "5.00"}};
    EXPECT_EQ(table.rows, expected);
    EXPECT_EQ(table.numeric, QSet<int>({5, 7, 8, 9, 10}));
    EXPECT_EQ(Exporter::lineItems({}), (Table{table.headers, {}, table.numeric}));
}

} // namespace

#include "model/TypedValue.h"
#include "model/DocItem.h"
#include "support/TestSupport.h"

#include <gtest/gtest.h>

namespace {

using TypedValue::Kind;

// Typed amounts, quantities and dates are read in the locale's and documents' forms and given in the
// exported form; a lone separator before three digits follows the locale; anything else is refused.
TEST(TypedValueTest, ReadsWhatPeopleType)
{
    const QLocale german(QLocale::German, QLocale::Germany),
        british(QLocale::English, QLocale::UnitedKingdom), american(QLocale::English, QLocale::UnitedStates);
    // clang-format off
    const struct { QString text; Kind kind; QLocale locale; std::optional<QString> exported; } cases[] = {
        {"1.234,56", Kind::Amount, british, "1234.56"},
        {"1,234.56", Kind::Amount, german, "1234.56"},
        {"1.234", Kind::Amount, german, "1234.00"},
        {"1.234", Kind::Amount, british, "1.23"},
        {"\u20AC 12,50", Kind::Amount, german, "12.50"},
        {"EUR 1 234,5", Kind::Amount, german, "1234.50"},
        {"(3.00)", Kind::Amount, british, "-3.00"},
        {"-7", Kind::Amount, british, "-7.00"},
        {"", Kind::Amount, british, ""},
        {"abc", Kind::Amount, british, std::nullopt},
        {"12abc", Kind::Amount, british, std::nullopt},
        {"1.2.3,4,5", Kind::Amount, british, std::nullopt},
        {"2", Kind::Quantity, british, "2"},
        {"1,5", Kind::Quantity, german, "1.5"},
        {"2024-03-05", Kind::Date, american, "2024-03-05"},
        {"05/03/2024", Kind::Date, british, "2024-03-05"},
        {"05/03/2024", Kind::Date, american, "2024-05-03"},
        {"13/01/24", Kind::Date, american, "2024-01-13"},
        {"5 March 2024", Kind::Date, german, "2024-03-05"},
        {"31/02/2024", Kind::Date, british, std::nullopt},
        {"soon", Kind::Date, british, std::nullopt},
        {"=cmd", Kind::Text, british, "=cmd"},
    };
    // clang-format on
    for (const auto &c : cases) {
        EXPECT_EQ(TypedValue::exported(c.text, c.kind, c.locale), c.exported) << c.text.toStdString();
        EXPECT_EQ(TypedValue::problem(c.text, c.kind, c.locale).isEmpty(), c.exported.has_value())
            << c.text.toStdString();
    }
}

// An amount typed wrong blocks approval and names its field; extracted values never block; once it is an
// amount again the document approves and exports the typed value in the exported form.
TEST(TypedValueTest, BadEntryBlocksApproval)
{
    DocItem doc(QStringLiteral("/x/a.pdf"));
    doc.setFields({Field{"subtotal", "Subtotal", "not read", 0.4, false, {}, false, {}}});
    EXPECT_TRUE(doc.approvalBlock().isEmpty());
    doc.editField("subtotal", "abc");
    EXPECT_TRUE(doc.approvalBlock().startsWith("Subtotal: Not an amount"));
    doc.setApproved(true);
    EXPECT_FALSE(doc.approved());
    EXPECT_EQ(doc.record().fields[0].value, "abc");

    doc.editField("subtotal", "1.234,56");
    doc.setApproved(true);
    EXPECT_TRUE(doc.approved());
    EXPECT_EQ(doc.record().fields[0].value, "1234.56");
    EXPECT_EQ(doc.value("subtotal"), "1.234,56");
}

} // namespace

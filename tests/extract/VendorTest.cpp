#include "extract/Vendor.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::lineOf;

namespace {

// Lines stacked down the upper page, equal heights, in the given order.
QList<TextLine> stack(const QStringList &texts, double top = 0.02, int page = 0)
{
    QList<TextLine> lines;
    for (qsizetype i = 0; i < texts.size(); ++i)
        lines.append(lineOf(texts[i], 0.1, top + 0.03 * double(i), page));
    return lines;
}

// Labels need two characters after the separator; headings, contact and address lines, long or
// digit-heavy lines are never candidates (the address rule is case-sensitive); organisations and the
// topmost line win, among the first twelve candidates. The full rules skip registration lines, join a
// name wrapped down to its legal form and prefer the seller above a title or addressee heading.
TEST(Vendor, ChoosesTheVendor)
{
    // A confidence of -1 is not checked.
    // clang-format off
    const struct { const char *name; QStringList lines; const char *vendor; double confidence; RuleSet rules = RuleSet::Core; } cases[] = {
        {"LabelNeedsTwoCharacters", {"Vendor:A", "Plain Name"}, "Vendor:A", -1},
        {"LabelBlankCounts", {"Plain Name", "Vendor: A"}, "A", 0.9},
        {"LabelBlanksOnly", {"Plain Name", "Vendor:   "}, "", 0.9},
        {"Title", {"INVOICE"}, "", 0},
        {"TaxTitle", {"Tax Invoice"}, "", 0},
        {"Addressee", {"Bill To"}, "", 0},
        {"PageNumber", {"Page 1 of 2"}, "", 0},
        {"Hash", {"# 12345"}, "", 0},
        {"Email", {"Write to sales@acme.com"}, "", 0},
        {"Street", {"123 main street"}, "", 0},
        {"StateAndZip", {"Springfield, IL 62704"}, "", 0},
        {"PostBox", {"PO Box 77 Town"}, "", 0},
        {"TooFewLetters", {"Ab 1"}, "", 0},
        {"DigitHeavy", {"A1B2C3"}, "", 0},
        {"SixtyOneCharacters", {"This line is exactly sixty-one characters long, so no vendor."}, "", 0},
        {"SixtyCharacters", {"This line is exactly sixty characters long, a vendor at last"}, "This line is exactly sixty characters long, a vendor at last", -1},
        {"LowerCaseStateIsNoAddress", {"springfield, il 62704"}, "springfield, il 62704", -1},
        {"CapitalisedStreetIsNoAddress", {"123 Main Street"}, "123 Main Street", -1},
        {"TopmostWinsTie", {"Plain Name", "Other Words"}, "Plain Name", 0.6},
        {"OrganisationLifted", {"John Smith", "Golden Bakery"}, "Golden Bakery", -1},
        {"SuffixCapsConfidence", {"John Smith", "Acme Supplies Ltd"}, "Acme Supplies Ltd", 0.92},
        {"TwelveCandidates", QStringList(12, QStringLiteral("Plain Words")) << "Acme Supplies Ltd", "Plain Words", -1},
        {"RegistrationLinesSkipped", {"(CO. REG: 99821-K)", "USt-IdNr. DE123", "Kedai Runcit Maju", "(554433-W)"}, "Kedai Runcit Maju", -1, RuleSet::Full},
        {"WrappedNameJoined", {"PERNIAGAAN BINTANG", "TIMUR SDN BHD", "12, Jalan Mawar"}, "PERNIAGAAN BINTANG TIMUR SDN BHD", -1, RuleSet::Full},
        {"NoJoinWithoutLegalForm", {"Toko Sinar", "Jalan Besar", "Phone 555"}, "Toko Sinar", -1, RuleSet::Full},
        {"SellerAboveTitle", {"Roti Emas S/B", "TAX INVOICE", "BILL TO", "Kilang Besar Industries Bhd"}, "Roti Emas S/B", -1, RuleSet::Full},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        const Field field = Extractor::findVendor(stack(c.lines), c.rules);
        EXPECT_EQ(field.value, QString::fromUtf8(c.vendor));
        if (c.confidence >= 0) {
            EXPECT_DOUBLE_EQ(field.confidence, c.confidence);
            EXPECT_EQ(field.box.has_value(), c.confidence > 0);
        }
    }
}

// An explicit label anywhere on the first page wins at 0.9 with that line's box, even low down; labels
// on later pages and candidates below the first page's upper 45% never count.
TEST(Vendor, LabelOnFirstPageAndCandidatesAtItsTop)
{
    const TextLine label = lineOf(QStringLiteral("Vendor: Acme Supplies "), 0.1, 0.8);
    const Field field = Extractor::findVendor(stack({"Big Heading Corp"}) << label);
    EXPECT_EQ(field.value, QStringLiteral("Acme Supplies"));
    EXPECT_DOUBLE_EQ(field.confidence, 0.9);
    EXPECT_EQ(field.box, (PageBox{0, label.rect}));
    EXPECT_EQ(Extractor::findVendor(stack({"Plain Name"}) + stack({"Supplier: Other Ltd"}, 0.02, 1)).value,
              QStringLiteral("Plain Name"));
    EXPECT_TRUE(Extractor::findVendor(stack({"Plain Name"}, 0.02, 1)).value.isEmpty());
    EXPECT_TRUE(Extractor::findVendor(stack({"Plain Name"}, 0.45)).value.isEmpty());
}

// The tallest line gets the height bonus; lines with equal tops are read left to right; lines without
// height give a finite confidence.
TEST(Vendor, HeightAndReadingOrder)
{
    const auto vendor = [](const QList<TextLine> &lines) { return Extractor::findVendor(lines).value; };
    EXPECT_EQ(vendor({lineOf("Small Print", 0.1, 0.02, 0, 0.01), lineOf("Big Letters", 0.1, 0.05, 0, 0.04)}),
              QStringLiteral("Big Letters"));
    EXPECT_EQ(vendor({lineOf("Right Side", 0.6, 0.02), lineOf("Left Side", 0.1, 0.02)}),
              QStringLiteral("Left Side"));
    const Field flat = Extractor::findVendor({lineOf("Plain Name", 0.1, 0.1, 0, 0)});
    EXPECT_EQ(flat.value, QStringLiteral("Plain Name"));
    EXPECT_DOUBLE_EQ(flat.confidence, 0.4);
}

} // namespace

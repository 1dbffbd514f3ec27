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

// An explicit label anywhere on the first page wins at 0.9 with that line's box, even low down.
TEST(Vendor, LabelWins)
{
    QList<TextLine> lines = stack({"Big Heading Corp"});
    const TextLine label = lineOf(QStringLiteral("Vendor: Acme Supplies "), 0.1, 0.8);
    lines.append(label);
    const Field field = Extractor::findVendor(lines);
    EXPECT_EQ(field.value, QStringLiteral("Acme Supplies"));
    EXPECT_DOUBLE_EQ(field.confidence, 0.9);
    EXPECT_EQ(field.box, (PageBox{0, label.rect}));
}

// The label needs two characters after the separator, blanks included: "Vendor:A" is no label, while
// "Vendor: A" is (the blank counts) and blanks alone give an empty value.
TEST(Vendor, LabelValueLength)
{
    EXPECT_EQ(Extractor::findVendor(stack({"Vendor:A", "Plain Name"})).value, QStringLiteral("Vendor:A"));
    const Field spaced = Extractor::findVendor(stack({"Plain Name", "Vendor: A"}));
    EXPECT_EQ(spaced.value, QStringLiteral("A"));
    EXPECT_DOUBLE_EQ(spaced.confidence, 0.9);
    const Field blank = Extractor::findVendor(stack({"Plain Name", "Vendor:   "}));
    EXPECT_EQ(blank.value, QString());
    EXPECT_DOUBLE_EQ(blank.confidence, 0.9);
    EXPECT_TRUE(blank.box.has_value());
}

// Only the first page counts, for labels and candidates alike.
TEST(Vendor, FirstPageOnly)
{
    QList<TextLine> lines = stack({"Plain Name"});
    lines.append(stack({"Supplier: Other Ltd"}, 0.02, 1));
    EXPECT_EQ(Extractor::findVendor(lines).value, QStringLiteral("Plain Name"));
    EXPECT_TRUE(Extractor::findVendor(stack({"Plain Name"}, 0.02, 1)).value.isEmpty());
}

class NotCandidate : public testing::TestWithParam<const char *> {};

// Headings, contact and address lines, long or digit-heavy lines are never the vendor.
TEST_P(NotCandidate, Rejected)
{
    const Field field = Extractor::findVendor(stack({QString::fromUtf8(GetParam())}));
    EXPECT_TRUE(field.value.isEmpty()) << GetParam();
    EXPECT_DOUBLE_EQ(field.confidence, 0);
    EXPECT_FALSE(field.box.has_value());
}

INSTANTIATE_TEST_SUITE_P(Table, NotCandidate,
                         testing::Values("INVOICE", "Tax Invoice", "Bill To", "Page 1 of 2", "# 12345",
                                         "Write to sales@acme.com", "123 main street", "12 Elm way",
                                         "Springfield, IL 62704", "PO Box 77 Town", "Ab 1", "A1B2C3",
                                         "Phone: 555 0100",
                                         "This line is exactly sixty-one characters long, so no vendor."));

// The address rule is case-sensitive: a lower-case state code, and a capitalised street word, are not
// addresses, so those lines stay candidates; a 60-character line is still allowed.
TEST(Vendor, BoundaryCandidates)
{
    EXPECT_EQ(Extractor::findVendor(stack({"springfield, il 62704"})).value,
              QStringLiteral("springfield, il 62704"));
    EXPECT_EQ(Extractor::findVendor(stack({"123 Main Street"})).value, QStringLiteral("123 Main Street"));
    const QString sixty = QStringLiteral("This line is exactly sixty characters long, a vendor at last");
    ASSERT_EQ(sixty.size(), 60);
    EXPECT_EQ(Extractor::findVendor(stack({sixty})).value, sixty);
}

// Lines below 45% of the page are not candidates.
TEST(Vendor, UpperPageOnly)
{
    EXPECT_TRUE(Extractor::findVendor(stack({"Plain Name"}, 0.45)).value.isEmpty());
}

// Equal heights and no hints: the topmost line wins with score 3 and confidence 0.6.
TEST(Vendor, TopmostWinsTie)
{
    const Field field = Extractor::findVendor(stack({"Plain Name", "Other Words"}));
    EXPECT_EQ(field.value, QStringLiteral("Plain Name"));
    EXPECT_DOUBLE_EQ(field.confidence, 0.6);
}

// A company below a person's name wins through the organisation tagger; a suffix adds even more and the
// confidence stays capped.
TEST(Vendor, OrganisationLifted)
{
    EXPECT_EQ(Extractor::findVendor(stack({"John Smith", "Golden Bakery"})).value,
              QStringLiteral("Golden Bakery"));
    const Field capped = Extractor::findVendor(stack({"John Smith", "Acme Supplies Ltd"}));
    EXPECT_EQ(capped.value, QStringLiteral("Acme Supplies Ltd"));
    EXPECT_DOUBLE_EQ(capped.confidence, 0.92);
}

// The tallest line gets the height bonus; lines with equal tops are read left to right.
TEST(Vendor, HeightAndReadingOrder)
{
    QList<TextLine> lines{lineOf(QStringLiteral("Small Print"), 0.1, 0.02, 0, 0.01),
                          lineOf(QStringLiteral("Big Letters"), 0.1, 0.05, 0, 0.04)};
    EXPECT_EQ(Extractor::findVendor(lines).value, QStringLiteral("Big Letters"));
    const QList<TextLine> row{lineOf(QStringLiteral("Right Side"), 0.6, 0.02),
                              lineOf(QStringLiteral("Left Side"), 0.1, 0.02)};
    EXPECT_EQ(Extractor::findVendor(row).value, QStringLiteral("Left Side"));
}

// Only the first twelve candidates are scored, so a company further down cannot win.
TEST(Vendor, TwelveCandidates)
{
    QStringList texts;
    for (int i = 0; i < 12; ++i)
        texts.append(QStringLiteral("Plain Words"));
    texts.append(QStringLiteral("Acme Supplies Ltd"));
    EXPECT_EQ(Extractor::findVendor(stack(texts, 0.01)).value, QStringLiteral("Plain Words"));
}

// Lines without height do not crash and give a finite confidence.
TEST(Vendor, ZeroHeights)
{
    const Field field = Extractor::findVendor({lineOf(QStringLiteral("Plain Name"), 0.1, 0.1, 0, 0)});
    EXPECT_EQ(field.value, QStringLiteral("Plain Name"));
    EXPECT_DOUBLE_EQ(field.confidence, 0.4);
}

struct FullVendorCase {
    const char *name;
    QStringList lines;
    const char *vendor;
};

class FullVendor : public testing::TestWithParam<FullVendorCase> {};

// Full rules: registration lines are never the vendor, a name wrapped down to its legal form is joined,
// and the seller above a title or addressee heading beats a customer company below it.
TEST_P(FullVendor, FindsTheSeller)
{
    const FullVendorCase &c = GetParam();
    EXPECT_EQ(Extractor::findVendor(stack(c.lines), RuleSet::Full).value, QString::fromUtf8(c.vendor));
}

const FullVendorCase fullVendorCases[] = {
    {"RegistrationLinesSkipped",
     {"(CO. REG: 99821-K)", "USt-IdNr. DE123", "Kedai Runcit Maju", "(554433-W)"},
     "Kedai Runcit Maju"},
    {"WrappedNameJoined",
     {"PERNIAGAAN BINTANG", "TIMUR SDN BHD", "12, Jalan Mawar"},
     "PERNIAGAAN BINTANG TIMUR SDN BHD"},
    {"NoJoinWithoutLegalForm", {"Toko Sinar", "Jalan Besar", "Phone 555"}, "Toko Sinar"},
    {"SellerAboveTitle",
     {"Roti Emas S/B", "TAX INVOICE", "BILL TO", "Kilang Besar Industries Bhd"},
     "Roti Emas S/B"},
};

INSTANTIATE_TEST_SUITE_P(Table, FullVendor, testing::ValuesIn(fullVendorCases),
                         [](const auto &info) { return std::string(info.param.name); });

} // namespace

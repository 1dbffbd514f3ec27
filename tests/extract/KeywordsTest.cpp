#include "extract/Keywords.h"
#include "extract/Regex.h"

#include <gtest/gtest.h>

namespace {

using namespace Keywords;

// A group opens for its English words under both rule sets and for the vocabularies' phrases under the
// full rules only, however the phrase's optional blanks, dots, hyphens and letter case are written;
// text without any of its words keeps it shut.
TEST(Keywords, OpensTheGroupsWhoseWordsOccur)
{
    // clang-format off
    const struct { const char *text; Group group; RuleSet rules; bool open; } cases[] = {
        {"TOTAL DUE  12.00", TotalLabel, RuleSet::Core, true},
        {"Thank you for your business", TotalLabel, RuleSet::Full, false},
        {"Rechnungsnummer 4711", NumberLabel, RuleSet::Core, false},
        {"Rechnungsnummer 4711", NumberLabel, RuleSet::Full, true},
        {"Rechnungs - Nr 4711", NumberLabel, RuleSet::Full, true},
        {"I. V. A. 21 %", TaxLabel, RuleSet::Full, true},
        {"ÉCHÉANCE : 30/04/2024", DateLabel, RuleSet::Full, true},
        {"Hauptstrasse 12, 10115 Berlin", NumberLabel, RuleSet::Full, false},
        {"Sdn\u00A0Bhd", LegalForm, RuleSet::Core, true},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(may(QString::fromUtf8(c.text), c.group, c.rules), c.open);
    }
}

// A character that case-folds to several letters or to ASCII ("ß" to "ss", the Kelvin sign to "k")
// opens every group, so the patterns decide with ICU's full case folding.
TEST(Keywords, SpecialFoldingOpensEverything)
{
    EXPECT_EQ(of(QStringLiteral("Straße"), RuleSet::Core), ~Mask(0));
    EXPECT_EQ(of(QStringLiteral("\u212Aassenbon"), RuleSet::Full), ~Mask(0));
}

// Built-in patterns compile their letter and number sets without ICU's case closure but must match
// exactly what the case-insensitive sets match, U+0345 included; a class with other members is kept.
TEST(Regex, BuiltInLetterSetsKeepTheirCaseClosure)
{
    EXPECT_TRUE(Regex(QStringLiteral(R"(^\p{L}+$)")).contains(QStringLiteral("\u0345Ab")));
    EXPECT_FALSE(Regex(QStringLiteral(R"(^\p{L}+$)")).contains(QStringLiteral("A1")));
    EXPECT_TRUE(Regex(QStringLiteral(R"((?<![\p{L}\d$])7)")).contains(QStringLiteral("-7")));
    EXPECT_FALSE(Regex(QStringLiteral(R"((?<![\p{L}\d$])7)")).contains(QStringLiteral("\u03997")));
    EXPECT_TRUE(Regex(QStringLiteral(R"(^[\p{L}a-c]\d$)")).contains(QStringLiteral("B2")));
}

} // namespace

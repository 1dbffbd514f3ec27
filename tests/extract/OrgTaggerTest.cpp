#include "extract/OrgTagger.h"

#include <gtest/gtest.h>

namespace {

// Company forms and trade words in any case name organisations; registration lines, people, addresses
// and ambiguous short forms away from the end of a line do not.
TEST(OrgTagger, Classifies)
{
    // clang-format off
    const struct { const char *text; bool org; } cases[] = {
        {"Gardenia Bakeries (KL) Sdn. Bhd. (139386-X)", true},
        {"Tan Woon Yann Bhd", true},
        {"Müller Werkzeuge GmbH", true},
        {"Siemens AG", true},
        {"Example AG - Uferweg 4 - D-12345 Stadt", true},
        {"Beispiel KG, Hauptstr. 5", true},
        {"Calgary AB T2P 1J9", false},
        {"Plan AG2 - Room 5", false},
        {"Carrefour S.A.", true},
        {"Fiat S.p.A.", true},
        {"Nokia Oyj", true},
        {"Volvo Car AB", true},
        {"Maersk A/S", true},
        {"apple inc.", true},
        {"Smith & Co", true},
        {"Kwong Hing Trading", true},
        {"99 SPEED MART", true},
        {"Bäckerei Schmidt", true},
        {"ACME TRADING (GST No: 001234)", true},
        {"Company Reg No: 123456-X", false},
        {"Co. Reg. No. 201912345K", false},
        {"GST No: 001234567890", false},
        {"GST Reg No : 000123456", false},
        {"VAT ID DE123456789", false},
        {"John Smith", false},
        {"AG", false},
        {"Store #1234", false},
        {"Marketplace Lane", false},
        {"www.acme.co.uk", false},
        {"", false},
    };
    // clang-format on
    for (const auto &c : cases)
        EXPECT_EQ(Extractor::looksLikeOrg(QString::fromUtf8(c.text)), c.org) << c.text;
}

} // namespace

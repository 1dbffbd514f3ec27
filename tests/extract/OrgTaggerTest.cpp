#include "extract/OrgTagger.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    const char *text;
    bool org;
};

class OrgCases : public testing::TestWithParam<Case> {};

// Company forms and trade words in any case name organisations; registration lines, people, addresses
// and ambiguous short forms away from the end of a line do not.
TEST_P(OrgCases, Classifies)
{
    EXPECT_EQ(Extractor::looksLikeOrg(QString::fromUtf8(GetParam().text)), GetParam().org) << GetParam().text;
}

const Case cases[] = {
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

INSTANTIATE_TEST_SUITE_P(Table, OrgCases, testing::ValuesIn(cases));

} // namespace

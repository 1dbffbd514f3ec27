#include "RowFixtures.h"
#include "extract/Extractor.h"
#include "extract/Vocabulary.h"
#include "model/Money.h"

#include <gtest/gtest.h>

namespace {

// An invented invoice: rows of cells, the cells of a row 0.2 apart so that they stay separate lines.
QList<TextLine> invoice(const QList<QStringList> &rows)
{
    QList<TextLine> lines;
    for (qsizetype r = 0; r < rows.size(); ++r) {
        for (qsizetype c = 0; c < rows[r].size(); ++c)
            lines.append(
                RowFixtures::line(rows[r][c], 0.05 + 0.2 * double(c), 0.05 + 0.04 * double(r), 0.15));
    }
    return lines;
}

QString value(const Extractor::Result &result, const char *key)
{
    for (const Field &f : result.fields) {
        if (f.key == QLatin1String(key))
            return f.value;
    }
    return {};
}

struct LanguageCase {
    const char *language;
    QList<QStringList> rows;
    const char *vendor, *number, *date, *dueDate, *subtotal, *tax, *total;
    QStringList itemAmounts;
};

class Languages : public testing::TestWithParam<LanguageCase> {};

// Each vocabulary reads an invented invoice of its language: labels, month names, due-date phrases,
// item headers and summary rows. The base rules, English only, miss most of it.
TEST_P(Languages, FullRulesReadTheInvoice)
{
    const LanguageCase &c = GetParam();
    const Extractor::Result full = Extractor::extract(invoice(c.rows), {}, RuleSet::Full);
    EXPECT_EQ(value(full, "vendor"), QString::fromUtf8(c.vendor));
    EXPECT_EQ(value(full, "number"), QString::fromUtf8(c.number));
    EXPECT_EQ(value(full, "date"), QLatin1String(c.date));
    EXPECT_EQ(value(full, "dueDate"), QLatin1String(c.dueDate));
    EXPECT_EQ(value(full, "subtotal"), QLatin1String(c.subtotal));
    EXPECT_EQ(value(full, "tax"), QLatin1String(c.tax));
    EXPECT_EQ(value(full, "total"), QLatin1String(c.total));
    QStringList amounts;
    for (const LineItem &item : full.items)
        amounts.append(item.amount);
    EXPECT_EQ(amounts, c.itemAmounts);

    const Extractor::Result core = Extractor::extract(invoice(c.rows), {}, RuleSet::Core);
    EXPECT_TRUE(value(core, "number").isEmpty() || value(core, "dueDate").isEmpty());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Vocabularies, Languages, testing::Values(
    LanguageCase{"de", {{"Muster Werkzeuge GmbH"}, {"Rechnung Nr. 2024-117"}, {"Rechnungsdatum: 11. März 2024"},
                        {"Zahlbar bis 25.03.2024"}, {"Pos", "Bezeichnung", "Menge", "Einzelpreis", "Betrag"},
                        {"1 Schraubensatz", "2", "15,00", "30,00"}, {"2 Montage", "1,5", "40,00", "60,00"},
                        {"Summe netto", "90,00"}, {"zzgl. 19 % USt.", "17,10"}, {"Gesamtbetrag", "107,10 €"}},
                 "Muster Werkzeuge GmbH", "2024-117", "2024-03-11", "2024-03-25", "90.00", "17.10", "107.10",
                 {"30.00", "60.00"}},
    LanguageCase{"fr", {{"Atelier Dupont SARL"}, {"Facture n° F-2024-0042"}, {"Date de facture : 5 janvier 2024"},
                        {"Date d'échéance : 4 février 2024"}, {"Désignation", "Qté", "Prix unitaire", "Montant HT"},
                        {"Réparation portail", "1", "1 250,00", "1 250,00"}, {"Total HT", "1 250,00"},
                        {"TVA 20 %", "250,00"}, {"Total TTC", "1 500,00"}},
                 "Atelier Dupont SARL", "F-2024-0042", "2024-01-05", "2024-02-04", "1250.00", "250.00", "1500.00",
                 {"1250.00"}},
    LanguageCase{"nl", {{"Bakkerij Jansen B.V."}, {"Factuurnummer: 2024-01"}, {"Factuurdatum: 12 maart 2024"},
                        {"Vervaldatum: 26-03-2024"}, {"Omschrijving", "Aantal", "Prijs", "Bedrag"},
                        {"Taart", "2", "12,50", "25,00"}, {"Subtotaal", "25,00"}, {"BTW 9%", "2,25"},
                        {"Totaal", "27,25"}},
                 "Bakkerij Jansen B.V.", "2024-01", "2024-03-12", "2024-03-26", "25.00", "2.25", "27.25", {"25.00"}},
    LanguageCase{"es", {{"Ferretería López S.L."}, {"Factura nº A-2024/15"}, {"Fecha de emisión: 3 de mayo de 2024"},
                        {"Vencimiento: 2 de junio de 2024"}, {"Descripción", "Cantidad", "Precio", "Importe"},
                        {"Tornillos", "10", "0,50", "5,00"}, {"Base imponible", "5,00"}, {"IVA 21%", "1,05"},
                        {"Total factura", "6,05"}},
                 "Ferretería López S.L.", "A-2024/15", "2024-05-03", "2024-06-02", "5.00", "1.05", "6.05", {"5.00"}},
    LanguageCase{"it", {{"Ferramenta Rossi S.r.l."}, {"Fattura n. 2024/77"}, {"Data fattura: 15 aprile 2024"},
                        {"Scadenza: 15/05/2024"}, {"Descrizione", "Quantità", "Prezzo", "Importo"},
                        {"Chiodi", "4", "2,50", "10,00"}, {"Imponibile", "10,00"}, {"IVA 22%", "2,20"},
                        {"Totale documento", "12,20"}},
                 "Ferramenta Rossi S.r.l.", "2024/77", "2024-04-15", "2024-05-15", "10.00", "2.20", "12.20",
                 {"10.00"}}),
    [](const testing::TestParamInfo<LanguageCase> &info) { return std::string(info.param.language); });
// clang-format on

// Forms that go with the words, whatever the language: two separators before a number, a quantity
// before the description, payment terms in days, column labels over their amounts, tax rows checked
// against the subtotal and total, several tax rates added up.
TEST(Languages, FormsBesideTheWords)
{
    using Rows = QList<QStringList>;
    auto full = [](const Rows &rows) { return Extractor::extract(invoice(rows), {}, RuleSet::Full); };

    EXPECT_EQ(value(full({{"Invoice No : # 12345"}}), "number"), QStringLiteral("12345"));
    EXPECT_EQ(value(full({{"Beleg-Nr. 4711-A"}}), "number"), QStringLiteral("4711-A"));
    // The date given with the invoice number is the issue date; a letter's "Ort, den …" too.
    const auto titled = full({{"Gedruckt 01.02.2025"}, {"Gutschrift Lager (381) Nr. 5501 vom 14.02.2025"}});
    EXPECT_EQ(value(titled, "number"), QStringLiteral("5501"));
    EXPECT_EQ(value(titled, "date"), QStringLiteral("2025-02-14"));
    EXPECT_EQ(value(full({{"Stand 02.01.2025"}, {"Berlin, den 15.03.2024"}}), "date"),
              QStringLiteral("2024-03-15"));

    const auto terms = full({{"Rechnungsdatum 15.03.2024"}, {"Zahlbar innerhalb von 14 Tagen netto"}});
    EXPECT_EQ(value(terms, "dueDate"), QStringLiteral("2024-03-29"));
    EXPECT_EQ(value(full({{"Date : 15/03/2024"}, {"Paiement à 30 jours"}}), "dueDate"),
              QStringLiteral("2024-04-14"));

    const auto leading = full({{"Menge", "Bezeichnung", "Preis", "Betrag"},
                               {"1,00", "Beratung", "120,00 €"},
                               {"Summe netto", "120,00"}});
    ASSERT_EQ(leading.items.size(), 1);
    EXPECT_EQ(leading.items[0].quantity, QStringLiteral("1"));
    EXPECT_EQ(leading.items[0].description, QStringLiteral("Beratung"));

    // A detail line in "key: value" form is no item; a subtotal in any wording ends the table.
    const auto details = full({{"Bezeichnung", "Menge", "Preis", "Betrag"},
                               {"Akkuschrauber", "1", "89,00", "89,00"},
                               {"Listenpreis :", "99,00"},
                               {"Net amount", "89,00"},
                               {"Versandkosten extra", "4,90"}});
    ASSERT_EQ(details.items.size(), 1);
    EXPECT_EQ(details.items[0].amount, QStringLiteral("89.00"));

    const auto columns = full({{"Total HT", "Total TVA", "Total TTC"}, {"100,00", "20,00", "120,00"}});
    EXPECT_EQ(value(columns, "subtotal"), QStringLiteral("100.00"));
    EXPECT_EQ(value(columns, "tax"), QStringLiteral("20.00"));
    EXPECT_EQ(value(columns, "total"), QStringLiteral("120.00"));

    // A rate table and a summary both list the tax: the summary agrees with subtotal and total.
    const auto repeated = full({{"Nettobetrag", "100,00"},
                                {"USt 19 %", "19,00"},
                                {"Steuerbetrag", "19,00"},
                                {"Gesamtbetrag", "119,00"}});
    EXPECT_EQ(value(repeated, "tax"), QStringLiteral("19.00"));
    const auto rates = full({{"Summe netto", "200,00"},
                             {"USt. 7 %", "7,00"},
                             {"USt. 19 %", "19,00"},
                             {"Gesamtbetrag", "226,00"}});
    EXPECT_EQ(value(rates, "tax"), QStringLiteral("26.00"));
    EXPECT_EQ(value(full({{"Total taxes", "3.50"}}), "tax"), QStringLiteral("3.50"));
    // A rate is no amount; in a row of label and amount pairs the subtotal takes its own amount.
    EXPECT_EQ(value(full({{"Nettobetrag (zzgl. 19,00% MwSt.)", "376,37"}}), "subtotal"),
              QStringLiteral("376.37"));
    EXPECT_EQ(value(full({{"Exclusief BTW", "€ 593,36", "Subtotaal", "€ 717,97"}}), "subtotal"),
              QStringLiteral("593.36"));
    // The gross total wins over what is left to pay after a prepayment.
    EXPECT_EQ(
        value(full({{"Gesamtbetrag", "119,00"}, {"Anzahlung", "50,00"}, {"Zahlbetrag", "69,00"}}), "total"),
        QStringLiteral("119.00"));
}

// Sellers named under a heading of their own, with or without a name field; the buyer's heading is not one.
TEST(Languages, SellerUnderItsHeading)
{
    const auto vendor = [](const QList<QStringList> &rows) {
        return value(Extractor::extract(invoice(rows), {}, RuleSet::Full), "vendor");
    };
    EXPECT_EQ(vendor({{"Rechnung 2024-5"},
                      {"Verkäufer"},
                      {"Name:", "Beispiel Handel GmbH"},
                      {"Käufer"},
                      {"Name:", "Kunde AG"}}),
              QStringLiteral("Beispiel Handel GmbH"));
    EXPECT_EQ(vendor({{"FACTURE"}, {"Émetteur"}, {"Menuiserie Martin"}, {"Destinataire"}, {"Client SA"}}),
              QStringLiteral("Menuiserie Martin"));
}

// A user limits the vocabularies; "en" adds nothing but is accepted; phrases are whole words, with "*"
// allowing the end of a compound and blanks matching any run of blanks.
TEST(Languages, VocabularySelectionAndPhrases)
{
    const Vocabulary::Lexicon de = Vocabulary::load({"de", "en"});
    EXPECT_EQ(de.languages, QStringList{"de"});
    EXPECT_EQ(de.months.value(QStringLiteral("märz")), 3);
    EXPECT_FALSE(de.lists.value(QStringLiteral("subtotal")).contains(QStringLiteral("Sous-total")));
    EXPECT_EQ(Vocabulary::shippedLanguages(), (QStringList{"de", "es", "fr", "it", "nl"}));

    Vocabulary::Lexicon lexicon;
    lexicon.lists.insert(QStringLiteral("x"), {QStringLiteral("*summe netto"), QStringLiteral("Rechnung")});
    const Regex rx(Vocabulary::alternatives(lexicon, QStringLiteral("x")));
    EXPECT_TRUE(rx.contains(QStringLiteral("Rechnungssumme   netto")));
    EXPECT_TRUE(rx.contains(QStringLiteral("RECHNUNG 12")));
    EXPECT_FALSE(rx.contains(QStringLiteral("Rechnungsdatum")));
    EXPECT_FALSE(rx.contains(QStringLiteral("Summe nettobetrag")));
}

} // namespace

#include "RowFixtures.h"
#include "extract/Extractor.h"
#include "extract/Vocabulary.h"

#include <gtest/gtest.h>

using RowFixtures::invoice;
using RowFixtures::valueOf;

namespace {

// Each vocabulary reads an invented invoice of its language: labels, month names, due-date phrases,
// item headers and summary rows. The base rules, English only, miss most of it.
TEST(Languages, FullRulesReadTheInvoice)
{
    const char *const keys[] = {"vendor", "number", "date", "dueDate", "subtotal", "tax", "total"};
    // clang-format off
    const struct { const char *language; QList<QStringList> rows; QStringList fields; QStringList items; } cases[] = {
        {"de",
         {{"Muster Werkzeuge GmbH"}, {"Rechnung Nr. 2024-117"}, {"Rechnungsdatum: 11. März 2024"},
          {"Zahlbar bis 25.03.2024"}, {"Pos", "Bezeichnung", "Menge", "Einzelpreis", "Betrag"},
          {"1 Schraubensatz", "2", "15,00", "30,00"}, {"2 Montage", "1,5", "40,00", "60,00"},
          {"Summe netto", "90,00"}, {"zzgl. 19 % USt.", "17,10"}, {"Gesamtbetrag", "107,10 €"}},
         {"Muster Werkzeuge GmbH", "2024-117", "2024-03-11", "2024-03-25", "90.00", "17.10", "107.10"},
         {"2 x Schraubensatz = 30.00", "1.5 x Montage = 60.00"}},
        {"fr",
         {{"Atelier Dupont SARL"}, {"Facture n° F-2024-0042"}, {"Date de facture : 5 janvier 2024"},
          {"Date d'échéance : 4 février 2024"}, {"Désignation", "Qté", "Prix unitaire", "Montant HT"},
          {"Réparation portail", "1", "1 250,00", "1 250,00"}, {"Total HT", "1 250,00"},
          {"TVA 20 %", "250,00"}, {"Total TTC", "1 500,00"}},
         {"Atelier Dupont SARL", "F-2024-0042", "2024-01-05", "2024-02-04", "1250.00", "250.00", "1500.00"},
         {"1 x Réparation portail = 1250.00"}},
        {"nl",
         {{"Bakkerij Jansen B.V."}, {"Factuurnummer: 2024-01"}, {"Factuurdatum: 12 maart 2024"},
          {"Vervaldatum: 26-03-2024"}, {"Omschrijving", "Aantal", "Prijs", "Bedrag"},
          {"Taart", "2", "12,50", "25,00"}, {"Subtotaal", "25,00"}, {"BTW 9%", "2,25"}, {"Totaal", "27,25"}},
         {"Bakkerij Jansen B.V.", "2024-01", "2024-03-12", "2024-03-26", "25.00", "2.25", "27.25"},
         {"2 x Taart = 25.00"}},
        {"es",
         {{"Ferretería López S.L."}, {"Factura nº A-2024/15"}, {"Fecha de emisión: 3 de mayo de 2024"},
          {"Vencimiento: 2 de junio de 2024"}, {"Descripción", "Cantidad", "Precio", "Importe"},
          {"Tornillos", "10", "0,50", "5,00"}, {"Base imponible", "5,00"}, {"IVA 21%", "1,05"},
          {"Total factura", "6,05"}},
         {"Ferretería López S.L.", "A-2024/15", "2024-05-03", "2024-06-02", "5.00", "1.05", "6.05"},
         {"10 x Tornillos = 5.00"}},
        {"it",
         {{"Ferramenta Rossi S.r.l."}, {"Fattura n. 2024/77"}, {"Data fattura: 15 aprile 2024"},
          {"Scadenza: 15/05/2024"}, {"Descrizione", "Quantità", "Prezzo", "Importo"},
          {"Chiodi", "4", "2,50", "10,00"}, {"Imponibile", "10,00"}, {"IVA 22%", "2,20"},
          {"Totale documento", "12,20"}},
         {"Ferramenta Rossi S.r.l.", "2024/77", "2024-04-15", "2024-05-15", "10.00", "2.20", "12.20"},
         {"4 x Chiodi = 10.00"}},
    };
    // clang-format on
    for (const auto &c : cases) {
        SCOPED_TRACE(c.language);
        const Extractor::Result full = Extractor::extract(invoice(c.rows), {}, RuleSet::Full);
        for (qsizetype k = 0; k < c.fields.size(); ++k)
            EXPECT_EQ(valueOf(full, keys[k]), c.fields[k]) << keys[k];
        EXPECT_EQ(RowFixtures::itemTexts(full.items), c.items);
        const Extractor::Result core = Extractor::extract(invoice(c.rows), {}, RuleSet::Core);
        EXPECT_EQ(valueOf(core, "number"), QString());
        EXPECT_EQ(valueOf(core, "dueDate"), QString());
    }
}

// Forms that go with the words, whatever the language: two separators before a number, the date given
// with the invoice number, payment terms in days, column labels over their amounts, tax rows checked
// against the subtotal and total, several tax rates added up, a seller under a heading of its own.
TEST(Languages, FormsBesideTheWords)
{
    // clang-format off
    const struct { QList<QStringList> rows; const char *key, *value; } cases[] = {
        {{{"Invoice No : # 12345"}}, "number", "12345"},
        {{{"Beleg-Nr. 4711-A"}}, "number", "4711-A"},
        {{{"Gedruckt 01.02.2025"}, {"Gutschrift Lager (381) Nr. 5501 vom 14.02.2025"}}, "number", "5501"},
        {{{"Gedruckt 01.02.2025"}, {"Gutschrift Lager (381) Nr. 5501 vom 14.02.2025"}}, "date", "2025-02-14"},
        {{{"Stand 02.01.2025"}, {"Berlin, den 15.03.2024"}}, "date", "2024-03-15"},
        {{{"Rechnungsdatum 15.03.2024"}, {"Zahlbar innerhalb von 14 Tagen netto"}}, "dueDate", "2024-03-29"},
        {{{"Date : 15/03/2024"}, {"Paiement à 30 jours"}}, "dueDate", "2024-04-14"},
        {{{"Total HT", "Total TVA", "Total TTC"}, {"100,00", "20,00", "120,00"}}, "subtotal", "100.00"},
        {{{"Total HT", "Total TVA", "Total TTC"}, {"100,00", "20,00", "120,00"}}, "tax", "20.00"},
        {{{"Total HT", "Total TVA", "Total TTC"}, {"100,00", "20,00", "120,00"}}, "total", "120.00"},
        {{{"Nettobetrag", "100,00"}, {"USt 19 %", "19,00"}, {"Steuerbetrag", "19,00"}, {"Gesamtbetrag", "119,00"}}, "tax", "19.00"},
        {{{"Summe netto", "200,00"}, {"USt. 7 %", "7,00"}, {"USt. 19 %", "19,00"}, {"Gesamtbetrag", "226,00"}}, "tax", "26.00"},
        {{{"Total taxes", "3.50"}}, "tax", "3.50"},
        {{{"Nettobetrag (zzgl. 19,00% MwSt.)", "376,37"}}, "subtotal", "376.37"},
        {{{"Exclusief BTW", "€ 593,36", "Subtotaal", "€ 717,97"}}, "subtotal", "593.36"},
        {{{"Gesamtbetrag", "119,00"}, {"Anzahlung", "50,00"}, {"Zahlbetrag", "69,00"}}, "total", "119.00"},
        {{{"Rechnung 2024-5"}, {"Verkäufer"}, {"Name:", "Beispiel Handel GmbH"}, {"Käufer"}, {"Name:", "Kunde AG"}}, "vendor", "Beispiel Handel GmbH"},
        {{{"FACTURE"}, {"Émetteur"}, {"Menuiserie Martin"}, {"Destinataire"}, {"Client SA"}}, "vendor", "Menuiserie Martin"},
    };
    // clang-format on
    for (const auto &c : cases) {
        const Extractor::Result result = Extractor::extract(invoice(c.rows), {}, RuleSet::Full);
        EXPECT_EQ(valueOf(result, c.key), QString::fromUtf8(c.value))
            << c.rows.last().join(" | ").toStdString();
    }
}

// A quantity may come before the description; a detail line in "key: value" form is no item, and a
// subtotal in any wording ends the table.
TEST(Languages, ItemForms)
{
    const auto items = [](const QList<QStringList> &rows) {
        return RowFixtures::itemTexts(Extractor::extract(invoice(rows), {}, RuleSet::Full).items);
    };
    EXPECT_EQ(items({{"Menge", "Bezeichnung", "Preis", "Betrag"},
                     {"1,00", "Beratung", "120,00 €"},
                     {"Summe netto", "120,00"}}),
              QStringList{"1 x Beratung = 120.00"});
    EXPECT_EQ(items({{"Bezeichnung", "Menge", "Preis", "Betrag"},
                     {"Akkuschrauber", "1", "89,00", "89,00"},
                     {"Listenpreis :", "99,00"},
                     {"Net amount", "89,00"},
                     {"Versandkosten extra", "4,90"}}),
              QStringList{"1 x Akkuschrauber = 89.00"});
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

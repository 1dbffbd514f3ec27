#include "intake/Ocr.h"
#include "Fixtures.h"
#include "intake/Pipeline.h"
#include "support/TestSupport.h"

#include <QPainter>
#include <QTemporaryDir>
#include <gtest/gtest.h>

// Tesseract reads a rendered invoice line by line, with boxes where the lines were drawn (normalised,
// top-left origin), tagged with the page asked for; a blank page is simply empty.
TEST(Ocr, ReadsInvoiceLinesWithBoxes)
{
    const auto result = Pipeline::ocr(Fixtures::invoiceImage(1700), 3);
    ASSERT_EQ(result.index(), 0u) << std::get<1>(result).message.toStdString();
    const QStringList expected = Fixtures::invoiceLines();
    int exact = 0;
    for (const TextLine &line : std::get<0>(result)) {
        const qsizetype i = expected.indexOf(line.text.simplified());
        if (i < 0)
            continue;
        ++exact;
        EXPECT_NEAR(line.rect.left(), 0.1, 0.01) << line.text.toStdString();
        EXPECT_NEAR(line.rect.bottom(), 0.1 + i / 24.0, 0.012) << line.text.toStdString();
        EXPECT_EQ(line.page, 3);
    }
    EXPECT_GE(exact, expected.size() - 1);

    QImage blank(1200, 1600, QImage::Format_RGB32);
    blank.fill(Qt::white);
    const auto none = Pipeline::ocr(blank, 0);
    ASSERT_EQ(none.index(), 0u);
    EXPECT_TRUE(std::get<0>(none).isEmpty());
}

// A narrow column of single digits, which page segmentation merges into one tall line of garbage, is read
// again as a block and comes back as one line per row.
TEST(Ocr, NarrowDigitColumnIsReadLineByLine)
{
    QImage receipt(1200, 1600, QImage::Format_Grayscale8);
    receipt.fill(255);
    const QStringList items{"NASI LEMAK", "TEH TARIK", "ROTI CANAI", "MEE GORENG",  "AIR SIRAP",
                            "KUIH",       "TELUR",     "SAYUR",      "AYAM GORENG", "TEH O"};
    QPainter painter(&receipt);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(22);
    painter.setFont(font);
    for (int i = 0; i < items.size(); ++i) {
        painter.drawText(QPointF(100, 300 + i * 35.2), items[i]);
        painter.drawText(QPointF(900, 300 + i * 35.2), QString::number(1 + i % 3));
        painter.drawText(QPointF(1000, 300 + i * 35.2), QStringLiteral("%1.50").arg(2 + i));
    }
    painter.end();
    const auto result = Pipeline::ocr(receipt, 0);
    ASSERT_EQ(result.index(), 0u);
    QList<TextLine> column;
    for (const TextLine &line : std::get<0>(result))
        if (line.rect.x() > 0.7 && line.rect.x() < 0.8)
            column.append(line);
    ASSERT_EQ(column.size(), items.size());
    for (int i = 0; i < items.size(); ++i) {
        EXPECT_EQ(column[i].text, QString::number(1 + i % 3));
        EXPECT_NEAR(column[i].rect.bottom(), (300 + i * 35.2) / 1600, 0.01);
    }
}

// TABRIX_OCR_LANGUAGES chooses the languages; one that cannot be loaded fails recognition, and with it the
// document, with "Text recognition failed: " and the reason.
TEST(Ocr, LanguageOverrideAndLoadFailure)
{
    qputenv("TABRIX_OCR_LANGUAGES", "no_such_language");
    const auto loaded = Pipeline::load(sampleFile("atelier-invoice-scan.png"), {}, {});
    EXPECT_EQ(Ocr::languages(), QStringLiteral("no_such_language"));
    qunsetenv("TABRIX_OCR_LANGUAGES");
    ASSERT_EQ(loaded.index(), 1u);
    EXPECT_TRUE(std::get<1>(loaded).message.startsWith(QStringLiteral("Text recognition failed: ")));
    EXPECT_TRUE(std::get<1>(loaded).message.contains(QStringLiteral("no_such_language")));
    EXPECT_TRUE(Ocr::languages().startsWith(QStringLiteral("eng")));
}

// A scanned page (a picture, no text layer) is rendered, recognised and kept as compact 8-bit grey.
TEST(Ocr, ScannedPdfPageIsRecognised)
{
    const auto loaded = Pipeline::loadPDF(sampleFile("northwind-invoice-scanned.pdf"), {}, {});
    ASSERT_EQ(loaded.index(), 0u) << std::get<1>(loaded).message.toStdString();
    const PagePtr page = std::get<0>(loaded).value(0);
    ASSERT_TRUE(page);
    EXPECT_EQ(page->image.size(), QSize(1855, 2400));
    EXPECT_EQ(page->image.format(), QImage::Format_Grayscale8);
    QStringList texts;
    for (const TextLine &line : page->lines)
        texts.append(line.text.simplified());
    EXPECT_TRUE(texts.join(u'|').contains(QStringLiteral("286.92"))) << texts.join(u'|').toStdString();
}

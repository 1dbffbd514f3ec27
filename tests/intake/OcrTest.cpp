#include "intake/Ocr.h"
#include "intake/Pipeline.h"
#include "support/TestSupport.h"

#include <QDir>
#include <QPainter>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

// The digital sample invoice as loaded: the page rendered at 1855 × 2400 px and its text layer's lines.
PagePtr digitalInvoice()
{
    static const PagePtr page =
        std::get<0>(Pipeline::load(sampleFile("northwind-invoice.pdf"), {}, {})).value(0);
    return page;
}

QStringList texts(const QList<TextLine> &lines)
{
    QStringList out;
    for (const TextLine &line : lines)
        out.append(line.text.simplified());
    return out;
}

} // namespace

// Both rule sets read clean pages alike: core keeps the plain procedure, full must not lose what it reads.
class OcrRules : public testing::TestWithParam<RuleSet> {};
INSTANTIATE_TEST_SUITE_P(BothRuleSets, OcrRules, testing::Values(RuleSet::Core, RuleSet::Full),
                         [](const auto &info) { return info.param == RuleSet::Core ? "Core" : "Full"; });

// Tesseract reads a rendered invoice line by line, with boxes where its text layer puts the same lines
// (normalised, top-left origin), tagged with the page asked for; a blank page is simply empty.
TEST_P(OcrRules, ReadsLinesWhereTheTextLayerHasThem)
{
    const PagePtr page = digitalInvoice();
    ASSERT_TRUE(page);
    const QStringList digital = texts(page->lines);
    const auto result = Pipeline::ocr(page->image, 3, GetParam());
    ASSERT_EQ(result.index(), 0u) << std::get<1>(result).message.toStdString();
    int matched = 0;
    for (const TextLine &line : std::get<0>(result)) {
        const qsizetype i = digital.indexOf(line.text.simplified());
        if (i < 0 || digital.count(digital[i]) > 1) // "89.00" twice on one row
            continue;
        ++matched;
        EXPECT_NEAR(line.rect.left(), page->lines[i].rect.left(), 0.01) << line.text.toStdString();
        EXPECT_NEAR(line.rect.center().y(), page->lines[i].rect.center().y(), 0.01)
            << line.text.toStdString();
        EXPECT_EQ(line.page, 3);
    }
    EXPECT_GE(matched, digital.size() * 3 / 4) << texts(std::get<0>(result)).join(u'|').toStdString();

    QImage blank(1200, 1600, QImage::Format_Grayscale8);
    blank.fill(255);
    EXPECT_EQ(Pipeline::ocr(blank, 0, GetParam()), Expected<QList<TextLine>>(QList<TextLine>()));
}

// A narrow column of single digits, which page segmentation merges into one tall line of garbage, is read
// again as a block and comes back as one line per row.
TEST_P(OcrRules, NarrowDigitColumnIsReadLineByLine)
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
    const auto result = Pipeline::ocr(receipt, 0, GetParam());
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
    EXPECT_EQ(std::get<1>(loaded).message,
              R"(Text recognition failed: could not load the language data for "no_such_language")");
    EXPECT_TRUE(Ocr::languages().startsWith(QStringLiteral("eng")));
}

// Full rules take the first folder that holds every language asked for, and the system's models when none
// does; a folder whose model does not load (a broken download) falls back to the system's and still reads.
TEST(Ocr, ModelFolderFallsBackToTheSystemModels)
{
    QTemporaryDir best, broken, empty;
    for (const QString &model : {best.filePath("eng.traineddata"), best.filePath("deu.traineddata"),
                                 broken.filePath("eng.traineddata")})
        ASSERT_TRUE(writeFile(model, "not a model"));
    const QStringList folders{empty.path(), broken.path(), best.path()};
    const auto folderFor = [&](const char *languages) { return Ocr::modelFolder(languages, folders); };
    EXPECT_EQ(QStringList({folderFor("eng"), folderFor("eng+deu"), folderFor("eng+fra")}),
              QStringList({QDir(broken.path()).absolutePath(), QDir(best.path()).absolutePath(), QString()}));

    const auto engine = Ocr::createTesseract(QStringLiteral("eng"), broken.path(), RuleSet::Full);
    const auto result = engine->recognize(digitalInvoice()->image, 0);
    ASSERT_EQ(result.index(), 0u) << std::get<1>(result).message.toStdString();
    EXPECT_TRUE(texts(std::get<0>(result)).contains("Northwind Office Supplies Ltd"))
        << texts(std::get<0>(result)).join(u'|').toStdString();
}

#include "intake/Ocr.h"
#include "Fixtures.h"
#include "intake/Pipeline.h"

#include <QPainter>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

// Sets an environment variable for one scope.
class ScopedEnv {
public:
    ScopedEnv(const char *name, const QByteArray &value)
        : m_name(name), m_old(qgetenv(name)), m_had(qEnvironmentVariableIsSet(name))
    {
        qputenv(name, value);
    }
    ~ScopedEnv() { m_had ? qputenv(m_name, m_old) : qunsetenv(m_name); }

private:
    const char *m_name;
    QByteArray m_old;
    bool m_had;
};

QString simplified(const QString &text)
{
    return text.simplified();
}

} // namespace

// Tesseract reads a rendered invoice line by line, with boxes where the lines were drawn (top-left
// origin, normalised to the image), in reading order.
TEST(Ocr, ReadsInvoiceLinesWithBoxes)
{
    const QImage image = Fixtures::invoiceImage(1700);
    const auto result = Pipeline::ocr(image, 3);
    ASSERT_EQ(result.index(), 0u) << std::get<1>(result).message.toStdString();
    const QList<TextLine> lines = std::get<0>(result);
    const QStringList expected = Fixtures::invoiceLines();

    int exact = 0;
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const auto found = std::find_if(lines.begin(), lines.end(),
                                        [&](const TextLine &l) { return simplified(l.text) == expected[i]; });
        if (found == lines.end())
            continue;
        ++exact;
        // drawInvoice puts baseline i at 0.1 + i/24 of the height, text 1/60 high, starting at 0.1 of the
        // width.
        const double baseline = 0.1 + i / 24.0;
        EXPECT_NEAR(found->rect.left(), 0.1, 0.01) << expected[i].toStdString();
        EXPECT_NEAR(found->rect.bottom(), baseline, 0.012) << expected[i].toStdString();
        EXPECT_GT(found->rect.height(), 1 / 120.0);
        EXPECT_LT(found->rect.height(), 1 / 30.0);
        EXPECT_EQ(found->page, 3);
    }
    EXPECT_GE(exact, expected.size() - 1) << "lines read exactly: " << exact << " of " << expected.size();
}

// A blank page is no error: it simply has no lines.
TEST(Ocr, BlankImageHasNoLines)
{
    QImage blank(1200, 1600, QImage::Format_RGB32);
    blank.fill(Qt::white);
    const auto result = Pipeline::ocr(blank, 0);
    ASSERT_EQ(result.index(), 0u);
    EXPECT_TRUE(std::get<0>(result).isEmpty());
}

// The language list follows TABRIX_OCR_LANGUAGES, and a language that cannot be loaded fails
// recognition with "Text recognition failed: " and the reason, through the loaders too.
TEST(Ocr, LanguagesAndLoadFailure)
{
    {
        const ScopedEnv env("TABRIX_OCR_LANGUAGES", "eng+deu");
        EXPECT_EQ(Ocr::languages(), QStringLiteral("eng+deu"));
    }
    EXPECT_TRUE(Ocr::languages().startsWith(QStringLiteral("eng")));

    const ScopedEnv env("TABRIX_OCR_LANGUAGES", "no_such_language");
    const auto result = Pipeline::ocr(Fixtures::invoiceImage(400), 0);
    ASSERT_EQ(result.index(), 1u);
    EXPECT_TRUE(std::get<1>(result).message.startsWith(QStringLiteral("Text recognition failed: ")));
    EXPECT_GT(std::get<1>(result).message.size(), QStringLiteral("Text recognition failed: ").size());

    QTemporaryDir dir;
    Fixtures::invoiceImage(400).save(dir.filePath(QStringLiteral("page.png")));
    const auto loaded = Pipeline::load(dir.filePath(QStringLiteral("page.png")), {}, {});
    ASSERT_EQ(loaded.index(), 1u);
    EXPECT_EQ(std::get<1>(loaded).message, std::get<1>(result).message);
}

// A scanned PDF page (a picture, no text layer) is rendered and recognised with the real engine;
// the extractor then sees the invoice's text.
TEST(Ocr, ScannedPdfPageIsRecognised)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("scan.pdf"));
    Fixtures::writeScannedPdf(file);
    const auto loaded = Pipeline::loadPDF(file, {}, {});
    ASSERT_EQ(loaded.index(), 0u) << std::get<1>(loaded).message.toStdString();
    const QList<PagePtr> pages = std::get<0>(loaded);
    ASSERT_EQ(pages.size(), 1);
    EXPECT_EQ(pages[0]->image.size(), QSize(1855, 2400));
    EXPECT_EQ(pages[0]->image.format(), QImage::Format_Grayscale8);
    QStringList texts;
    for (const TextLine &line : pages[0]->lines)
        texts.append(simplified(line.text));
    EXPECT_TRUE(texts.contains(QStringLiteral("Total Due 49.80"))) << texts.join(u'|').toStdString();
    EXPECT_TRUE(texts.contains(QStringLiteral("Invoice Number: INV-20417")))
        << texts.join(u'|').toStdString();
}

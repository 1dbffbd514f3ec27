#include "intake/PdfLoader.h"
#include "Fixtures.h"
#include "support/TestSupport.h"

#include <QProcess>
#include <gtest/gtest.h>

using Fixtures::showText;

class PdfLoader : public Fixtures::LoaderTest {};

// Digital lines are measured in the crop box from its top-left corner, text outside it left out, and a
// page with enough text is never recognised. (Ligatures and column gaps: the CLI's --dump-lines test.)
TEST_F(PdfLoader, DigitalLinesInCropBox)
{
    const QByteArray text = showText(80, 650, 14, "Office supplies: invoice INV-20417") +
                            showText(80, 400, 14, "Total Due 49.80") +
                            showText(500, 400, 14, "outside the crop box");
    Fixtures::writeRawPdf(path("crop.pdf"), {{{0, 0, 612, 792}, {50, 100, 400, 600}, 0, text}});
    const QList<PagePtr> loaded = pages(path("crop.pdf"));
    ASSERT_EQ(loaded.size(), 1);
    const QList<TextLine> &lines = loaded[0]->lines;
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(QStringList({lines[0].text, lines[1].text}),
              QStringList({"Office supplies: invoice INV-20417", "Total Due 49.80"}));
    EXPECT_DOUBLE_EQ(lines[0].rect.x(), 30.0 / 400);
    EXPECT_NEAR(lines[1].rect.y() - lines[0].rect.y(), 250.0 / 600, 1e-9);
    // Descenders reach below the baseline.
    EXPECT_NEAR(lines[0].rect.bottom(), (700 - 650) / 600.0, 4.0 / 600);
    EXPECT_EQ(loaded[0]->image.size(), QSize(1600, 2400));
    EXPECT_TRUE(ocr.calls.isEmpty());
}

// 2400 px on the longer upright side, magnification at most 4, halves rounded up; turned pages are
// always recognised and kept as compact grey.
TEST_F(PdfLoader, RenderSizeFollowsUprightCropBox)
{
    const QByteArray text = showText(5, 60, 6, "Invoice INV-1") + showText(5, 40, 6, "Total 49.80 EUR");
    const struct {
        QRectF media;
        int rotate;
        QSize pixels;
    } cases[] = {
        // clang-format off
        {{0, 0, 200, 300}, 0, {800, 1200}},
        {{0, 0, 612, 792}, 0, {1855, 2400}},
        {{0, 0, 612, 792}, 90, {2400, 1855}},
        {{0, 0, 612, 792}, 270, {2400, 1855}},
        {{0, 0, 612, 792}, 180, {1855, 2400}},
        {{0, 0, 100.5, 800}, 0, {302, 2400}},
        // clang-format on
    };
    for (const auto &c : cases) {
        Fixtures::writeRawPdf(path("size.pdf"), {{c.media, {}, c.rotate, text}});
        const QList<PagePtr> loaded = pages(path("size.pdf"));
        ASSERT_EQ(loaded.size(), 1);
        EXPECT_EQ(loaded[0]->image.size(), c.pixels) << c.rotate;
        if (c.rotate) {
            EXPECT_EQ(loaded[0]->image.format(), QImage::Format_Grayscale8) << c.rotate;
        }
        EXPECT_EQ(ocr.calls.size(), c.rotate ? 1 : 0) << c.rotate;
    }
}

// Under 25 characters the page is recognised, which replaces its lines, and only such pages are
// rasterised when no display image is wanted.
TEST_F(PdfLoader, TwentyFiveCharacterRule)
{
    for (const QByteArray text : {"Total 12.00", "Invoice total due: 12.00", "Invoice total due: 112.00"}) {
        const bool recognised = text.size() < 25;
        Fixtures::writeRawPdf(path("short.pdf"), {{{0, 0, 612, 792}, {}, 0, showText(72, 700, 12, text)}});
        const QList<PagePtr> loaded = pages(path("short.pdf"), false);
        ASSERT_EQ(loaded.size(), 1);
        EXPECT_EQ(loaded[0]->lines.value(0).text, recognised ? QStringLiteral("recognised") : QString(text));
        EXPECT_TRUE(loaded[0]->image.isNull());
        ASSERT_EQ(ocr.calls.size(), recognised ? 1 : 0);
        if (recognised) {
            EXPECT_EQ(ocr.calls[0].size, QSize(1855, 2400));
            EXPECT_EQ(progress.last().first, DocStatus::Recognizing);
            EXPECT_DOUBLE_EQ(progress.last().second, 0.02 + 0.2 * 0.9);
        }
    }
}

// The first 40 of 55 pages, in order, progress 0.02 + 0.9 × i / 40, on one thread or two.
TEST_F(PdfLoader, ReadsAtMostFortyPages)
{
    QList<Fixtures::RawPage> long55(55);
    for (int i = 0; i < 55; ++i)
        long55[i].content = showText(72, 700, 12, "Invoice INV-20417, page " + QByteArray::number(i + 1));
    Fixtures::writeRawPdf(path("long.pdf"), long55);
    for (int threads : {1, 2}) {
        const QList<PagePtr> loaded = pages(path("long.pdf"), false, threads);
        std::sort(progress.begin(), progress.end());
        ASSERT_EQ(loaded.size(), 40);
        ASSERT_EQ(progress.size(), 40);
        for (int i = 0; i < 40; ++i) {
            EXPECT_EQ(loaded[i]->lines.value(0).text,
                      QStringLiteral("Invoice INV-20417, page %1").arg(i + 1));
            EXPECT_EQ(loaded[i]->lines.value(0).page, i);
            EXPECT_EQ(progress[i], std::pair(DocStatus::Reading, 0.02 + 0.9 * i / 40));
        }
    }
}

// A user password stops reading with the user's message; an owner password alone does not.
TEST_F(PdfLoader, Passwords)
{
    const QString plain = sampleFile("northwind-invoice.pdf");
    ASSERT_EQ(QProcess::execute("qpdf", {"--encrypt", "", "owner", "256", "--", plain, path("owner.pdf")}),
              0);
    ASSERT_EQ(QProcess::execute("qpdf", {"--encrypt", "user", "owner", "256", "--", plain, path("user.pdf")}),
              0);
    EXPECT_EQ(message(path("user.pdf")), QStringLiteral("PDF is password protected"));
    const QList<PagePtr> owner = pages(path("owner.pdf"));
    ASSERT_EQ(owner.size(), 1);
    EXPECT_EQ(owner[0]->lines, pages(plain).value(0)->lines);
}

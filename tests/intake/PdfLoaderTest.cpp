#include "Fixtures.h"
#include "intake/Pipeline.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <mutex>

using Fixtures::FakeOcr;
using Fixtures::RawPage;

namespace {

struct Progress {
    DocStatus::Kind status;
    double value;
};

class PdfLoader : public ::testing::Test {
protected:
    QString path(const QString &name) const { return dir.filePath(name); }

    // With threads > 1 the page helpers recognise with their own engines instead of the fake one.
    Expected<QList<PagePtr>> load(const QString &file, bool render = true, int threads = 1)
    {
        progress.clear();
        Pipeline::LoadOptions options;
        options.renderImages = render;
        options.ocr = threads == 1 ? &ocr : nullptr;
        options.threads = threads;
        return Pipeline::loadPDF(file, options, [this](DocStatus::Kind s, double p) {
            const std::lock_guard<std::mutex> lock(progressMutex);
            progress.append({s, p});
        });
    }

    static QList<PagePtr> pages(const Expected<QList<PagePtr>> &result)
    {
        if (const auto *error = std::get_if<TabrixError>(&result))
            ADD_FAILURE() << error->message.toStdString();
        return result.index() == 0 ? std::get<0>(result) : QList<PagePtr>{};
    }

    static QString message(const Expected<QList<PagePtr>> &result)
    {
        return result.index() == 1 ? std::get<1>(result).message : QStringLiteral("(loaded)");
    }

    QTemporaryDir dir;
    FakeOcr ocr;
    QList<Progress> progress;
    std::mutex progressMutex;
};

bool havePdftotext()
{
    return !QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty();
}

// The lines pdftotext -bbox-layout reports for page 1 of the crop box, normalised by its size.
QList<TextLine> pdftotextLines(const QString &file)
{
    QProcess process;
    process.start(QStringLiteral("pdftotext"), {"-bbox-layout", "-cropbox", "-f", "1", "-l", "1", file, "-"});
    process.waitForFinished();
    QXmlStreamReader xml(process.readAllStandardOutput());
    QList<TextLine> lines;
    double w = 1, h = 1;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto a = xml.attributes();
        if (xml.name() == QLatin1String("page")) {
            w = a.value("width").toDouble();
            h = a.value("height").toDouble();
        } else if (xml.name() == QLatin1String("line")) {
            const double x0 = a.value("xMin").toDouble(), y0 = a.value("yMin").toDouble();
            lines.append({{},
                          QRectF(x0 / w, y0 / h, (a.value("xMax").toDouble() - x0) / w,
                                 (a.value("yMax").toDouble() - y0) / h)});
        } else if (xml.name() == QLatin1String("word")) {
            QString &text = lines.last().text;
            text += (text.isEmpty() ? QString() : QStringLiteral(" ")) + xml.readElementText();
        }
    }
    return lines;
}

} // namespace

// Digital lines are in crop-box coordinates with a top-left origin, exactly where pdftotext puts them,
// and a page with enough text is never sent to recognition.
TEST_F(PdfLoader, DigitalLinesMatchPdftotextInCropBox)
{
    if (!havePdftotext())
        GTEST_SKIP() << "pdftotext not installed";
    RawPage page;
    page.mediaBox = QRectF(0, 0, 612, 792);
    page.cropBox = QRectF(50, 100, 400, 600); // left 50, bottom 100, right 450, top 700
    page.content = Fixtures::showText(80, 650, 14, "Invoice Number: INV-20417") +
                   Fixtures::showText(80, 400, 10, "Subtotal 41.50") +
                   Fixtures::showText(300, 400, 10, "VAT 8.30") +
                   Fixtures::showText(80, 120, 12, "Total Due 49.80");
    Fixtures::writeRawPdf(path("crop.pdf"), {page});

    const QList<PagePtr> loaded = pages(load(path("crop.pdf")));
    ASSERT_EQ(loaded.size(), 1);
    const QList<TextLine> expected = pdftotextLines(path("crop.pdf"));
    ASSERT_EQ(loaded[0]->lines.size(), expected.size());
    for (qsizetype i = 0; i < expected.size(); ++i) {
        const TextLine &line = loaded[0]->lines[i];
        EXPECT_EQ(line.text, expected[i].text);
        EXPECT_EQ(line.page, 0);
        EXPECT_NEAR(line.rect.x(), expected[i].rect.x(), 1e-4) << line.text.toStdString();
        EXPECT_NEAR(line.rect.y(), expected[i].rect.y(), 1e-4) << line.text.toStdString();
        EXPECT_NEAR(line.rect.width(), expected[i].rect.width(), 1e-4) << line.text.toStdString();
        EXPECT_NEAR(line.rect.height(), expected[i].rect.height(), 1e-4) << line.text.toStdString();
    }
    EXPECT_NEAR(loaded[0]->lines[0].rect.x(), 30.0 / 400,
                1e-6); // 80 pt from the media box, 30 from the crop box
    EXPECT_EQ(loaded[0]->image.size(), QSize(1600, 2400));
    EXPECT_TRUE(ocr.calls.isEmpty());
}

// The rendered size follows the upright crop box: 2400 px on the longer side, magnification capped at 4,
// rotated pages turned (and always recognised), halves rounded away from zero.
TEST_F(PdfLoader, RenderSizeFollowsUprightCropBox)
{
    const QByteArray text = Fixtures::showText(5, 60, 6, "Invoice INV-1") +
                            Fixtures::showText(5, 50, 6, "Total 49.80") +
                            Fixtures::showText(5, 40, 6, "Thank you");
    const struct {
        QRectF media;
        int rotate;
        QSize pixels;
        bool recognised;
    } cases[] = {
        {{0, 0, 200, 300}, 0, {800, 1200}, false},   {{0, 0, 612, 792}, 0, {1855, 2400}, false},
        {{0, 0, 612, 792}, 90, {2400, 1855}, true},  {{0, 0, 612, 792}, 270, {2400, 1855}, true},
        {{0, 0, 612, 792}, 180, {1855, 2400}, true}, {{0, 0, 842, 595}, 0, {2400, 1696}, false},
        {{0, 0, 100.5, 800}, 0, {302, 2400}, false},
    };
    for (const auto &c : cases) {
        RawPage page;
        page.mediaBox = c.media;
        page.rotate = c.rotate;
        page.content = text;
        Fixtures::writeRawPdf(path("size.pdf"), {page});
        ocr.calls.clear();
        const QList<PagePtr> loaded = pages(load(path("size.pdf")));
        ASSERT_EQ(loaded.size(), 1);
        EXPECT_EQ(loaded[0]->image.size(), c.pixels) << c.rotate;
        ASSERT_EQ(ocr.calls.size(), c.recognised ? 1 : 0) << c.rotate;
        if (c.recognised) {
            EXPECT_EQ(ocr.calls[0].size, c.pixels);
        }
    }
}

// Fewer than 25 characters of text send the page to recognition, which replaces those lines;
// at 25 characters the text layer is kept.
TEST_F(PdfLoader, TwentyFiveCharacterRule)
{
    const struct {
        QByteArray text;
        bool recognised;
    } cases[] = {
        {"Total 12.00", true}, {"Invoice total due: 12.00", true}, {"Invoice total due: 112.00", false}};
    for (const auto &c : cases) {
        RawPage page;
        page.content = Fixtures::showText(72, 700, 12, c.text);
        Fixtures::writeRawPdf(path("short.pdf"), {page});
        ocr.calls.clear();
        const QList<PagePtr> loaded = pages(load(path("short.pdf")));
        ASSERT_EQ(loaded.size(), 1);
        ASSERT_EQ(loaded[0]->lines.size(), 1);
        EXPECT_EQ(loaded[0]->lines[0].text, c.recognised ? QStringLiteral("recognised") : QString(c.text));
        EXPECT_EQ(ocr.calls.size(), c.recognised ? 1 : 0) << c.text.constData();
        const bool sawRecognizing = std::any_of(progress.begin(), progress.end(), [](const Progress &p) {
            return p.status == DocStatus::Recognizing;
        });
        EXPECT_EQ(sawRecognizing, c.recognised);
    }
}

// Only the first 40 of 55 pages are read, in order, with progress 0.02 + 0.9 × i / 40 for page i, whether
// one thread reads them or two share them.
TEST_F(PdfLoader, ReadsAtMostFortyPages)
{
    Fixtures::writeDigitalPdf(path("long.pdf"), 55);
    for (int threads : {1, 2}) {
        const QList<PagePtr> loaded = pages(load(path("long.pdf"), false, threads));
        ASSERT_EQ(loaded.size(), 40);
        for (int i = 0; i < 40; ++i) {
            EXPECT_EQ(loaded[i]->lines.last().text, QStringLiteral("Page %1 of 55").arg(i + 1));
            EXPECT_EQ(loaded[i]->lines.last().page, i);
            EXPECT_TRUE(loaded[i]->image.isNull());
        }
        ASSERT_EQ(progress.size(), 40);
        if (threads > 1)
            std::sort(progress.begin(), progress.end(), [](auto &a, auto &b) { return a.value < b.value; });
        for (qsizetype i = 0; i < progress.size(); ++i) {
            EXPECT_EQ(progress[i].status, DocStatus::Reading);
            EXPECT_DOUBLE_EQ(progress[i].value, 0.02 + 0.9 * double(i) / 40);
        }
    }
    EXPECT_TRUE(ocr.calls.isEmpty());
}

// Without display images, text pages are not drawn at all while recognised pages are still rasterised.
TEST_F(PdfLoader, CliModeRendersOnlyForRecognition)
{
    RawPage text, empty;
    text.content = Fixtures::showText(72, 700, 12, "Invoice INV-7 Total Due 49.80 EUR");
    Fixtures::writeRawPdf(path("mixed.pdf"), {text, empty});
    const QList<PagePtr> loaded = pages(load(path("mixed.pdf"), false));
    ASSERT_EQ(loaded.size(), 2);
    EXPECT_TRUE(loaded[0]->image.isNull());
    EXPECT_TRUE(loaded[1]->image.isNull());
    ASSERT_EQ(ocr.calls.size(), 1);
    EXPECT_EQ(ocr.calls[0].page, 1);
    EXPECT_EQ(ocr.calls[0].size, QSize(1855, 2400));
    EXPECT_EQ(loaded[1]->lines.value(0).page, 1);
}

// Ligatures in the text layer come out as the letters they stand for.
TEST_F(PdfLoader, ExpandsLigatures)
{
    RawPage page;
    // In Helvetica's standard encoding \256 is the "fi" glyph and \257 "fl".
    page.content = Fixtures::showText(72, 700, 12, "Of\\256ce supplies and \\257oor cleaning invoice");
    Fixtures::writeRawPdf(path("lig.pdf"), {page});
    const QList<PagePtr> loaded = pages(load(path("lig.pdf")));
    ASSERT_EQ(loaded.size(), 1);
    ASSERT_EQ(loaded[0]->lines.size(), 1);
    EXPECT_EQ(loaded[0]->lines[0].text, QStringLiteral("Office supplies and floor cleaning invoice"));
}

// Every failure is a value with the user's message; an owner password alone does not stop reading.
TEST_F(PdfLoader, FailuresAndPasswords)
{
    Fixtures::writeDigitalPdf(path("plain.pdf"), 1);
    QFile corrupt(path("corrupt.pdf"));
    corrupt.open(QIODevice::WriteOnly);
    corrupt.write("%PDF-1.4\nthis is not a PDF at all\n");
    corrupt.close();
    Fixtures::writeRawPdf(path("nopages.pdf"), {});
    RawPage flat;
    flat.mediaBox = QRectF(0, 0, 612, 0);
    Fixtures::writeRawPdf(path("flat.pdf"), {flat, flat});
    Fixtures::writeDigitalPdf(path("deleted.pdf"), 1);
    QFile::remove(path("deleted.pdf"));
    EXPECT_EQ(message(load(path("corrupt.pdf"))), QStringLiteral("Can't open PDF"));
    EXPECT_EQ(message(load(path("deleted.pdf"))), QStringLiteral("Can't open PDF"));
    EXPECT_EQ(message(load(path("nopages.pdf"))), QStringLiteral("PDF has no pages"));
    EXPECT_EQ(message(load(path("flat.pdf"))), QStringLiteral("Couldn't render PDF pages"));

    if (QStandardPaths::findExecutable(QStringLiteral("qpdf")).isEmpty())
        GTEST_SKIP() << "qpdf not installed";
    ASSERT_TRUE(Fixtures::run(
        "qpdf", {"--encrypt", "", "owner-secret", "256", "--", path("plain.pdf"), path("owner.pdf")}));
    ASSERT_TRUE(Fixtures::run("qpdf", {"--encrypt", "user-secret", "owner-secret", "256", "--",
                                       path("plain.pdf"), path("user.pdf")}));
    EXPECT_EQ(message(load(path("user.pdf"))), QStringLiteral("PDF is password protected"));
    const QList<PagePtr> owner = pages(load(path("owner.pdf")));
    ASSERT_EQ(owner.size(), 1);
    EXPECT_EQ(owner[0]->lines.value(0).text, Fixtures::invoiceLines().first());
}

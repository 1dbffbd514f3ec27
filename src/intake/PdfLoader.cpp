#include "PdfLoader.h"

#include "ColumnGap.h"
#include "Engines.h"
#include "PageCut.h"
#include "PageRecognition.h"

#include "model/Graphemes.h"

#include <QThread>
#include <QThreadPool>
#include <atomic>
#include <cmath>
#include <future>
#include <optional>

namespace Pipeline {

namespace {

constexpr int maxPages = 40;
constexpr double renderSide = 2400.0; // pixels on the longer side of a rendered page
constexpr double maxScale = 4.0;      // pages under 600 points are magnified no more than this
constexpr qsizetype minDigitalChars = 25;

TabrixError error(const char *message)
{
    return TabrixError{QString::fromLatin1(message)};
}

// Ligatures (ﬀ ﬁ ﬂ ﬃ ﬄ ﬅ ﬆ) as the letters they stand for, so that "Oﬃce" matches "Office".
QString expandLigatures(QString text)
{
    for (qsizetype i = text.size(); i-- > 0;) {
        if (text[i].unicode() >= 0xFB00 && text[i].unicode() <= 0xFB06)
            text.replace(i, 1, QString(text[i]).normalized(QString::NormalizationForm_KC));
    }
    return text;
}

/// The text layer of an upright page as lines: words that the PDF library chains into a line form one
/// line, split where a wide gap separates two columns.
/// Boxes are in points of the crop box with a top-left origin, so normalising is a division; words wholly
/// outside the crop box are not part of the visible page and are left out.
QList<TextLine> digitalLines(const Engines::PdfPage &page, int index)
{
    QList<TextLine> lines;
    const QSizeF size = page.size();
    const double w = size.width(), h = size.height();
    if (w <= 0 || h <= 0)
        return lines;
    const QRectF crop(0, 0, w, h);
    const QList<Engines::PdfWord> words = page.words();

    QString text;
    std::optional<QRectF> bounds;
    auto flush = [&] {
        const QString trimmed = expandLigatures(text).trimmed();
        if (!trimmed.isEmpty() && bounds) {
            const QRectF &b = *bounds;
            lines.append({trimmed, QRectF(b.x() / w, b.y() / h, b.width() / w, b.height() / h), index});
        }
        text.clear();
        bounds.reset();
    };
    const Engines::PdfWord *previous = nullptr;
    for (const Engines::PdfWord &word : words) {
        if (previous && !previous->linkedToNext)
            flush();
        previous = &word;
        const QRectF r = word.box;
        if (!r.intersects(crop) && !crop.contains(r.topLeft()))
            continue;
        if (bounds && isColumnGap(r.left() - bounds->right(), std::max(r.height(), bounds->height())))
            flush();
        text += word.text;
        if (word.spaceAfter)
            text += u' ';
        bounds = bounds ? unitedRect(*bounds, r) : r;
    }
    flush();
    return lines;
}

qsizetype characterCount(const QList<TextLine> &lines)
{
    qsizetype n = 0;
    for (const TextLine &line : lines)
        n += graphemeCount(line.text);
    return n;
}

/// The page's crop box drawn upright (rotation applied) at the given pixel size; its resolution is
/// recorded in the image for the recogniser.
QImage render(const Engines::PdfPage &page, double w, double h, QSize pixels)
{
    const double xres = 72.0 * pixels.width() / w, yres = 72.0 * pixels.height() / h;
    QImage image = page.render(xres, yres, pixels);
    if (!image.isNull()) {
        image.setDotsPerMeterX(qRound(xres / 0.0254));
        image.setDotsPerMeterY(qRound(yres / 0.0254));
    }
    return image;
}

using Document = std::unique_ptr<Engines::PdfDocument>;

/// The document opened for reading, or why it cannot be read.
Expected<Document> open(const QByteArray &bytes)
{
    const Engines::PdfModule &module = Engines::pdfModule();
    if (!module.openPdf)
        return TabrixError{QStringLiteral("Can't open PDF: ") + module.error};
    auto status = Engines::PdfStatus::Damaged;
    Document doc(module.openPdf(bytes, &status));
    if (status == Engines::PdfStatus::Locked)
        return error("PDF is password protected");
    if (!doc)
        return TabrixError{QStringLiteral("Can't open PDF: the file is damaged or not a PDF")};
    return doc;
}

/// Page i of n; a null page when it is missing or has no area (it is then skipped).
Expected<PagePtr> loadPage(const Engines::PdfDocument &doc, int i, int n, const LoadOptions &options,
                           const Report &report)
{
    const std::unique_ptr<Engines::PdfPage> page = doc.page(i);
    if (!page)
        return PagePtr();
    if (report)
        report(DocStatus::Reading, 0.02 + 0.9 * i / n);
    const QSizeF size = page->size();
    const double w = size.width(), h = size.height();
    if (!(w > 0) || !(h > 0))
        return PagePtr();
    const double scale = std::min(renderSide / std::max(w, h), maxScale);
    const QSize pixels(int(std::lround(w * scale)), int(std::lround(h * scale)));

    // Text-layer boxes of a turned page are not in display coordinates; such pages are recognised.
    auto data = std::make_shared<PageData>();
    data->lines = page->upright() ? digitalLines(*page, i) : QList<TextLine>{};
    const bool recognise = characterCount(data->lines) < minDigitalChars;
    QImage image;
    if (options.renderImages || recognise)
        image = render(*page, w, h, pixels);
    if (recognise) {
        if (report)
            report(DocStatus::Recognizing, 0.02 + 0.9 * i / n + 0.2 * 0.9 / n);
        if (!image.isNull()) {
            auto read = recognizePage(image, i, options);
            if (auto *failed = std::get_if<TabrixError>(&read))
                return *failed;
            RecognizedPage &recognized = std::get<RecognizedPage>(read);
            data->lines = std::move(recognized.lines);
            image = std::move(recognized.image);
        }
    }
    if (options.renderImages)
        data->image = std::move(image);
    return data;
}

} // namespace

Expected<QList<PagePtr>> loadPDF(const QByteArray &bytes, const LoadOptions &options, const Report &report)
{
    auto opened = open(bytes);
    if (auto *failed = std::get_if<TabrixError>(&opened))
        return *failed;
    const Document doc = std::get<Document>(std::move(opened));
    const int count = doc->pageCount();
    if (count < 1)
        return error("PDF has no pages");
    const int n = std::min(count, maxPages);

    // Pages are claimed in order from a shared counter by this thread and by helpers from the thread pool.
    // Each helper reads through a Document of its own (poppler documents are not to be shared between
    // threads) and recognises with its own thread's engine; a recogniser passed in serves one thread only.
    // A helper starts only if the pool has a thread free at once, so when documents are already being read
    // in parallel nothing waits for a thread.
    std::vector<Expected<PagePtr>> results(size_t(n), Expected<PagePtr>{PagePtr{}});
    std::atomic<int> next{0};
    std::atomic<bool> failed{false};
    auto work = [&](const Engines::PdfDocument &d) {
        for (int i = next++; i < n && !failed; i = next++) {
            results[size_t(i)] = loadPage(d, i, n, options, report);
            if (std::holds_alternative<TabrixError>(results[size_t(i)]))
                failed = true;
        }
    };
    const int threads = options.threads > 0 ? options.threads : QThread::idealThreadCount();
    const int workers = options.ocr ? 1 : std::clamp(threads, 1, n);
    std::vector<std::future<void>> helpers;
    for (int k = 1; k < workers; ++k) {
        auto task = std::make_shared<std::packaged_task<void()>>([&] {
            auto own = open(bytes);
            if (auto *d = std::get_if<Document>(&own))
                work(**d);
        });
        std::future<void> done = task->get_future();
        if (!QThreadPool::globalInstance()->tryStart([task] { (*task)(); }))
            break;
        helpers.push_back(std::move(done));
    }
    work(*doc);
    for (std::future<void> &helper : helpers)
        helper.wait();

    // Pages below a failed one were all claimed before it and are complete: the first failure is well
    // defined.
    QList<PagePtr> pages;
    for (Expected<PagePtr> &result : results) {
        if (auto *e = std::get_if<TabrixError>(&result))
            return *e;
        if (PagePtr page = std::get<PagePtr>(std::move(result)))
            pages.append(std::move(page));
    }
    if (pages.isEmpty())
        return error("Couldn't render PDF pages");
    return noteCut(std::move(pages), n, count);
}

} // namespace Pipeline

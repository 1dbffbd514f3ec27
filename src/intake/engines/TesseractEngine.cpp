// Tesseract behind Ocr::Engine; part of the separately loaded tabrix_engines module.
#include "intake/ColumnGap.h"
#include "intake/Engines.h"
#include "model/CHandle.h"

#include <QFile>
#include <algorithm>
#include <optional>
#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>
#ifdef _OPENMP
#include <omp.h>
#endif

namespace {

constexpr int smallSide = 1500; // pixels; images with a shorter longer side are read at twice their size

// Tesseract releases its models in End(), before the object itself goes.
void endAndDelete(tesseract::TessBaseAPI *api)
{
    api->End();
    delete api;
}
using Api = CHandle<tesseract::TessBaseAPI, endAndDelete>;
using Iterator = std::unique_ptr<tesseract::ResultIterator>;
using Utf8 = std::unique_ptr<char[]>;

TabrixError failure(const QString &reason)
{
    return TabrixError{QStringLiteral("Text recognition failed: ") + reason};
}

struct PixelLine {
    QString text;
    QRect box; ///< pixels of the image, top-left origin
};

// The recognised lines, each split where a wide gap separates two columns (see isColumnGap).
QList<PixelLine> readLines(tesseract::TessBaseAPI &api)
{
    QList<PixelLine> lines;
    const Iterator it(api.GetIterator());
    if (!it)
        return lines;
    int lineHeight = 0;
    bool open = false; // whether lines.last() still takes words
    do {
        if (it->IsAtBeginningOf(tesseract::RIL_TEXTLINE)) {
            int left = 0, top = 0, right = 0, bottom = 0;
            lineHeight =
                it->BoundingBox(tesseract::RIL_TEXTLINE, &left, &top, &right, &bottom) ? bottom - top : 0;
            open = false;
        }
        if (it->Empty(tesseract::RIL_WORD))
            continue;
        const Utf8 utf8(it->GetUTF8Text(tesseract::RIL_WORD));
        const QString word = QString::fromUtf8(utf8.get()).trimmed();
        int left = 0, top = 0, right = 0, bottom = 0;
        if (word.isEmpty() || !it->BoundingBox(tesseract::RIL_WORD, &left, &top, &right, &bottom))
            continue;
        const QRect box(left, top, right - left, bottom - top);
        if (open && !isColumnGap(box.left() - lines.last().box.right(), lineHeight)) {
            lines.last().text += u' ' + word;
            lines.last().box = lines.last().box.united(box);
        } else {
            lines.append({word, box});
            open = true;
        }
    } while (it->Next(tesseract::RIL_WORD));
    return lines;
}

constexpr int fewLines = 8; // a scan read as fewer lines than this most likely had its paper missed

// Rows and columns at the edges of a scan that are mostly dark (the scanner's lid around a narrow
// receipt), painted white so that thresholding and segmentation see the paper alone.
QImage blankDarkBorder(QImage grey)
{
    const int w = grey.width(), h = grey.height();
    auto rowDark = [&](int y) {
        const uchar *row = grey.constScanLine(y);
        long sum = 0;
        for (int x = 0; x < w; ++x)
            sum += row[x];
        return sum < 100L * w;
    };
    auto columnDark = [&](int x) {
        long sum = 0;
        for (int y = 0; y < h; ++y)
            sum += grey.constScanLine(y)[x];
        return sum < 100L * h;
    };
    int top = 0, bottom = h, left = 0, right = w;
    while (top < h / 4 && rowDark(top))
        ++top;
    while (bottom > 3 * h / 4 && rowDark(bottom - 1))
        --bottom;
    while (left < w / 4 && columnDark(left))
        ++left;
    while (right > 3 * w / 4 && columnDark(right - 1))
        --right;
    if (top == 0 && left == 0 && bottom == h && right == w)
        return grey;
    QImage out(grey.size(), QImage::Format_Grayscale8);
    out.fill(255);
    for (int y = top; y < bottom; ++y)
        std::copy(grey.constScanLine(y) + left, grey.constScanLine(y) + right, out.scanLine(y) + left);
    out.setDotsPerMeterX(grey.dotsPerMeterX());
    out.setDotsPerMeterY(grey.dotsPerMeterY());
    return out;
}

class TesseractEngine final : public Ocr::Engine {
public:
    TesseractEngine(const QString &languages, const QString &modelFolder, RuleSet rules)
        : m_api(new tesseract::TessBaseAPI), m_rules(rules)
    {
        // Tesseract's own diagnostics ("Estimating resolution as …") would interleave with the CLI's output;
        // failures are reported through our own messages instead.
        m_api->SetVariable("debug_file", "/dev/null");
        const QByteArray langs = languages.toUtf8();
        // A model folder that cannot be loaded (a truncated download) falls back to the system's models.
        if (!modelFolder.isEmpty() && m_api->Init(QFile::encodeName(modelFolder).constData(),
                                                  langs.constData(), tesseract::OEM_DEFAULT) == 0)
            return;
        if (m_api->Init(nullptr, langs.constData(), tesseract::OEM_DEFAULT) != 0)
            m_error = failure(QStringLiteral("could not load the language data for \"%1\"").arg(languages));
    }

    Expected<QList<TextLine>> recognize(const QImage &image, int page) override
    {
        if (m_error)
            return *m_error;
        if (image.isNull() || image.width() < 1 || image.height() < 1)
            return QList<TextLine>{};
#ifdef _OPENMP
        // Tesseract asks for up to ten OpenMP threads per loop (a num_threads clause that overrides
        // omp_set_num_threads alone); on a busy machine they oversubscribe the cores and a page takes
        // seconds. With dynamic adjustment on and this thread's team size at one, the runtime grants one.
        omp_set_dynamic(1);
        omp_set_num_threads(1);
#endif
        // The loaders hand over grey images already; anything else is converted here.
        QImage grey = image.format() == QImage::Format_Grayscale8
                          ? image
                          : image.convertToFormat(QImage::Format_Grayscale8);
        // Small pictures (screenshots, thumbnails) have letters too small for the recogniser; read at twice
        // the size they lose far fewer digits. Boxes are normalised, so the scale leaves no trace.
        int ppi = qRound(grey.dotsPerMeterX() * 0.0254);
        if (std::max(grey.width(), grey.height()) < smallSide) {
            grey = grey.scaled(grey.size() * 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            ppi *= 2;
        }
        // Full rules read the page as one block: receipts and most scans are a single column, and automatic
        // segmentation splits its rows into fragments and loses amounts at the right edge (total and date
        // rows read with about a quarter fewer errors on scanned receipts).
        const bool full = m_rules == RuleSet::Full;
        auto read = readPage(grey, ppi, full ? tesseract::PSM_SINGLE_BLOCK : tesseract::PSM_AUTO);
        if (auto *failed = std::get_if<TabrixError>(&read))
            return *failed;
        QList<PixelLine> lines = std::get<QList<PixelLine>>(std::move(read));
        if (full && lines.size() < fewLines) {
            const QImage blanked = blankDarkBorder(grey);
            if (blanked.constBits() != grey.constBits()) {
                auto again = readPage(blanked, ppi, tesseract::PSM_SINGLE_BLOCK);
                if (auto *more = std::get_if<QList<PixelLine>>(&again); more && more->size() > lines.size())
                    lines = std::move(*more);
            }
        }

        QList<TextLine> out;
        out.reserve(lines.size());
        const double w = grey.width(), h = grey.height();
        for (const PixelLine &line : std::as_const(lines))
            out.append(
                {line.text,
                 QRectF(line.box.x() / w, line.box.y() / h, line.box.width() / w, line.box.height() / h),
                 page});
        return out;
    }

private:
    // The lines of the whole of `grey` read in `mode`, tall merged lines read again.
    Expected<QList<PixelLine>> readPage(const QImage &grey, int ppi, tesseract::PageSegMode mode)
    {
        m_api->SetPageSegMode(mode);
        m_api->SetImage(grey.constBits(), grey.width(), grey.height(), 1, int(grey.bytesPerLine()));
        if (ppi >= 70 && ppi <= 2400)
            m_api->SetSourceResolution(ppi);
        if (m_api->Recognize(nullptr) != 0)
            return failure(QStringLiteral("Tesseract could not analyse the page"));
        QList<PixelLine> lines = readLines(*m_api);
        rereadTallLines(lines);
        return lines;
    }

    // Page segmentation sometimes merges a narrow column of figures into one tall "line" and reads it as
    // garbage; reading that rectangle again as a single block of text gets the rows back.
    void rereadTallLines(QList<PixelLine> &lines)
    {
        if (lines.size() < 2)
            return;
        QList<int> heights;
        for (const PixelLine &line : std::as_const(lines))
            heights.append(line.box.height());
        std::nth_element(heights.begin(), heights.begin() + heights.size() / 2, heights.end());
        const int median = heights[heights.size() / 2];
        if (median <= 0)
            return;
        for (qsizetype i = 0; i < lines.size(); ++i) {
            const QRect box = lines[i].box;
            if (box.height() <= 3 * median)
                continue;
            m_api->SetPageSegMode(tesseract::PSM_SINGLE_BLOCK);
            m_api->SetRectangle(box.x(), box.y(), box.width(), box.height());
            if (m_api->Recognize(nullptr) != 0)
                continue;
            const QList<PixelLine> reread = readLines(*m_api);
            if (reread.isEmpty())
                continue;
            lines.remove(i);
            for (qsizetype k = 0; k < reread.size(); ++k)
                lines.insert(i + k, reread[k]);
            i += reread.size() - 1;
        }
        m_api->SetPageSegMode(tesseract::PSM_AUTO);
    }

    Api m_api;
    RuleSet m_rules;
    std::optional<TabrixError> m_error;
};

} // namespace

extern "C" Q_DECL_EXPORT Ocr::Engine *tabrix_create_tesseract(const char *languagesUtf8,
                                                              const char *modelFolderUtf8, int rules)
{
    return new TesseractEngine(QString::fromUtf8(languagesUtf8), QString::fromUtf8(modelFolderUtf8),
                               RuleSet(rules));
}

// Tesseract behind Ocr::Engine; part of the separately loaded tabrix_engines module.
#include "intake/Engines.h"

#include <algorithm>
#include <optional>
#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>
#ifdef _OPENMP
#include <omp.h>
#endif

namespace {

constexpr int smallSide = 1500; // pixels; images with a shorter longer side are read at twice their size

struct ApiDeleter {
    void operator()(tesseract::TessBaseAPI *api) const
    {
        api->End();
        delete api;
    }
};
using Api = std::unique_ptr<tesseract::TessBaseAPI, ApiDeleter>;
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

QList<PixelLine> readLines(tesseract::TessBaseAPI &api)
{
    QList<PixelLine> lines;
    const Iterator it(api.GetIterator());
    if (!it)
        return lines;
    constexpr auto level = tesseract::RIL_TEXTLINE;
    do {
        if (it->Empty(level))
            continue;
        const Utf8 utf8(it->GetUTF8Text(level));
        const QString text = QString::fromUtf8(utf8.get()).trimmed();
        int left = 0, top = 0, right = 0, bottom = 0;
        if (text.isEmpty() || !it->BoundingBox(level, &left, &top, &right, &bottom))
            continue;
        lines.append({text, QRect(left, top, right - left, bottom - top)});
    } while (it->Next(level));
    return lines;
}

class TesseractEngine final : public Ocr::Engine {
public:
    explicit TesseractEngine(const QString &languages) : m_api(new tesseract::TessBaseAPI)
    {
        // Tesseract's own diagnostics ("Estimating resolution as …") would interleave with the CLI's output;
        // failures are reported through our own messages instead.
        m_api->SetVariable("debug_file", "/dev/null");
        if (m_api->Init(nullptr, languages.toUtf8().constData(), tesseract::OEM_DEFAULT) != 0)
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
        m_api->SetPageSegMode(tesseract::PSM_AUTO);
        m_api->SetImage(grey.constBits(), grey.width(), grey.height(), 1, int(grey.bytesPerLine()));
        if (ppi >= 70 && ppi <= 2400)
            m_api->SetSourceResolution(ppi);
        if (m_api->Recognize(nullptr) != 0)
            return failure(QStringLiteral("Tesseract could not analyse the page"));
        QList<PixelLine> lines = readLines(*m_api);
        rereadTallLines(lines);

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
    std::optional<TabrixError> m_error;
};

} // namespace

extern "C" Q_DECL_EXPORT Ocr::Engine *tabrix_create_tesseract(const char *languagesUtf8)
{
    return new TesseractEngine(QString::fromUtf8(languagesUtf8));
}

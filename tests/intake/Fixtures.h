#pragma once

// Files the bundled samples cannot stand in for: hand-written PDF pages, long TIFFs, tagged JPEGs.

#include "intake/Ocr.h"
#include "intake/Pipeline.h"

#include <QImage>
#include <QRectF>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <mutex>

namespace Fixtures {

/// A hand-written PDF page: boxes in points, text in Helvetica (font /F1).
struct RawPage {
    QRectF mediaBox{0, 0, 612, 792};
    QRectF cropBox; ///< empty: none
    int rotate = 0;
    QByteArray content;
};
QByteArray showText(double x, double baseline, double size, const QByteArray &text);
void writeRawPdf(const QString &path, const QList<RawPage> &pages);

void writeGreyTiff(const QString &path, const QList<QImage> &frames); ///< uncompressed, one page per frame
void writeJpegWithOrientation(const QString &path, const QImage &image, int orientation); ///< EXIF tag 1…8

/// Reads nothing; remembers what it was shown and answers with one line.
class FakeOcr final : public Ocr::Engine {
public:
    struct Call {
        int page;
        QSize size;
        int cornerGrey; ///< grey level of the top-left pixel
    };
    QList<Call> calls;
    Expected<QList<TextLine>> recognize(const QImage &image, int page) override;
};

/// What the loader tests share: a scratch folder, the fake recogniser and the progress reports.
class LoaderTest : public ::testing::Test {
protected:
    QString path(const char *name) const { return dir.filePath(QString::fromLatin1(name)); }
    /// Pipeline::load, reporting into `progress`; both it and `ocr.calls` start empty. One thread recognises
    /// with the fake engine; more threads use their own engines.
    Expected<QList<PagePtr>> load(const QString &file, bool render = true, int threads = 1);
    /// The loaded pages; none, and a test failure, for an error.
    QList<PagePtr> pages(const QString &file, bool render = true, int threads = 1);
    /// The error's message; "(loaded)" when there is none.
    QString message(const QString &file);

    QTemporaryDir dir;
    FakeOcr ocr;
    QList<std::pair<DocStatus::Kind, double>> progress;
    std::mutex mutex;
};

} // namespace Fixtures

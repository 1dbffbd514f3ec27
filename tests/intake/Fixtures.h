#pragma once

// Test documents generated on the fly: digital and scanned PDFs, hand-written PDFs with exact boxes,
// multi-frame TIFFs and tagged JPEGs. Nothing binary is kept in the repository.

#include "intake/Ocr.h"

#include <QImage>
#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>

namespace Fixtures {

/// The text lines of the generated invoice, top to bottom.
QStringList invoiceLines();

/// Draws the invoice on a white page `size` device units large; each line at 1/60 of the page height.
void drawInvoice(QPainter &painter, const QSizeF &size, const QString &footer = {});

/// The invoice as a bitmap `width` pixels wide, Letter proportions.
QImage invoiceImage(int width);

/// Letter pages drawn with QPdfWriter: the invoice and a "Page i of n" footer on each.
void writeDigitalPdf(const QString &path, int pages);

/// One Letter page holding only a picture of the invoice: no text layer, as a scanner produces.
void writeScannedPdf(const QString &path);

/// A page of a hand-written PDF: boxes in points, text in Helvetica (font /F1).
struct RawPage {
    QRectF mediaBox{0, 0, 612, 792};
    QRectF cropBox; ///< empty: none written
    int rotate = 0;
    QByteArray content;
};
/// "BT /F1 size Tf x y Td (text) Tj ET": text with its baseline at (x, y) in PDF points.
QByteArray showText(double x, double y, double size, const QByteArray &text);
void writeRawPdf(const QString &path, const QList<RawPage> &pages);

/// An uncompressed multi-page 8-bit grey TIFF, one page per image.
void writeGreyTiff(const QString &path, const QList<QImage> &frames);

/// A JPEG of `image` carrying an EXIF orientation tag (1…8) that readers must apply.
void writeJpegWithOrientation(const QString &path, const QImage &image, int orientation);

/// Runs a program to completion; true when it exited with status 0.
bool run(const QString &program, const QStringList &args);

/// A recogniser that reads nothing but remembers what it was shown and answers with one line.
class FakeOcr final : public Ocr::Engine {
public:
    struct Call {
        int page;
        QSize size;
        int meanGrey;
    };
    QList<Call> calls;
    Expected<QList<TextLine>> recognize(const QImage &image, int page) override;
};

} // namespace Fixtures

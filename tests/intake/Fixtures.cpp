#include "Fixtures.h"
#include "support/TestSupport.h"

#include <QBuffer>
#include <QFile>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QtEndian>

namespace Fixtures {

namespace {

void drawInvoice(QPainter &painter, const QSizeF &size, const QString &footer = {})
{
    painter.fillRect(QRectF(QPointF(0, 0), size), Qt::white);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(std::max(1, qRound(size.height() / 60)));
    painter.setFont(font);
    painter.setPen(Qt::black);
    const QStringList lines = invoiceLines();
    for (qsizetype i = 0; i < lines.size(); ++i)
        painter.drawText(QPointF(size.width() * 0.1, size.height() * (0.1 + i / 24.0)), lines[i]);
    painter.drawText(QPointF(size.width() * 0.1, size.height() * 0.95), footer);
}

void letterPdf(const QString &path, int pages, const std::function<void(QPainter &, int)> &draw)
{
    QPdfWriter writer(path);
    writer.setResolution(72);
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    QPainter painter(&writer);
    for (int i = 0; i < pages; ++i) {
        if (i > 0)
            writer.newPage();
        draw(painter, i);
    }
}

} // namespace

QStringList invoiceLines()
{
    return {"Northwind Office Supplies Ltd",
            "Invoice Number: INV-20417",
            "Invoice Date: 12 March 2024",
            "Description Qty Amount",
            "Printer paper A4 3 27.00",
            "Stapler heavy duty 1 14.50",
            "Subtotal 41.50",
            "VAT 20% 8.30",
            "Total Due 49.80"};
}

QImage invoiceImage(int width)
{
    QImage image(width, qRound(width * 11.0 / 8.5), QImage::Format_RGB32);
    QPainter painter(&image);
    drawInvoice(painter, image.size());
    return image;
}

void writeDigitalPdf(const QString &path, int pages)
{
    letterPdf(path, pages, [pages](QPainter &p, int i) {
        drawInvoice(p, QSizeF(612, 792), QStringLiteral("Page %1 of %2").arg(i + 1).arg(pages));
    });
}

QByteArray showText(double x, double baseline, double size, const QByteArray &text)
{
    return "BT /F1 " + QByteArray::number(size) + " Tf " + QByteArray::number(x) + ' ' +
           QByteArray::number(baseline) + " Td (" + text + ") Tj ET\n";
}

void writeRawPdf(const QString &path, const QList<RawPage> &pages)
{
    auto box = [](const QRectF &r) {
        return QStringLiteral("[%1 %2 %3 %4]")
            .arg(r.left())
            .arg(r.top())
            .arg(r.right())
            .arg(r.bottom())
            .toLatin1();
    };
    // Objects: 1 catalog, 2 page tree, 3 font, then each page followed by its content stream.
    QByteArray kids;
    for (qsizetype i = 0; i < pages.size(); ++i)
        kids += QByteArray::number(4 + 2 * i) + " 0 R ";
    QList<QByteArray> objects{"<< /Type /Catalog /Pages 2 0 R >>",
                              "<< /Type /Pages /Kids [" + kids + "] /Count " +
                                  QByteArray::number(pages.size()) + " >>",
                              "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"};
    for (qsizetype i = 0; i < pages.size(); ++i) {
        const RawPage &p = pages[i];
        objects << "<< /Type /Page /Parent 2 0 R /MediaBox " + box(p.mediaBox) +
                       (p.cropBox.isEmpty() ? QByteArray() : " /CropBox " + box(p.cropBox)) + " /Rotate " +
                       QByteArray::number(p.rotate) + " /Resources << /Font << /F1 3 0 R >> >> /Contents " +
                       QByteArray::number(5 + 2 * i) + " 0 R >>"
                << "<< /Length " + QByteArray::number(p.content.size()) + " >>\nstream\n" + p.content +
                       "\nendstream";
    }
    QByteArray pdf = "%PDF-1.4\n", xref = "0000000000 65535 f \n";
    for (qsizetype i = 0; i < objects.size(); ++i) {
        xref += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const QByteArray size = QByteArray::number(objects.size() + 1);
    writeFile(path, pdf + "xref\n0 " + size + "\n" + xref + "trailer\n<< /Size " + size +
                        " /Root 1 0 R >>\nstartxref\n" + QByteArray::number(pdf.size()) + "\n%%EOF\n");
}

void writeGreyTiff(const QString &path, const QList<QImage> &frames)
{
    // Little-endian: header, then each page's pixels followed by its directory of eight entries.
    QByteArray out("II*\0\0\0\0\0", 8);
    auto put = [&](quint32 value, int bytes) {
        char buffer[4];
        qToLittleEndian(value, buffer);
        out.append(buffer, bytes);
    };
    qsizetype link = 4;
    for (const QImage &frame : frames) {
        const QImage grey = frame.convertToFormat(QImage::Format_Grayscale8);
        const quint32 pixels = quint32(out.size());
        for (int y = 0; y < grey.height(); ++y)
            out.append(reinterpret_cast<const char *>(grey.constScanLine(y)), grey.width());
        out.append(out.size() % 2, '\0');
        qToLittleEndian(quint32(out.size()), out.data() + link);
        put(8, 2);
        const quint32 w = quint32(grey.width()), h = quint32(grey.height());
        // Width, length, 8 bits, no compression, black is zero, strip offset, rows per strip, strip bytes.
        for (auto [tag, value] : {std::pair{256u, w},
                                  {257u, h},
                                  {258u, 8u},
                                  {259u, 1u},
                                  {262u, 1u},
                                  {273u, pixels},
                                  {278u, h},
                                  {279u, w * h}}) {
            put(tag, 2);
            put(4, 2); // LONG
            put(1, 4);
            put(value, 4);
        }
        link = out.size();
        put(0, 4);
    }
    writeFile(path, out);
}

void writeJpegWithOrientation(const QString &path, const QImage &image, int orientation)
{
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPEG", 90);
    // APP1 "Exif": a big-endian TIFF header and one directory holding only Orientation (a SHORT).
    QByteArray app1("\xff\xe1\0\x22"
                    "Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0",
                    36);
    app1[29] = char(orientation);
    writeFile(path, jpeg.insert(2, app1));
}

bool run(const QString &program, const QStringList &args)
{
    QProcess process;
    process.start(program, args);
    return process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

Expected<QList<TextLine>> FakeOcr::recognize(const QImage &image, int page)
{
    calls.append({page, image.size(), qGray(image.pixel(0, 0))});
    return QList<TextLine>{{QStringLiteral("recognised"), QRectF(0.1, 0.1, 0.5, 0.05), page}};
}

} // namespace Fixtures

#include "Fixtures.h"

#include <QBuffer>
#include <QFile>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QtEndian>

namespace Fixtures {

QStringList invoiceLines()
{
    return {QStringLiteral("Northwind Office Supplies Ltd"),
            QStringLiteral("Invoice Number: INV-20417"),
            QStringLiteral("Invoice Date: 12 March 2024"),
            QStringLiteral("Description Qty Amount"),
            QStringLiteral("Printer paper A4 3 27.00"),
            QStringLiteral("Stapler heavy duty 1 14.50"),
            QStringLiteral("Subtotal 41.50"),
            QStringLiteral("VAT 20% 8.30"),
            QStringLiteral("Total Due 49.80")};
}

void drawInvoice(QPainter &painter, const QSizeF &size, const QString &footer)
{
    painter.fillRect(QRectF(QPointF(0, 0), size), Qt::white);
    painter.setPen(Qt::black);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(std::max(1, qRound(size.height() / 60)));
    painter.setFont(font);
    const double left = size.width() * 0.1, step = size.height() / 24;
    double y = size.height() * 0.1;
    for (const QString &line : invoiceLines()) {
        painter.drawText(QPointF(left, y), line);
        y += step;
    }
    if (!footer.isEmpty())
        painter.drawText(QPointF(left, size.height() * 0.95), footer);
}

QImage invoiceImage(int width)
{
    QImage image(width, qRound(width * 11.0 / 8.5), QImage::Format_RGB32);
    QPainter painter(&image);
    drawInvoice(painter, image.size());
    return image;
}

namespace {

void setUpLetter(QPdfWriter &writer)
{
    writer.setResolution(72);
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
}

} // namespace

void writeDigitalPdf(const QString &path, int pages)
{
    QPdfWriter writer(path);
    setUpLetter(writer);
    QPainter painter(&writer);
    const QSizeF size(612, 792);
    for (int i = 0; i < pages; ++i) {
        if (i > 0)
            writer.newPage();
        drawInvoice(painter, size, QStringLiteral("Page %1 of %2").arg(i + 1).arg(pages));
    }
}

void writeScannedPdf(const QString &path)
{
    QPdfWriter writer(path);
    setUpLetter(writer);
    QPainter painter(&writer);
    painter.drawImage(QRectF(0, 0, 612, 792), invoiceImage(1700));
}

QByteArray showText(double x, double y, double size, const QByteArray &text)
{
    return "BT /F1 " + QByteArray::number(size) + " Tf " + QByteArray::number(x) + ' ' +
           QByteArray::number(y) + " Td (" + text + ") Tj ET\n";
}

namespace {

QByteArray box(const QRectF &r)
{
    return '[' + QByteArray::number(r.left()) + ' ' + QByteArray::number(r.top()) + ' ' +
           QByteArray::number(r.right()) + ' ' + QByteArray::number(r.bottom()) + ']';
}

} // namespace

void writeRawPdf(const QString &path, const QList<RawPage> &pages)
{
    // Objects: 1 catalog, 2 page tree, 3 font, then a page and its content stream for each page.
    QList<QByteArray> objects;
    QByteArray kids;
    for (qsizetype i = 0; i < pages.size(); ++i)
        kids += QByteArray::number(4 + 2 * i) + " 0 R ";
    objects << "<< /Type /Catalog /Pages 2 0 R >>"
            << "<< /Type /Pages /Kids [" + kids + "] /Count " + QByteArray::number(pages.size()) + " >>"
            << "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>";
    for (qsizetype i = 0; i < pages.size(); ++i) {
        const RawPage &page = pages[i];
        QByteArray dict = "<< /Type /Page /Parent 2 0 R /MediaBox " + box(page.mediaBox);
        if (!page.cropBox.isEmpty())
            dict += " /CropBox " + box(page.cropBox);
        if (page.rotate)
            dict += " /Rotate " + QByteArray::number(page.rotate);
        dict +=
            " /Resources << /Font << /F1 3 0 R >> >> /Contents " + QByteArray::number(5 + 2 * i) + " 0 R >>";
        objects << dict
                << "<< /Length " + QByteArray::number(page.content.size()) + " >>\nstream\n" + page.content +
                       "\nendstream";
    }
    QByteArray pdf = "%PDF-1.4\n";
    QList<qsizetype> offsets;
    for (qsizetype i = 0; i < objects.size(); ++i) {
        offsets.append(pdf.size());
        pdf += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const qsizetype xref = pdf.size();
    pdf += "xref\n0 " + QByteArray::number(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (qsizetype offset : offsets)
        pdf += QByteArray::number(offset).rightJustified(10, '0') + " 00000 n \n";
    pdf += "trailer\n<< /Size " + QByteArray::number(objects.size() + 1) + " /Root 1 0 R >>\nstartxref\n" +
           QByteArray::number(xref) + "\n%%EOF\n";
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(pdf);
}

void writeGreyTiff(const QString &path, const QList<QImage> &frames)
{
    // Little-endian TIFF: header, then per page its pixels followed by its directory of 8 entries.
    QByteArray out("II*\0\0\0\0\0", 8);
    auto put16 = [&](quint16 v) {
        char bytes[2];
        qToLittleEndian(v, bytes);
        out.append(bytes, 2);
    };
    auto put32 = [&](quint32 v) {
        char bytes[4];
        qToLittleEndian(v, bytes);
        out.append(bytes, 4);
    };
    auto patch32 = [&](qsizetype at, quint32 v) { qToLittleEndian(v, out.data() + at); };
    qsizetype nextLink = 4;
    for (const QImage &frame : frames) {
        const QImage grey = frame.convertToFormat(QImage::Format_Grayscale8);
        const quint32 pixels = quint32(out.size());
        for (int y = 0; y < grey.height(); ++y)
            out.append(reinterpret_cast<const char *>(grey.constScanLine(y)), grey.width());
        if (out.size() % 2)
            out.append('\0');
        patch32(nextLink, quint32(out.size()));
        put16(8);
        auto entry = [&](quint16 tag, quint16 type, quint32 value) {
            put16(tag);
            put16(type);
            put32(1);
            type == 3 ? (put16(quint16(value)), put16(0)) : put32(value);
        };
        entry(256, 4, quint32(grey.width()));                 // ImageWidth
        entry(257, 4, quint32(grey.height()));                // ImageLength
        entry(258, 3, 8);                                     // BitsPerSample
        entry(259, 3, 1);                                     // Compression: none
        entry(262, 3, 1);                                     // Photometric: black is zero
        entry(273, 4, pixels);                                // StripOffsets
        entry(278, 4, quint32(grey.height()));                // RowsPerStrip
        entry(279, 4, quint32(grey.width() * grey.height())); // StripByteCounts
        nextLink = out.size();
        put32(0);
    }
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(out);
}

void writeJpegWithOrientation(const QString &path, const QImage &image, int orientation)
{
    QByteArray jpeg;
    {
        QBuffer buffer(&jpeg);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "JPEG", 90);
    }
    // APP1 "Exif": a big-endian TIFF header and one directory holding only the Orientation tag.
    QByteArray exif("Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\0\0\0\0\0\0\0", 32);
    exif[25] = char(orientation);
    QByteArray app1("\xff\xe1", 2);
    app1 += char(0);
    app1 += char(exif.size() + 2);
    jpeg.insert(2, app1 + exif);
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write(jpeg);
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
    const QImage grey = image.convertToFormat(QImage::Format_Grayscale8);
    qint64 sum = 0;
    for (int y = 0; y < grey.height(); ++y)
        for (int x = 0; x < grey.width(); ++x)
            sum += grey.constScanLine(y)[x];
    const qint64 count = qint64(grey.width()) * grey.height();
    calls.append({page, image.size(), count ? int(sum / count) : 0});
    return QList<TextLine>{{QStringLiteral("recognised"), QRectF(0.1, 0.1, 0.5, 0.05), page}};
}

} // namespace Fixtures

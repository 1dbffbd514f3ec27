#include "Fixtures.h"
#include "support/TestSupport.h"

#include <QtEndian>

namespace Fixtures {

QByteArray showText(double x, double baseline, double size, const QByteArray &text)
{
    return "BT /F1 " + QByteArray::number(size) + " Tf " + QByteArray::number(x) + ' ' +
           QByteArray::number(baseline) + " Td (" + text + ") Tj ET\n";
}

void writeRawPdf(const QString &path, const QList<RawPage> &pages)
{
    auto box = [](const QRectF &r) {
        return QString::asprintf("[%g %g %g %g]", r.left(), r.top(), r.right(), r.bottom()).toLatin1();
    };
    // Objects: 1 catalog, 2 page tree, 3 font, then each page followed by its content stream.
    QByteArray kids;
    QList<QByteArray> objects{
        "<< /Type /Catalog /Pages 2 0 R >>", {}, "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"};
    for (qsizetype i = 0; i < pages.size(); ++i) {
        const RawPage &p = pages[i];
        kids += QByteArray::number(4 + 2 * i) + " 0 R ";
        objects << "<< /Type /Page /Parent 2 0 R /MediaBox " + box(p.mediaBox) +
                       (p.cropBox.isEmpty() ? QByteArray() : " /CropBox " + box(p.cropBox)) + " /Rotate " +
                       QByteArray::number(p.rotate) + " /Resources << /Font << /F1 3 0 R >> >> /Contents " +
                       QByteArray::number(5 + 2 * i) + " 0 R >>"
                << "<< /Length " + QByteArray::number(p.content.size()) + " >>\nstream\n" + p.content +
                       "\nendstream";
    }
    objects[1] = "<< /Type /Pages /Kids [" + kids + "] /Count " + QByteArray::number(pages.size()) + " >>";
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
        const quint32 entries[][2] = {{256, w}, {257, h},      {258, 8}, {259, 1},
                                      {262, 1}, {273, pixels}, {278, h}, {279, w * h}};
        for (auto [tag, value] : entries) {
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
    image.save(path, "JPEG", 90);
    QByteArray jpeg = readFile(path);
    // APP1 "Exif": a big-endian TIFF header and one directory holding only Orientation (a SHORT).
    QByteArray app1 = QByteArray::fromHex("ffe10022 457869660000 "
                                          "4d4d002a00000008 0001 0112 0003 00000001 00000000 00000000");
    app1[29] = char(orientation);
    writeFile(path, jpeg.insert(2, app1));
}

Expected<QList<TextLine>> FakeOcr::recognize(const QImage &image, int page)
{
    calls.append({page, image.size(), qGray(image.pixel(0, 0))});
    return QList<TextLine>{{QStringLiteral("recognised"), QRectF(0.1, 0.1, 0.5, 0.05), page}};
}

Expected<QList<PagePtr>> LoaderTest::load(const QString &file, bool render, int threads)
{
    progress.clear();
    ocr.calls.clear();
    return Pipeline::load(file, {render, threads == 1 ? &ocr : nullptr, threads},
                          [this](DocStatus::Kind status, double value) {
                              const std::lock_guard<std::mutex> lock(mutex);
                              progress.append({status, value});
                          });
}

QList<PagePtr> LoaderTest::pages(const QString &file, bool render, int threads)
{
    const auto result = load(file, render, threads);
    if (const auto *error = std::get_if<TabrixError>(&result))
        ADD_FAILURE() << error->message.toStdString();
    return result.index() == 0 ? std::get<0>(result) : QList<PagePtr>{};
}

QString LoaderTest::message(const QString &file)
{
    const auto result = load(file);
    return result.index() == 1 ? std::get<1>(result).message : QStringLiteral("(loaded)");
}

} // namespace Fixtures

// Draws the bundled sample documents (digital PDFs, a scanned PDF and receipt images) into a folder.
// Run once with QT_QPA_PLATFORM=offscreen; the output is committed under samples/documents.
#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QRandomGenerator>
#include <cstdio>

namespace {

struct Item {
    QString description;
    int qty;
    double price;
};

struct Invoice {
    QString vendor, address, title, number, date, due, billTo, currency, symbol;
    QList<Item> items;
    double taxRate;
    QString terms;
};

// Lays out an invoice on a painter whose device is `width` × `height` units.
void drawInvoice(QPainter &p, const Invoice &inv, double width, double height)
{
    const double u = width / 100.0; // one percent of the page width
    auto text = [&](double x, double y, const QString &s, double size, bool bold = false,
                    Qt::Alignment align = Qt::AlignLeft) {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(int(size * u));
        font.setBold(bold);
        p.setFont(font);
        const QRectF box(x * u, y * u, 52 * u, size * 2 * u);
        p.drawText(align == Qt::AlignRight ? box.translated(-52 * u, 0) : box, align | Qt::AlignTop, s);
    };
    p.fillRect(QRectF(0, 0, width, height), Qt::white);
    p.setPen(Qt::black);
    text(8, 6, inv.vendor, 3.2, true);
    text(8, 11, inv.address, 1.8);
    text(62, 6, inv.title, 3.2, true);
    text(62, 12, inv.number, 1.8);
    text(62, 15, inv.date, 1.8);
    if (!inv.due.isEmpty())
        text(62, 18, inv.due, 1.8);
    text(8, 22, QStringLiteral("Bill To"), 1.8, true);
    text(8, 25, inv.billTo, 1.8);

    double y = 34;
    text(8, y, QStringLiteral("Description"), 1.8, true);
    text(60, y, QStringLiteral("Qty"), 1.8, true);
    text(76, y, QStringLiteral("Unit price"), 1.8, true, Qt::AlignRight);
    text(92, y, QStringLiteral("Amount"), 1.8, true, Qt::AlignRight);
    p.drawLine(QPointF(8 * u, (y + 3) * u), QPointF(92 * u, (y + 3) * u));
    double subtotal = 0;
    for (const Item &item : inv.items) {
        y += 4;
        const double amount = item.qty * item.price;
        subtotal += amount;
        text(8, y, item.description, 1.8);
        text(60, y, QString::number(item.qty), 1.8);
        text(76, y, QString::number(item.price, 'f', 2), 1.8, false, Qt::AlignRight);
        text(92, y, QString::number(amount, 'f', 2), 1.8, false, Qt::AlignRight);
    }
    const double tax = std::round(subtotal * inv.taxRate) / 100.0;
    y += 7;
    text(62, y, QStringLiteral("Subtotal"), 1.8);
    text(92, y, QString::number(subtotal, 'f', 2), 1.8, false, Qt::AlignRight);
    text(62, y + 3.5, QStringLiteral("Tax %1%").arg(inv.taxRate, 0, 'g', 3), 1.8);
    text(92, y + 3.5, QString::number(tax, 'f', 2), 1.8, false, Qt::AlignRight);
    text(62, y + 7.5, QStringLiteral("Total due"), 2.0, true);
    text(92, y + 7.5, inv.symbol + QString::number(subtotal + tax, 'f', 2) + inv.currency, 2.0, true,
         Qt::AlignRight);
    text(8, y + 16, inv.terms, 1.6);
}

bool writePdf(const QString &path, const Invoice &inv)
{
    QPdfWriter writer(path);
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setResolution(300);
    writer.setCreator(QStringLiteral("Tabrix samples"));
    QPainter painter(&writer);
    drawInvoice(painter, inv, writer.width(), writer.height());
    return painter.end();
}

// A "scan": the invoice rendered to a grey image with a slight tilt and speckles.
QImage scanned(const Invoice &inv, int width, int height, double tiltDegrees)
{
    QImage page(width, height, QImage::Format_RGB32);
    {
        QPainter p(&page);
        p.setRenderHint(QPainter::Antialiasing);
        p.setRenderHint(QPainter::TextAntialiasing);
        drawInvoice(p, inv, width, height);
    }
    QImage scan(width, height, QImage::Format_RGB32);
    scan.fill(QColor(246, 244, 238));
    QPainter p(&scan);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
    p.translate(width / 2.0, height / 2.0);
    p.rotate(tiltDegrees);
    p.translate(-width / 2.0, -height / 2.0);
    p.setCompositionMode(QPainter::CompositionMode_Multiply);
    p.drawImage(0, 0, page);
    p.resetTransform();
    QRandomGenerator rng(42);
    for (int i = 0; i < width * height / 800; ++i) {
        const int grey = 150 + int(rng.bounded(80));
        p.fillRect(int(rng.bounded(width)), int(rng.bounded(height)), 1, 1, QColor(grey, grey, grey));
    }
    return scan.convertToFormat(QImage::Format_Grayscale8);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QString out = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("samples/documents");
    QDir().mkpath(out);

    const Invoice northwind{"Northwind Office Supplies Ltd",
                            "18 Harbour Road, Bristol BS1 5TT",
                            "INVOICE",
                            "Invoice No: NW-24117",
                            "Invoice Date: 28/03/2024",
                            "Due Date: 27/04/2024",
                            "Contoso Analytics Ltd",
                            " GBP",
                            QString::fromUtf8("£"),
                            {{"Recycled copier paper A4, box", 4, 23.50},
                             {"Gel pens, black, pack of 12", 3, 6.20},
                             {"Desk organiser, bamboo", 2, 18.75},
                             {"Laser toner cartridge 26A", 1, 89.00}},
                            20,
                            "Terms: Net 30. Bank transfer to Northwind Office Supplies Ltd."};
    const Invoice bluepeak{"Bluepeak Cloud Services LLC",
                           "400 Pine Street, Seattle, WA 98101",
                           "INVOICE",
                           "Invoice # BP-2024-0387",
                           "Issue date: March 5, 2024",
                           "Payment due: April 4, 2024",
                           "Fabrikam Inc.",
                           " USD",
                           "$",
                           {{"Compute hours (standard tier)", 120, 0.85},
                            {"Object storage, 500 GB month", 1, 11.50},
                            {"Support plan, business", 1, 49.00}},
                           8.5,
                           "Thank you for your business."};
    const Invoice atelier{"Atelier Lumière SARL",
                          "12 rue des Arts, 75004 Paris",
                          "FACTURE / INVOICE",
                          "Invoice number: AL-0912",
                          "Date: 28.02.2024",
                          "",
                          "Wide World Importers",
                          " EUR",
                          "",
                          {{"Photo retouching, per image", 25, 4.00}, {"Colour grading session", 2, 120.00}},
                          20,
                          "Due on receipt."};
    const Invoice bakery{"Corner Bakery Cafe",
                         "221 Elm Street, Springfield",
                         "RECEIPT",
                         "Receipt #48213",
                         "Date: 04/18/2024",
                         "",
                         "Table 7",
                         "",
                         "$",
                         {{"Cappuccino", 2, 3.75}, {"Blueberry muffin", 2, 2.95}, {"Avocado toast", 1, 8.50}},
                         7.25,
                         "Thank you! Please come again."};

    bool ok = writePdf(out + "/northwind-invoice.pdf", northwind);
    ok = writePdf(out + "/bluepeak-invoice.pdf", bluepeak) && ok;
    ok = scanned(atelier, 1700, 2200, 0.6).save(out + "/atelier-invoice-scan.png") && ok;
    ok = scanned(bakery, 1275, 1650, -0.4).save(out + "/corner-bakery-receipt.jpg", "JPEG", 85) && ok;

    // An image-only PDF: the scan placed on a page, so intake has to recognise it.
    {
        QPdfWriter writer(out + "/northwind-invoice-scanned.pdf");
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setResolution(200);
        QPainter painter(&writer);
        painter.drawImage(QRectF(0, 0, writer.width(), writer.height()),
                          scanned(northwind, 1700, 2200, -0.3));
        ok = painter.end() && ok;
    }
    std::printf("%s\n", ok ? "samples written" : "some samples failed");
    return ok ? 0 : 1;
}

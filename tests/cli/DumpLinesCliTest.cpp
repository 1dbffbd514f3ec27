#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

struct CliRun {
    int status;
    QByteArray out;
    QByteArray err;
};

CliRun cli(const QStringList &args, const QByteArray &input = {})
{
    QProcess process;
    process.start(QStringLiteral(TABRIX_CLI), args);
    process.write(input);
    process.closeWriteChannel();
    process.waitForFinished(120000);
    return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
}

// A one-page digital invoice: text drawn with QPdfWriter, so the text layer is read and nothing is
// recognised.
void writeInvoice(const QString &path)
{
    QPdfWriter writer(path);
    writer.setResolution(72);
    writer.setPageSize(QPageSize(QPageSize::Letter));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    QPainter painter(&writer);
    painter.setFont(QFont(QStringLiteral("DejaVu Sans"), 11));
    const char *lines[] = {"Northwind Office Supplies Ltd", "Invoice Number: INV-20417", "Subtotal 41.50",
                           "VAT 8.30", "Total Due 49.80"};
    double y = 90;
    for (const char *line : lines) {
        painter.drawText(QPointF(72, y), QString::fromLatin1(line));
        y += 24;
    }
}

QJsonObject field(const QJsonDocument &result, const QString &key)
{
    for (const QJsonValue &f : result.object().value(QLatin1String("fields")).toArray())
        if (f.toObject().value(QLatin1String("key")).toString() == key)
            return f.toObject();
    return {};
}

} // namespace

// --dump-lines prints the page's lines in the --lines input form, and feeding them back runs the
// extraction on the real file's text.
TEST(DumpLinesCli, RoundTripsIntoLines)
{
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("invoice.pdf"));
    writeInvoice(pdf);
    const CliRun dump = cli({QStringLiteral("--dump-lines"), pdf});
    ASSERT_EQ(dump.status, 0) << dump.err.constData();
    const QJsonArray lines =
        QJsonDocument::fromJson(dump.out).object().value(QLatin1String("lines")).toArray();
    ASSERT_EQ(lines.size(), 5) << dump.out.constData();
    const QJsonObject first = lines[0].toObject();
    EXPECT_EQ(first.value(QLatin1String("text")).toString(), QStringLiteral("Northwind Office Supplies Ltd"));
    EXPECT_EQ(first.value(QLatin1String("page")).toInt(-1), 0);
    const QJsonArray rect = first.value(QLatin1String("rect")).toArray();
    ASSERT_EQ(rect.size(), 4);
    EXPECT_NEAR(rect[0].toDouble(), 72.0 / 612, 1e-9);
    EXPECT_GT(rect[1].toDouble(), 0.09);
    EXPECT_LT(rect[1].toDouble(), 90.0 / 792);

    const CliRun extracted = cli({QStringLiteral("--lines"), QStringLiteral("-")}, dump.out);
    ASSERT_EQ(extracted.status, 0) << extracted.err.constData();
    const QJsonDocument json = QJsonDocument::fromJson(extracted.out);
    EXPECT_EQ(field(json, QStringLiteral("total")).value(QLatin1String("value")).toString(),
              QStringLiteral("49.80"));
}

// A file that cannot be read prints its message on standard error, nothing on standard output, status 1.
TEST(DumpLinesCli, FailureIsMessageAndStatusOne)
{
    QTemporaryDir dir;
    QFile corrupt(dir.filePath(QStringLiteral("broken.pdf")));
    corrupt.open(QIODevice::WriteOnly);
    corrupt.write("not a pdf");
    corrupt.close();
    const struct {
        QString file;
        const char *message;
    } cases[] = {{corrupt.fileName(), "Can't open PDF"},
                 {dir.filePath(QStringLiteral("gone.png")), "Can't open image"},
                 {dir.filePath(QStringLiteral("notes.txt")), "Unsupported file type"}};
    for (const auto &c : cases) {
        const CliRun result = cli({QStringLiteral("--dump-lines"), c.file});
        EXPECT_EQ(result.status, 1) << c.message;
        EXPECT_TRUE(result.out.isEmpty()) << c.message;
        EXPECT_TRUE(result.err.contains(c.message)) << result.err.constData();
    }
}

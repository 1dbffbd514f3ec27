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
    QByteArray out, err;
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

} // namespace

// --dump-lines prints a digital invoice's lines in the --lines input form, and feeding them back runs the
// extraction on the real file's text.
TEST(DumpLinesCli, RoundTripsIntoLines)
{
    QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("invoice.pdf"));
    {
        QPdfWriter writer(pdf);
        writer.setResolution(72);
        writer.setPageSize(QPageSize(QPageSize::Letter));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        QPainter painter(&writer);
        painter.setFont(QFont(QStringLiteral("DejaVu Sans"), 11));
        const char *lines[] = {"Northwind Office Supplies Ltd", "Invoice Number: INV-20417", "Subtotal 41.50",
                               "VAT 8.30", "Total Due 49.80"};
        for (int i = 0; i < 5; ++i)
            painter.drawText(QPointF(72, 90 + 24 * i), QString::fromLatin1(lines[i]));
    }
    const CliRun dump = cli({QStringLiteral("--dump-lines"), pdf});
    ASSERT_EQ(dump.status, 0) << dump.err.constData();
    const QJsonArray lines = QJsonDocument::fromJson(dump.out)["lines"].toArray();
    ASSERT_EQ(lines.size(), 5) << dump.out.constData();
    EXPECT_EQ(lines[0]["text"].toString(), QStringLiteral("Northwind Office Supplies Ltd"));
    EXPECT_EQ(lines[4]["page"].toInt(-1), 0);
    EXPECT_NEAR(lines[0]["rect"][0].toDouble(), 72.0 / 612, 1e-9);
    EXPECT_LT(lines[0]["rect"][1].toDouble(), 90.0 / 792); // the top of the text lies above its baseline

    const CliRun extracted = cli({QStringLiteral("--lines"), QStringLiteral("-")}, dump.out);
    ASSERT_EQ(extracted.status, 0) << extracted.err.constData();
    QString total;
    for (const QJsonValue field : QJsonDocument::fromJson(extracted.out)["fields"].toArray())
        if (field["key"] == QLatin1String("total"))
            total = field["value"].toString();
    EXPECT_EQ(total, QStringLiteral("49.80"));
}

// A file that cannot be read prints its message on standard error, nothing on standard output, status 1.
TEST(DumpLinesCli, FailureIsMessageAndStatusOne)
{
    QTemporaryDir dir;
    QFile corrupt(dir.filePath(QStringLiteral("broken.pdf")));
    corrupt.open(QIODevice::WriteOnly);
    corrupt.write("not a pdf");
    corrupt.close();
    for (const auto &[file, message] :
         {std::pair{corrupt.fileName(), "Can't open PDF"},
          {dir.filePath(QStringLiteral("gone.png")), "Can't open image"},
          {dir.filePath(QStringLiteral("notes.txt")), "Unsupported file type"}}) {
        const CliRun result = cli({QStringLiteral("--dump-lines"), file});
        EXPECT_EQ(result.status, 1) << message;
        EXPECT_TRUE(result.out.isEmpty()) << message;
        EXPECT_TRUE(result.err.contains(message)) << result.err.constData();
    }
}

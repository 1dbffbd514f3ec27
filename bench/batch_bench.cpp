// The kept batch: reopening 1,000 documents (target ≤ 1 s) and keeping one correction (target ≤ 5 ms),
// through the store as the window uses it.
#include "store/Store.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

/// A batch file of `count` read documents, each about as large as a real invoice's: 14 fields, 6 items
/// and 60 rows of text.
QString makeBatch(const QTemporaryDir &dir, int count)
{
    const QString path = dir.filePath(QStringLiteral("bench.tabrix"));
    auto opened = BatchFile::open(path);
    BatchFile &file = *std::get<BatchFile::Opened>(opened).file;
    QList<StoredDoc> docs;
    for (int n = 0; n < count; ++n) {
        StoredDoc doc;
        doc.id = QUuid::createUuid();
        doc.path = dir.filePath(QStringLiteral("doc%1.pdf").arg(n));
        doc.status = DocStatus::Ready;
        doc.approved = n % 4 == 0;
        for (int f = 0; f < 14; ++f) {
            Field field = emptyField(QStringLiteral("field%1").arg(f), QStringLiteral("Field %1").arg(f));
            field.value = QStringLiteral("Value %1 of document %2").arg(f).arg(n);
            field.confidence = 0.8;
            field.box = PageBox{0, QRectF(0.1, 0.05 * f, 0.3, 0.02)};
            doc.fields.append(field);
        }
        for (int i = 0; i < 6; ++i) {
            LineItem item;
            item.description = QStringLiteral("Item %1 with a longer description").arg(i);
            item.quantity = QStringLiteral("2");
            item.unitPrice = QStringLiteral("149.00");
            item.amount = QStringLiteral("298.00");
            item.box = PageBox{0, QRectF(0.1, 0.5 + 0.03 * i, 0.8, 0.02)};
            doc.items.append(item);
        }
        for (int r = 0; r < 60; ++r)
            doc.rows.append(
                Row(0, {TextLine{QStringLiteral("Row %1 of the invoice text, a typical line").arg(r),
                                 QRectF(0.1, 0.015 * r, 0.6, 0.012), 0}}));
        docs.append(doc);
    }
    file.insert(docs, 0);
    return path;
}

void BM_Reopen1000(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = makeBatch(dir, 1000);
    QTemporaryDir data;
    for (auto _ : state) {
        Store store(StoreOptions{data.path(), {}, nullptr, path});
        benchmark::DoNotOptimize(store.docs().size());
    }
}
BENCHMARK(BM_Reopen1000)->Unit(benchmark::kMillisecond);

void BM_KeepOneCorrection(benchmark::State &state)
{
    QTemporaryDir dir;
    const QString path = makeBatch(dir, 1000);
    QTemporaryDir data;
    Store store(StoreOptions{data.path(), {}, nullptr, path});
    const DocPtr doc = store.docs()[500];
    int n = 0;
    for (auto _ : state)
        doc->editField(QStringLiteral("field3"), QString::number(++n));
}
BENCHMARK(BM_KeepOneCorrection)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

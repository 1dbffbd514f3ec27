// Export speed on a large batch: 500 documents of 10 line items each.
#include "export/Csv.h"
#include "export/JsonExport.h"
#include "export/Xlsx.h"
#include "model/DocRecord.h"

#include <benchmark/benchmark.h>

namespace {

struct Batch {
    QList<DocRecord> docs;
    QList<CustomFieldDef> defs{{QUuid::createUuid(), QStringLiteral("PO"), QStringLiteral("PO"), false}};

    Batch()
    {
        for (int d = 0; d < 500; ++d) {
            QList<Field> fields;
            const char *keys[] = {"vendor",   "number",   "date", "dueDate",
                                  "currency", "subtotal", "tax",  "total"};
            for (const char *key : keys) {
                Field field;
                field.key = QString::fromLatin1(key);
                field.label = field.key;
                field.value = QStringLiteral("%1.50").arg(d * 7);
                field.confidence = 0.876;
                fields.append(field);
            }
            QList<LineItem> items;
            for (int i = 0; i < 10; ++i) {
                LineItem item;
                item.description = QStringLiteral("Item \"%1\", with comma & <markup>").arg(i);
                item.quantity = QString::number(i + 1);
                item.unitPrice = QStringLiteral("12.34");
                item.amount = QStringLiteral("%1.34").arg(12 * (i + 1));
                items.append(item);
            }
            docs.append({QStringLiteral("/batch/invoice-%1.pdf").arg(d), fields, items});
        }
    }
};

const Batch &batch()
{
    static const Batch instance;
    return instance;
}

void csvLineItems(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Exporter::csv(Exporter::lineItems(batch().docs)).toUtf8());
}

void json(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Exporter::json(batch().docs, batch().defs));
}

void xlsx(benchmark::State &state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(Exporter::xlsx(Exporter::workbookSheets(batch().docs, batch().defs)));
}

} // namespace

BENCHMARK(csvLineItems)->Unit(benchmark::kMillisecond);
BENCHMARK(json)->Unit(benchmark::kMillisecond);
BENCHMARK(xlsx)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();

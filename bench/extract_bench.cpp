// Extractor::extract on a realistic one-page invoice (~60 lines) and a 40-page document (~2,400 lines).
// Targets on the 2-core reference machine, full rules: at most 0.5 ms per page and 20 ms for the 40
// pages; the core rules' page is there to compare against.
#include "extract/Extractor.h"

#include <benchmark/benchmark.h>

namespace {

void add(QList<TextLine> &lines, int page, double x, double y, const QString &text, double w = 0.12)
{
    lines.append(TextLine{text, QRectF(x, y, w, 0.012), page});
}

QList<TextLine> invoicePage(int page, int itemCount)
{
    QList<TextLine> lines;
    add(lines, page, 0.08, 0.04, QStringLiteral("Northwind Office Supplies GmbH"), 0.4);
    add(lines, page, 0.08, 0.06, QStringLiteral("Hauptstrasse 12, 10115 Berlin"), 0.3);
    add(lines, page, 0.08, 0.08, QStringLiteral("VAT no. DE123456789"), 0.2);
    add(lines, page, 0.65, 0.04, QStringLiteral("INVOICE"), 0.2);
    add(lines, page, 0.65, 0.08, QStringLiteral("Invoice No: INV-2024-%1").arg(page + 1, 3, 10, QChar(u'0')));
    add(lines, page, 0.65, 0.10, QStringLiteral("Invoice Date: 03/04/2024"));
    add(lines, page, 0.65, 0.12, QStringLiteral("Due Date: 04/05/2024"));
    add(lines, page, 0.08, 0.16, QStringLiteral("Bill To"));
    add(lines, page, 0.08, 0.18, QStringLiteral("Contoso Ltd, 1 Market Street"), 0.3);
    add(lines, page, 0.08, 0.24, QStringLiteral("Description"));
    add(lines, page, 0.55, 0.24, QStringLiteral("Qty"), 0.05);
    add(lines, page, 0.65, 0.24, QStringLiteral("Unit price"), 0.1);
    add(lines, page, 0.80, 0.24, QStringLiteral("Amount"), 0.1);
    double subtotal = 0;
    for (int i = 0; i < itemCount; ++i) {
        const double y = 0.27 + 0.02 * i;
        const int qty = 1 + i % 4;
        const double price = 3.25 + i;
        subtotal += qty * price;
        add(lines, page, 0.08, y, QStringLiteral("Item %1 recycled paper, A4, 80 g").arg(i + 1), 0.35);
        add(lines, page, 0.55, y, QString::number(qty), 0.03);
        add(lines, page, 0.65, y, QString::number(price, 'f', 2), 0.08);
        add(lines, page, 0.80, y, QString::number(qty * price, 'f', 2), 0.08);
    }
    const double y = 0.29 + 0.02 * itemCount;
    add(lines, page, 0.65, y, QStringLiteral("Subtotal"));
    add(lines, page, 0.80, y, QString::number(subtotal, 'f', 2));
    add(lines, page, 0.65, y + 0.02, QStringLiteral("VAT 19%"));
    add(lines, page, 0.80, y + 0.02, QString::number(subtotal * 0.19, 'f', 2));
    add(lines, page, 0.65, y + 0.04, QStringLiteral("Total due"));
    add(lines, page, 0.80, y + 0.04, QStringLiteral("EUR %1").arg(subtotal * 1.19, 0, 'f', 2));
    add(lines, page, 0.08, 0.92, QStringLiteral("Terms: Net 30. Thank you for your business."), 0.5);
    return lines;
}

void BM_ExtractOnePage(benchmark::State &state)
{
    const QList<TextLine> lines = invoicePage(0, 11); // 60 lines
    for (auto _ : state)
        benchmark::DoNotOptimize(Extractor::extract(lines, {}, RuleSet::Full));
    state.counters["lines"] = double(lines.size());
}

void BM_ExtractOnePageCoreRules(benchmark::State &state)
{
    const QList<TextLine> lines = invoicePage(0, 11);
    for (auto _ : state)
        benchmark::DoNotOptimize(Extractor::extract(lines, {}, RuleSet::Core));
    state.counters["lines"] = double(lines.size());
}

void BM_ExtractFortyPages(benchmark::State &state)
{
    QList<TextLine> lines;
    for (int page = 0; page < 40; ++page)
        lines += invoicePage(page, 11);
    for (auto _ : state)
        benchmark::DoNotOptimize(Extractor::extract(lines, {}, RuleSet::Full));
    state.counters["lines"] = double(lines.size());
}

} // namespace

BENCHMARK(BM_ExtractOnePage)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ExtractOnePageCoreRules)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ExtractFortyPages)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();

// Intake speed against the command-line tools doing the same job on the same files:
//   DumpLines vs Pdftotext     whole processes reading the text layer of a 40-page digital PDF
//   LoadPdfRendered            the app's path: text and a 2400 px image per Letter page (ms_per_page)
//   Ocr vs TesseractCli        one rendered invoice page; the CLI with OMP_THREAD_LIMIT=1 (line_accuracy)
// Run: build/intake_bench --benchmark_repetitions=5 --benchmark_report_aggregates_only=true
#include "intake/Ocr.h"
#include "intake/Pipeline.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <sys/resource.h>

namespace {

const QStringList &invoiceLines()
{
    static const QStringList lines{"Harbour Light Stationers Ltd",
                                   "12 Quay Street, Bristol BS1 4DJ",
                                   "Invoice Number: HL-2024-0381",
                                   "Invoice Date: 14 May 2024",
                                   "Due Date: 13 June 2024",
                                   "Bill To: Fenwick & Sons Architects",
                                   "Description Qty Unit Price Amount",
                                   "A4 copier paper, 5 reams 4 23.50 94.00",
                                   "Gel pens, black, box of 12 2 8.75 17.50",
                                   "Lever arch files 10 2.10 21.00",
                                   "Desk organiser, walnut 1 34.99 34.99",
                                   "Subtotal 167.49",
                                   "VAT 20% 33.50",
                                   "Total Due GBP 200.99",
                                   "Payment by bank transfer within 30 days",
                                   "Thank you for your business"};
    return lines;
}

struct Files {
    QTemporaryDir dir;
    QString pdf;     // 40 digital Letter pages
    QString pagePng; // page 1 rendered at 2400 px, as given to the recogniser
    QImage pageImage;
};

double childCpuMs()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    auto ms = [](const timeval &t) { return t.tv_sec * 1000.0 + t.tv_usec / 1000.0; };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

void drawPage(QPainter &painter, int page)
{
    painter.setFont(QFont(QStringLiteral("DejaVu Sans"), 11));
    double y = 72;
    for (const QString &line : invoiceLines()) {
        painter.drawText(QPointF(60, y), line);
        y += 26;
    }
    painter.drawText(QPointF(60, 760), QStringLiteral("Page %1 of 40").arg(page + 1));
}

const Files &files()
{
    static Files *f = [] {
        auto *f = new Files;
        f->pdf = f->dir.filePath(QStringLiteral("invoices-40.pdf"));
        {
            QPdfWriter writer(f->pdf);
            writer.setResolution(72);
            writer.setPageSize(QPageSize(QPageSize::Letter));
            writer.setPageMargins(QMarginsF(0, 0, 0, 0));
            QPainter painter(&writer);
            for (int i = 0; i < 40; ++i) {
                if (i)
                    writer.newPage();
                drawPage(painter, i);
            }
        }
        const auto loaded = Pipeline::load(f->pdf, {}, {});
        f->pageImage = std::get<0>(loaded).first()->image;
        f->pagePng = f->dir.filePath(QStringLiteral("page.png"));
        f->pageImage.save(f->pagePng); // keeps the 218 ppi the page was rendered at
        return f;
    }();
    return *f;
}

// Whole processes, timed on the wall clock; child_cpu_ms is their processor time, steadier on a busy machine.
void runProcess(benchmark::State &state, const QString &program, const QStringList &args,
                const QProcessEnvironment &env = QProcessEnvironment::systemEnvironment())
{
    if (QStandardPaths::findExecutable(program).isEmpty() && !QFileInfo(program).isExecutable()) {
        state.SkipWithError("program not found");
        return;
    }
    const double before = childCpuMs();
    for (auto _ : state) {
        QProcess process;
        process.setProcessEnvironment(env);
        process.start(program, args);
        process.waitForFinished(-1);
        const QByteArray out = process.readAllStandardOutput();
        benchmark::DoNotOptimize(out.size());
        if (process.exitCode() != 0)
            state.SkipWithError("process failed");
    }
    state.counters["child_cpu_ms"] = (childCpuMs() - before) / double(state.iterations());
}

QString cliPath()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/tabrix-cli");
}

void DumpLines(benchmark::State &state)
{
    runProcess(state, cliPath(), {QStringLiteral("--dump-lines"), files().pdf});
}
BENCHMARK(DumpLines)->Unit(benchmark::kMillisecond)->UseRealTime();

void Pdftotext(benchmark::State &state)
{
    runProcess(state, QStringLiteral("pdftotext"),
               {QStringLiteral("-bbox-layout"), files().pdf, QStringLiteral("-")});
}
BENCHMARK(Pdftotext)->Unit(benchmark::kMillisecond)->UseRealTime();

// Arg: threads reading the pages (1: one core, as a batch of documents uses each; 0: all cores, as the app).
void LoadPdfRendered(benchmark::State &state)
{
    const QString pdf = files().pdf;
    Pipeline::LoadOptions options;
    options.threads = int(state.range(0));
    QElapsedTimer timer;
    timer.start();
    for (auto _ : state) {
        const auto pages = Pipeline::load(pdf, options, {});
        benchmark::DoNotOptimize(std::get<0>(pages).size());
    }
    state.counters["ms_per_page"] = double(timer.elapsed()) / (double(state.iterations()) * 40);
}
BENCHMARK(LoadPdfRendered)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();

double lineAccuracy(const QList<TextLine> &lines)
{
    int found = 0;
    for (const QString &expected : invoiceLines())
        found += std::any_of(lines.begin(), lines.end(),
                             [&](const TextLine &l) { return l.text.simplified() == expected; });
    return double(found) / invoiceLines().size();
}

void Ocr(benchmark::State &state)
{
    const QImage image = files().pageImage;
    benchmark::DoNotOptimize(Pipeline::ocr(image, 0)); // the engine is made once per thread
    QList<TextLine> lines;
    for (auto _ : state)
        lines = std::get<0>(Pipeline::ocr(image, 0));
    state.counters["line_accuracy"] = lineAccuracy(lines);
}
BENCHMARK(Ocr)->Unit(benchmark::kMillisecond)->UseRealTime();

void OcrWithEngineStart(benchmark::State &state)
{
    const QImage image = files().pageImage;
    for (auto _ : state) {
        auto engine = Ocr::createTesseract(Ocr::languages(), RuleSet::Full);
        benchmark::DoNotOptimize(engine->recognize(image, 0));
    }
}
BENCHMARK(OcrWithEngineStart)->Unit(benchmark::kMillisecond)->UseRealTime();

void TesseractCli(benchmark::State &state)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("OMP_THREAD_LIMIT"), QStringLiteral("1"));
    runProcess(state, QStringLiteral("tesseract"), {files().pagePng, QStringLiteral("-")}, env);
}
BENCHMARK(TesseractCli)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv); // fonts for drawing the fixture PDF
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

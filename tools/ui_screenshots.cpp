// Takes the README's screenshots of the desktop window: reads the bundled samples through the real
// pipeline and grabs the main states into a folder. Run by hand:
//   ninja -C build ui_screenshots && build/ui_screenshots docs samples/documents
// Uses a temporary folder for custom field definitions, so the user's own are never touched.
#include "model/Doubts.h"
#include "model/Money.h"
#include "store/Store.h"
#include "ui/CustomFieldsDialog.h"
#include "ui/DocumentPane.h"
#include "ui/FormPane.h"
#include "ui/MainWindow.h"
#include "ui/PageCanvas.h"
#include "ui/ReviewView.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QPainter>
#include <QScrollArea>
#include <QTemporaryDir>
#include <QThread>
#include <cstdio>

namespace {

// Runs the event loop until `done()` holds or `ms` pass; returns whether it held.
template <class Pred> bool waitFor(Pred done, int ms)
{
    QDeadlineTimer deadline(ms);
    while (!done()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
    return true;
}

void pause(int ms)
{
    waitFor([] { return false; }, ms);
}

bool save(const QPixmap &shot, const QString &folder, const QString &name)
{
    const QString path = folder + QLatin1Char('/') + name;
    if (!shot.save(path)) {
        std::fprintf(stderr, "ui_screenshots: cannot write %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

bool finished(const Store &store)
{
    return std::all_of(store.docs().cbegin(), store.docs().cend(), [](const DocPtr &d) {
        return d->status().kind() == DocStatus::Ready || d->status().kind() == DocStatus::Failed;
    });
}

DocPtr named(const Store &store, const QString &fileName)
{
    for (const DocPtr &d : store.docs()) {
        if (d->fileName() == fileName)
            return d;
    }
    return store.docs().value(0);
}

// The window dimmed, with the sheet laid over its upper middle, as it appears on screen.
QPixmap withSheet(QWidget &window, QWidget &sheet)
{
    QPixmap shot = window.grab();
    QPainter painter(&shot);
    painter.fillRect(shot.rect(), QColor(0, 0, 0, 60));
    const QPixmap sheetShot = sheet.grab();
    const QPoint at((shot.width() / shot.devicePixelRatio() - sheet.width()) / 2, 70);
    painter.fillRect(QRect(at + QPoint(-1, -1), sheet.size() + QSize(2, 2)), QColor(0, 0, 0, 90));
    painter.drawPixmap(at, sheetShot);
    return shot;
}

} // namespace

int main(int argc, char **argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (argc != 3) {
        std::fprintf(stderr, "usage: ui_screenshots OUTPUT-FOLDER SAMPLES-FOLDER\n");
        return 1;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    const QString samples = QFileInfo(QString::fromLocal8Bit(argv[2])).absoluteFilePath();
    QDir().mkpath(out);
    QTemporaryDir data;

    StoreOptions options;
    options.dataFolder = data.path();
    Store store(options);
    MainWindow window(store);
    window.resize(1440, 900);
    window.show();
    pause(200);
    bool ok = save(window.grab(), out, QStringLiteral("tabrix-empty.png"));

    store.add({samples});
    // While the scans are recognised: the first document is ready, later ones are in progress.
    waitFor(
        [&] {
            const auto &docs = store.docs();
            return docs.size() > 2 && docs[0]->status().kind() == DocStatus::Ready &&
                   std::any_of(docs.cbegin(), docs.cend(),
                               [](const DocPtr &d) { return d->status().isInProgress(); });
        },
        60000);
    pause(50);
    ok = save(window.grab(), out, QStringLiteral("tabrix-reading.png")) && ok;

    if (!waitFor([&] { return finished(store); }, 180000)) {
        std::fprintf(stderr, "ui_screenshots: the samples were not read in time\n");
        return 1;
    }
    for (const QString &name :
         {QStringLiteral("atelier-invoice-scan.png"), QStringLiteral("corner-bakery-receipt.jpg")})
        named(store, name)->setApproved(true);
    store.setSelectedID(named(store, QStringLiteral("northwind-invoice.pdf"))->id());
    pause(50);
    if (ReviewView *review = window.review(); review && review->formPane()) {
        if (QLineEdit *total = review->formPane()->fieldEdit(QStringLiteral("total")))
            total->setFocus();
    }
    pause(100);
    ok = save(window.grab(), out, QStringLiteral("tabrix-review.png")) && ok;

    // The same page zoomed in, scrolled to the focused total.
    if (ReviewView *review = window.review(); review && review->documentPane()) {
        DocumentPane *pane = review->documentPane();
        pane->zoom(+4);
        pause(50);
        const DocPtr shown = review->doc();
        for (const Field &f : shown->fields()) {
            if (f.key == QLatin1String("total") && f.box) {
                const QRectF at = pane->canvas()->pageTransform().mapRect(f.box->rect);
                pane->pageScroll()->ensureVisible(int(at.center().x()), int(at.center().y()), 200, 200);
            }
        }
        pause(100);
        ok = save(window.grab(), out, QStringLiteral("tabrix-zoomed.png")) && ok;
        pane->setFit(DocumentPane::Fit::Page);
    }

    // A document whose amounts do not add up: one of the samples if the reading doubts one, else the
    // scanned invoice with 90 added to its total, as one misread digit would.
    DocPtr doubtful;
    for (const DocPtr &d : store.docs()) {
        if (!d->approved() && !Doubts::of(d->fields(), d->items()).isEmpty())
            doubtful = d;
    }
    if (!doubtful) {
        doubtful = named(store, QStringLiteral("northwind-invoice-scanned.pdf"));
        QList<Field> fields = doubtful->fields();
        for (Field &f : fields) {
            if (const auto total = Money::parse(f.value); f.key == QLatin1String("total") && total)
                f.value = Money::twoDecimals(*total + 90.0);
        }
        doubtful->setFields(fields);
    }
    store.setSelectedID(doubtful->id());
    pause(100);
    ok = save(window.grab(), out, QStringLiteral("tabrix-flagged.png")) && ok;

    CustomFieldDef po;
    po.name = QStringLiteral("PO number");
    po.pattern = QStringLiteral("PO");
    CustomFieldDef order;
    order.name = QStringLiteral("Order ref");
    order.pattern = QStringLiteral("ORD-(\\d+");
    order.isRegex = true;
    store.setCustomFields({po, order});
    window.showCustomFields();
    pause(100);
    if (CustomFieldsDialog *sheet = window.customFieldsDialog())
        ok = save(withSheet(window, *sheet), out, QStringLiteral("tabrix-custom-fields.png")) && ok;
    return ok ? 0 : 1;
}

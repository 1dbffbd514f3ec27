// The desktop application: one window over one store. `tabrix [PATH...]` adds the given files and
// folders as a drop would.
#include "intake/DecoderWarnings.h"
#include "store/Store.h"
#include "ui/DialogStoreUi.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QUrl>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    Pipeline::quietDecoderWarnings();
    QApplication::setApplicationName(QStringLiteral("Tabrix"));
    QApplication::setApplicationDisplayName(QStringLiteral("Tabrix"));
    // The installed desktop entry and icon (app/linux) are named "tabrix".
    QGuiApplication::setDesktopFileName(QStringLiteral("tabrix"));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("tabrix")));

    DialogStoreUi dialogs;
    StoreOptions options;
    options.ui = &dialogs;
    options.batchFile = Store::keptBatchPath();
    Store store(options);
    MainWindow window(store);
    dialogs.setWindow(&window);
    window.restoreLayout(QSize(1440, 900));
    window.show();
    window.raise();
    window.activateWindow();

    // QApplication has taken its own options out of argv; the rest are paths.
    QList<QUrl> urls;
    for (int i = 1; i < argc; ++i)
        urls.append(QUrl::fromLocalFile(QFileInfo(QString::fromLocal8Bit(argv[i])).absoluteFilePath()));
    if (!urls.isEmpty())
        store.handleDrop(urls);

    return app.exec();
}

// The desktop application: one window over one store. `tabrix [PATH...]` adds the given files and
// folders as a drop would.
#include "intake/DecoderWarnings.h"
#include "store/Store.h"
#include "ui/DialogStoreUi.h"
#include "ui/MainWindow.h"

#include <QApplication>
#include <QFileInfo>
#include <QIcon>
#include <QScreen>
#include <QTimer>
#include <QUrl>

namespace {

// For looking at the real window from a script: TABRIX_SCREENSHOT=FILE.png saves the screen after
// TABRIX_SCREENSHOT_DELAY milliseconds (default 5000) and quits.
void scheduleScreenshot(QWidget &window)
{
    const QString file = qEnvironmentVariable("TABRIX_SCREENSHOT");
    if (file.isEmpty())
        return;
    bool ok = false;
    int delay = qEnvironmentVariableIntValue("TABRIX_SCREENSHOT_DELAY", &ok);
    if (!ok)
        delay = 5000;
    QTimer::singleShot(delay, &window, [&window, file] {
        QScreen *screen = window.screen();
        const QPixmap shot = screen ? screen->grabWindow(0) : window.grab();
        shot.save(file);
        QApplication::quit();
    });
}

} // namespace

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

    scheduleScreenshot(window);
    return app.exec();
}

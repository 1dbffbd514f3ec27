#pragma once

#include "store/StoreUi.h"

#include <QPointer>
#include <QWidget>

/// The store's file choosers, questions and clipboard for the desktop: Qt file dialogs and message
/// boxes over the main window, and the system clipboard. The dialogs run modally (the store waits for
/// the answer).
class DialogStoreUi : public StoreUi {
public:
    /// `window` parents the dialogs; it may be set later, and may be null (dialogs then stand alone).
    explicit DialogStoreUi(QWidget *window = nullptr) : m_window(window) {}

    void setWindow(QWidget *window) { m_window = window; }

    QStringList chooseFilesAndFolders(const QString &message) override;
    QString chooseFileToOpen(const QString &filter) override;
    QString chooseFileToSave(const QString &proposedName, const QString &filter) override;
    void setClipboardText(const QString &text) override;
    bool confirm(const QString &question, const QString &detail, const QString &action) override;

private:
    QWidget *parentForDialogs() const;
    QString startFolder() const;
    void remember(const QString &path);

    QPointer<QWidget> m_window;
    QString m_lastFolder;
};

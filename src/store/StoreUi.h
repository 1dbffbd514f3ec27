#pragma once

#include <QString>
#include <QStringList>

/// The few things the store asks of a person: file choosers, yes-or-no questions and the clipboard. The
/// desktop application answers with real dialogs; tests answer with prepared values; without one the store
/// behaves as if every dialog were cancelled. Every call is made on the main thread and may block
/// (dialogs are modal).
class StoreUi {
public:
    virtual ~StoreUi() = default;

    /// An open dialog for files and folders, several at once, showing `message`. Returns the chosen
    /// paths in the dialog's order, or nothing when the user cancels.
    virtual QStringList chooseFilesAndFolders(const QString &message) = 0;

    /// An open dialog for one existing file of the kind described by `filter` (a Qt name filter such as
    /// "JSON (*.json)"). Returns its path, or an empty string when the user cancels.
    virtual QString chooseFileToOpen(const QString &filter) = 0;

    /// A save dialog restricted to `filter`, with `proposedName` preset. Returns the chosen path, or an
    /// empty string when the user cancels. Confirming overwrites are the dialog's business.
    virtual QString chooseFileToSave(const QString &proposedName, const QString &filter) = 0;

    /// Replaces the clipboard's contents with plain `text`.
    virtual void setClipboardText(const QString &text) = 0;

    /// Asks before something that loses work: `question` as the title line, `detail` below it, a button
    /// labelled `action` that goes ahead and a "Cancel" that is the default. Returns true only when the
    /// person chose `action`. Without an answer (this default) nothing is lost.
    virtual bool confirm(const QString & /*question*/, const QString & /*detail*/, const QString & /*action*/)
    {
        return false;
    }
};

#include "DialogStoreUi.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFileSystemModel>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>

namespace {

// Qt's file dialog picks either files or one folder. This one takes any mix of files and folders: "Open"
// accepts the selection as it is instead of entering a selected folder (double-click still enters it).
class FilesAndFoldersDialog : public QFileDialog {
public:
    using QFileDialog::QFileDialog;

    QStringList chosen;

    void accept() override
    {
        QStringList paths;
        if (auto *view = findChild<QListView *>(QStringLiteral("listView"))) {
            const QModelIndexList rows = view->selectionModel()->selectedRows();
            for (const QModelIndex &index : rows)
                paths.append(index.data(QFileSystemModel::FilePathRole).toString());
        }
        if (paths.isEmpty())
            paths = selectedFiles();
        paths.removeIf([](const QString &p) { return p.isEmpty() || !QFileInfo::exists(p); });
        if (paths.isEmpty()) {
            QFileDialog::accept();
            return;
        }
        chosen = paths;
        QDialog::accept(); // NOLINT(bugprone-parent-virtual-call): QFileDialog's would refuse folders
    }
};

} // namespace

QWidget *DialogStoreUi::parentForDialogs() const
{
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    return m_window;
}

QString DialogStoreUi::startFolder() const
{
    if (!m_lastFolder.isEmpty())
        return m_lastFolder;
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void DialogStoreUi::remember(const QString &path)
{
    if (!path.isEmpty())
        m_lastFolder = QFileInfo(path).absolutePath();
}

QStringList DialogStoreUi::chooseFilesAndFolders(const QString &message)
{
    FilesAndFoldersDialog dialog(parentForDialogs(), message, startFolder());
    dialog.setObjectName(QStringLiteral("chooseFilesAndFolders"));
    // The platform's own dialogs cannot take files and folders at once.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setFileMode(QFileDialog::ExistingFiles);
    dialog.setLabelText(QFileDialog::Accept, QObject::tr("Open"));
    if (dialog.exec() != QDialog::Accepted)
        return {};
    if (!dialog.chosen.isEmpty())
        remember(dialog.chosen.constFirst());
    return dialog.chosen.isEmpty() ? dialog.selectedFiles() : dialog.chosen;
}

QString DialogStoreUi::chooseFileToOpen(const QString &filter)
{
    QFileDialog dialog(parentForDialogs(), QString(), startFolder(), filter);
    dialog.setObjectName(QStringLiteral("chooseFileToOpen"));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    QString path = dialog.selectedFiles().constFirst();
    remember(path);
    return path;
}

QString DialogStoreUi::chooseFileToSave(const QString &proposedName, const QString &filter)
{
    QFileDialog dialog(parentForDialogs(), QString(), startFolder(), filter);
    dialog.setObjectName(QStringLiteral("chooseFileToSave"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(QFileInfo(proposedName).suffix());
    dialog.selectFile(proposedName);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    QString path = dialog.selectedFiles().constFirst();
    remember(path);
    return path;
}

void DialogStoreUi::setClipboardText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

bool DialogStoreUi::confirm(const QString &question, const QString &detail, const QString &action)
{
    QMessageBox box(QMessageBox::Warning, QApplication::applicationDisplayName(), question,
                    QMessageBox::NoButton, parentForDialogs());
    box.setObjectName(QStringLiteral("confirm"));
    box.setInformativeText(detail);
    QPushButton *go = box.addButton(action, QMessageBox::DestructiveRole);
    QPushButton *cancel = box.addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
    // Return, Space on the focused button and Escape all keep the work.
    box.setDefaultButton(cancel);
    box.setEscapeButton(cancel);
    cancel->setFocus();
    box.exec();
    return box.clickedButton() == go;
}

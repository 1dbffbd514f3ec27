#pragma once

#include "CustomFieldsDialog.h"
#include "store/Store.h"

#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>

class DropHighlight;
class QComboBox;
class QMenu;
class QSplitter;
class QStackedWidget;
class QToolBar;
class QToolButton;
class ReviewView;
class SidebarView;

/// The one window of the application: the queue at the left, the review screen (or the empty state)
/// at the right, the "File" and "Review" menus and the toolbar. It takes drops of files and folders anywhere,
/// shows every message of the store in an alert titled "Tabrix", and opens the custom fields sheet.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(Store &store, QWidget *parent = nullptr);
    ~MainWindow() override;

    SidebarView *sidebar() const { return m_sidebar; }
    /// The review screen of the selected document, or null when none is selected.
    ReviewView *review() const { return m_review; }
    /// The custom fields sheet while it is open.
    CustomFieldsDialog *customFieldsDialog() const { return m_customFields; }
    /// The alert on screen, if any.
    QMessageBox *alert() const { return m_alert; }

    /// Opens the custom fields sheet (the "Custom Fields" toolbar button).
    void showCustomFields();

    /// Sizes the window as the last run left it, else to `preferred`, clamped to the available area of
    /// its screen and centred there when new; restores the splitter positions too. Read from QSettings
    /// ("Tabrix", "Tabrix"), written by a close that goes ahead.
    void restoreLayout(const QSize &preferred);
    /// `size` shrunk to fit `available` (a screen's available geometry) with room for a title bar.
    static QSize fitted(const QSize &size, const QRect &available);
    /// The least size of the window's content on a screen whose available area is `available`, when
    /// `chrome` (frame, title, menu and tool bars) takes the rest: as much as the panes want, as little as
    /// the screen leaves.
    static QSize contentMinimum(const QRect &available, const QSize &chrome);
    /// The splitter between the queue and the review side.
    QSplitter *splitter() const { return m_split; }

    /// Gives keyboard focus to a place where no key loses work: the form of the document under review
    /// (itself, not one of its boxes), else the review screen, else the queue, else the empty state.
    void focusWork();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    /// Asks the store first (Store::mayQuit); an answer of "Cancel" keeps the window open.
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void buildMenu();
    void buildToolBar();
    void showSelected();
    void showAlert();
    void saveLayout() const;
    /// Sets the content's least size for the screen the window is on.
    void followScreen();
    bool handleDragEvent(QEvent *event);

    Store &m_store;
    SidebarView *m_sidebar;
    QWidget *m_content;
    QToolBar *m_toolBar = nullptr;
    QSplitter *m_split;
    QStackedWidget *m_right;
    QWidget *m_empty;
    ReviewView *m_review = nullptr;
    DropHighlight *m_dropHighlight;
    QComboBox *m_layoutPicker = nullptr;
    QMenu *m_exportMenu = nullptr; // in the File menu and behind the toolbar's Export button
    QPointer<CustomFieldsDialog> m_customFields;
    QPointer<QMessageBox> m_alert;
    QByteArray m_reviewSplit;
};

#include "MainWindow.h"

#include "CustomFieldsDialog.h"
#include "DropHighlight.h"
#include "EmptyStateView.h"
#include "FormPane.h"
#include "Icons.h"
#include "ReviewView.h"
#include "SafeFocus.h"
#include "SidebarView.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QWindow>

namespace {

// Only drags that carry at least one local file are offered to the store.
bool hasFiles(const QMimeData *mime)
{
    if (!mime || !mime->hasUrls())
        return false;
    const QList<QUrl> urls = mime->urls();
    return std::any_of(urls.cbegin(), urls.cend(), [](const QUrl &url) { return url.isLocalFile(); });
}

} // namespace

MainWindow::MainWindow(Store &store, QWidget *parent) : QMainWindow(parent), m_store(store)
{
    setWindowTitle(QStringLiteral("Tabrix"));
    setAcceptDrops(true);

    auto *content = new QWidget;
    m_content = content;
    auto *layout = new QHBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *split = new QSplitter(Qt::Horizontal);
    split->setObjectName(QStringLiteral("mainSplit"));
    split->setChildrenCollapsible(false);
    split->setHandleWidth(1);
    m_split = split;
    m_sidebar = new SidebarView(store);
    // On a short screen the summary and the privacy note scroll into view instead of being cut off.
    auto *sidebarScroll = new QScrollArea;
    sidebarScroll->setObjectName(QStringLiteral("sidebarScroll"));
    sidebarScroll->setWidget(m_sidebar);
    sidebarScroll->setWidgetResizable(true);
    sidebarScroll->setFrameShape(QFrame::NoFrame);
    sidebarScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    sidebarScroll->setMinimumWidth(240);
    sidebarScroll->setMaximumWidth(400);
    m_right = new QStackedWidget;
    m_right->setMinimumWidth(500);
    m_empty = new EmptyStateView(store);
    m_right->addWidget(m_empty);
    split->addWidget(sidebarScroll);
    split->addWidget(m_right);
    split->setStretchFactor(0, 0);
    split->setStretchFactor(1, 1);
    split->setSizes({310, 1000});
    layout->addWidget(split);
    setCentralWidget(content);
    m_dropHighlight = new DropHighlight(content);

    buildMenu();
    buildToolBar();
    followScreen();
    connect(new SafeFocus::Home(this), &SafeFocus::Home::stranded, this, &MainWindow::focusWork);

    // Drags are watched for every widget of this window: text boxes would otherwise take a dragged
    // file as text, and the drop is meant for the whole window.
    qApp->installEventFilter(this);

    connect(&store, &Store::selectionChanged, this, &MainWindow::showSelected);
    connect(&store, &Store::docsChanged, this, &MainWindow::showSelected);
    connect(&store, &Store::alertTextChanged, this, &MainWindow::showAlert);
    connect(&store, &Store::targetedChanged, this, [this] {
        m_dropHighlight->setVisible(m_store.isTargeted());
        m_dropHighlight->raise();
    });
    showSelected();
}

MainWindow::~MainWindow()
{
    qApp->removeEventFilter(this);
}

void MainWindow::buildMenu()
{
    QMenu *file = menuBar()->addMenu(QStringLiteral("File"));
    file->setObjectName(QStringLiteral("fileMenu"));
    QAction *open = file->addAction(Icons::icon(QStringLiteral("plus")), QStringLiteral("Open\u2026"));
    open->setObjectName(QStringLiteral("open"));
    open->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_O));
    connect(open, &QAction::triggered, &m_store, &Store::openPanel);
    // Commands on whole batches go after this separator.
    file->addSeparator()->setObjectName(QStringLiteral("batchCommands"));
    m_exportMenu =
        file->addMenu(Icons::icon(QStringLiteral("square.and.arrow.up")), QStringLiteral("Export"));
    m_exportMenu->setObjectName(QStringLiteral("exportMenu"));
    const struct {
        const char *name;
        QString text;
        void (Store::*run)();
    } exports[] = {{"exportCSV", QStringLiteral("CSV\u2026"), &Store::exportCSV},
                   {"exportJSON", QStringLiteral("JSON\u2026"), &Store::exportJSON},
                   {"exportXLSX", QStringLiteral("Excel (.xlsx)\u2026"), &Store::exportXLSX}};
    for (const auto &entry : exports) {
        QAction *action = m_exportMenu->addAction(entry.text);
        action->setObjectName(QLatin1String(entry.name));
        connect(action, &QAction::triggered, &m_store, entry.run);
    }
    file->addSeparator();
    QAction *quit = file->addAction(QStringLiteral("Quit"));
    quit->setObjectName(QStringLiteral("quit"));
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    quit->setMenuRole(QAction::QuitRole);
    // Through the window's close, which asks before unexported approvals are lost.
    connect(quit, &QAction::triggered, this, &QWidget::close);

    QMenu *review = menuBar()->addMenu(QStringLiteral("Review"));
    QAction *next = review->addAction(QStringLiteral("Next Document"));
    next->setObjectName(QStringLiteral("nextDocument"));
    next->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_BracketRight));
    QAction *previous = review->addAction(QStringLiteral("Previous Document"));
    previous->setObjectName(QStringLiteral("previousDocument"));
    previous->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_BracketLeft));
    review->addSeparator();
    QAction *approve = review->addAction(QStringLiteral("Approve and Next"));
    approve->setObjectName(QStringLiteral("approveAndNext"));
    approve->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
    // The shortcuts work wherever focus is in the window, text boxes included.
    for (QAction *action : {open, quit, next, previous, approve})
        action->setShortcutContext(Qt::WindowShortcut);
    connect(next, &QAction::triggered, this, [this] { m_store.move(+1); });
    connect(previous, &QAction::triggered, this, [this] { m_store.move(-1); });
    connect(approve, &QAction::triggered, &m_store, &Store::approveAndNext);
}

void MainWindow::buildToolBar()
{
    QToolBar *bar = addToolBar(QStringLiteral("Toolbar"));
    m_toolBar = bar;
    bar->setObjectName(QStringLiteral("toolbar"));
    bar->setMovable(false);
    bar->setFloatable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    bar->setIconSize(QSize(18, 18));
    bar->toggleViewAction()->setVisible(false);

    QAction *add = bar->addAction(Icons::icon(QStringLiteral("plus")), QStringLiteral("Add Files"));
    add->setObjectName(QStringLiteral("addFiles"));
    add->setToolTip(QStringLiteral("Add files or folders"));
    connect(add, &QAction::triggered, &m_store, &Store::openPanel);
    bar->addSeparator();

    auto *picker = new QWidget;
    auto *pickerLayout = new QHBoxLayout(picker);
    pickerLayout->setContentsMargins(6, 0, 6, 0);
    pickerLayout->setSpacing(6);
    auto *rowsLabel = new QLabel(QStringLiteral("Rows"));
    m_layoutPicker = new QComboBox;
    m_layoutPicker->setObjectName(QStringLiteral("rowsPicker"));
    for (RowLayout layout : allRowLayouts())
        m_layoutPicker->addItem(rowLayoutCaption(layout), QVariant::fromValue(int(layout)));
    const QString pickerTip = QStringLiteral("Layout used for CSV and TSV");
    picker->setToolTip(pickerTip);
    m_layoutPicker->setToolTip(pickerTip);
    rowsLabel->setBuddy(m_layoutPicker);
    pickerLayout->addWidget(rowsLabel);
    pickerLayout->addWidget(m_layoutPicker);
    bar->addWidget(picker);
    connect(m_layoutPicker, &QComboBox::currentIndexChanged, this,
            [this](int index) { m_store.setLayout(RowLayout(m_layoutPicker->itemData(index).toInt())); });
    const auto showLayout = [this] {
        m_layoutPicker->setCurrentIndex(m_layoutPicker->findData(int(m_store.layout())));
    };
    connect(&m_store, &Store::layoutChanged, m_layoutPicker, showLayout);
    showLayout();

    QAction *copy =
        bar->addAction(Icons::icon(QStringLiteral("doc.on.clipboard")), QStringLiteral("Copy as TSV"));
    copy->setObjectName(QStringLiteral("copyTSV"));
    copy->setToolTip(QStringLiteral("Copy approved documents as tab-separated text"));
    connect(copy, &QAction::triggered, &m_store, &Store::copyTSV);

    auto *exportButton = new QToolButton;
    exportButton->setObjectName(QStringLiteral("export"));
    exportButton->setText(QStringLiteral("Export"));
    exportButton->setIcon(Icons::icon(QStringLiteral("square.and.arrow.up")));
    exportButton->setToolTip(QStringLiteral("Export approved documents"));
    exportButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    exportButton->setPopupMode(QToolButton::InstantPopup);
    // The style draws a menu's arrow under a button's label; it belongs beside it.
    exportButton->setStyleSheet(QStringLiteral(
        "QToolButton#export { padding-right: 16px; }"
        "QToolButton#export::menu-indicator { subcontrol-origin: padding; subcontrol-position: center right; "
        "right: 3px; }"));
    exportButton->setMenu(m_exportMenu);
    bar->addWidget(exportButton);

    QAction *custom =
        bar->addAction(Icons::icon(QStringLiteral("slider.horizontal.3")), QStringLiteral("Custom Fields"));
    custom->setObjectName(QStringLiteral("customFields"));
    custom->setToolTip(QStringLiteral("Define custom fields"));
    connect(custom, &QAction::triggered, this, &MainWindow::showCustomFields);
}

void MainWindow::showSelected()
{
    const DocPtr selected = m_store.selected();
    if (m_review && selected && m_review->doc() == selected)
        return;
    // A different document gets a review screen of its own, built from scratch.
    if (m_review) {
        m_right->removeWidget(m_review);
        m_review->deleteLater();
        m_review = nullptr;
    }
    if (selected) {
        m_review = new ReviewView(m_store, selected);
        m_review->setSplitState(m_reviewSplit);
        connect(m_review, &ReviewView::splitMoved, this,
                [this](const QByteArray &state) { m_reviewSplit = state; });
        m_right->addWidget(m_review);
        m_right->setCurrentWidget(m_review);
    } else {
        m_right->setCurrentWidget(m_empty);
    }
}

void MainWindow::showAlert()
{
    const QString text = m_store.alertText();
    if (text.isEmpty()) {
        if (m_alert)
            m_alert->close();
        return;
    }
    if (m_alert) {
        m_alert->setText(text);
        return;
    }
    QWidget *owner = QApplication::activeModalWidget() ? QApplication::activeModalWidget() : this;
    m_alert =
        new QMessageBox(QMessageBox::NoIcon, QStringLiteral("Tabrix"), text, QMessageBox::NoButton, owner);
    // A button of our own: the style's standard one carries a stock icon.
    m_alert->setDefaultButton(m_alert->addButton(QStringLiteral("OK"), QMessageBox::AcceptRole));
    m_alert->setObjectName(QStringLiteral("alert"));
    m_alert->setAttribute(Qt::WA_DeleteOnClose);
    m_alert->setWindowModality(Qt::WindowModal);
    connect(m_alert, &QMessageBox::finished, this, [this] { m_store.clearAlert(); });
    m_alert->open();
}

namespace {

QSettings layoutSettings()
{
    return QSettings(QStringLiteral("Tabrix"), QStringLiteral("Tabrix"));
}

} // namespace

QSize MainWindow::fitted(const QSize &size, const QRect &available)
{
    // The size set is the inside of the window: leave room for its frame and title bar.
    return size.boundedTo(available.size() - QSize(16, 48)).expandedTo(QSize(1, 1));
}

QSize MainWindow::contentMinimum(const QRect &available, const QSize &chrome)
{
    // The queue and a readable form side by side where there is room; on a small or scaled screen
    // (1366 × 768 at 150 % leaves about 910 × 480) the panes scroll instead of pushing the window off it.
    const QSize wanted(760, 480);
    return wanted.boundedTo(available.size() - chrome).expandedTo(QSize(480, 240));
}

void MainWindow::followScreen()
{
    const QScreen *screen = this->screen();
    if (!screen)
        return;
    // Room for the frame and title bar, the menu bar and the toolbar.
    const int bars = menuBar()->sizeHint().height() + m_toolBar->sizeHint().height();
    m_content->setMinimumSize(contentMinimum(screen->availableGeometry(), QSize(16, 48 + bars)));
}

void MainWindow::showEvent(QShowEvent *event)
{
    QMainWindow::showEvent(event);
    if (QWindow *handle = windowHandle())
        connect(handle, &QWindow::screenChanged, this, &MainWindow::followScreen, Qt::UniqueConnection);
    followScreen();
}

void MainWindow::restoreLayout(const QSize &preferred)
{
    followScreen();
    QSettings settings = layoutSettings();
    const bool restored = restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
    if (const QScreen *screen = this->screen()) {
        const QRect available = screen->availableGeometry();
        resize(fitted(restored ? size() : preferred, available).expandedTo(minimumSizeHint()));
        if (!restored)
            move(available.center() - QPoint(width() / 2, height() / 2 + 16));
    }
    // After the size: the splitters share out the width they will have.
    m_split->restoreState(settings.value(QStringLiteral("window/mainSplit")).toByteArray());
    m_reviewSplit = settings.value(QStringLiteral("window/reviewSplit")).toByteArray();
    if (m_review)
        m_review->setSplitState(m_reviewSplit);
}

void MainWindow::saveLayout() const
{
    QSettings settings = layoutSettings();
    settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("window/mainSplit"), m_split->saveState());
    if (!m_reviewSplit.isEmpty())
        settings.setValue(QStringLiteral("window/reviewSplit"), m_reviewSplit);
}

void MainWindow::focusWork()
{
    if (m_review && m_review->formPane() && m_review->formPane()->isVisible())
        m_review->formPane()->setFocus(Qt::OtherFocusReason);
    else if (m_review)
        m_review->setFocus(Qt::OtherFocusReason);
    else if (m_sidebar->queueView()->isVisible())
        m_sidebar->queueView()->setFocus(Qt::OtherFocusReason);
    else
        m_empty->setFocus(Qt::OtherFocusReason);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_store.mayQuit()) {
        event->ignore();
        return;
    }
    saveLayout();
    QMainWindow::closeEvent(event);
}

void MainWindow::showCustomFields()
{
    if (m_customFields) {
        m_customFields->raise();
        return;
    }
    m_customFields = new CustomFieldsDialog(m_store, this);
    m_customFields->setAttribute(Qt::WA_DeleteOnClose);
    m_customFields->open();
}

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::DragLeave:
    case QEvent::Drop:
        if (auto *widget = qobject_cast<QWidget *>(watched); widget && widget->window() == this)
            return handleDragEvent(event);
        break;
    default:
        break;
    }
    return QMainWindow::eventFilter(watched, event);
}

bool MainWindow::handleDragEvent(QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto *drag = static_cast<QDragMoveEvent *>(event);
        if (!hasFiles(drag->mimeData()))
            return false; // other drags (text between boxes) go on as usual
        drag->setDropAction(Qt::CopyAction);
        drag->accept();
        m_store.setTargeted(true);
        return true;
    }
    case QEvent::DragLeave:
        m_store.setTargeted(false);
        return false;
    case QEvent::Drop: {
        auto *drop = static_cast<QDropEvent *>(event);
        m_store.setTargeted(false);
        if (!hasFiles(drop->mimeData()))
            return false;
        drop->setDropAction(Qt::CopyAction);
        drop->accept();
        m_store.handleDrop(drop->mimeData()->urls());
        return true;
    }
    default:
        return false;
    }
}

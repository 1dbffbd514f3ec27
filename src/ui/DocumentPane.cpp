#include "DocumentPane.h"

#include "Icons.h"
#include "Outlines.h"
#include "PageCanvas.h"
#include "SafeFocus.h"
#include "Theme.h"

#include <QAction>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace {

// A small filled square in an outline colour, for the legend.
QLabel *swatch(const QColor &color)
{
    QPixmap pm(12, 12);
    pm.fill(Qt::transparent);
    QPainter painter(&pm);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, 1.5));
    painter.setBrush(Theme::faded(color, 0.2));
    painter.drawRoundedRect(QRectF(1, 1, 10, 10), 2, 2);
    painter.end();
    auto *label = new QLabel;
    label->setPixmap(pm);
    return label;
}

} // namespace

DocumentPane::DocumentPane(Store &store, const DocPtr &doc, QWidget *parent)
    : QWidget(parent), m_store(store), m_doc(doc)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->setSpacing(6);

    auto *top = new QHBoxLayout;
    m_pageNav = new QWidget;
    auto *nav = new QHBoxLayout(m_pageNav);
    nav->setContentsMargins(0, 0, 0, 0);
    nav->setSpacing(4);
    m_previous = new QToolButton;
    m_previous->setObjectName(QStringLiteral("previousPage"));
    m_previous->setIcon(Icons::icon(QStringLiteral("chevron.left")));
    m_previous->setAutoRaise(true);
    m_next = new QToolButton;
    m_next->setObjectName(QStringLiteral("nextPage"));
    m_next->setIcon(Icons::icon(QStringLiteral("chevron.right")));
    m_next->setAutoRaise(true);
    m_pageText = new QLabel;
    m_pageText->setObjectName(QStringLiteral("pageText"));
    nav->addWidget(m_previous);
    nav->addWidget(m_pageText);
    nav->addWidget(m_next);
    top->addWidget(m_pageNav);
    top->addStretch();
    // Page tools: zoom, fits and the turn. Their shortcuts work wherever focus is in the window, so the
    // page can be read closer while a value is typed.
    const auto tool = [&](const char *name, const QString &text, const QString &tip, const QKeySequence &keys,
                          auto slot) {
        auto *action = new QAction(text, this);
        action->setObjectName(QLatin1String(name));
        action->setShortcut(keys);
        action->setShortcutContext(Qt::WindowShortcut);
        action->setToolTip(
            tip + (keys.isEmpty()
                       ? QString()
                       : QStringLiteral(" (") + keys.toString(QKeySequence::NativeText) + QLatin1Char(')')));
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
        auto *button = new QToolButton;
        button->setDefaultAction(action);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        top->addWidget(button);
        return action;
    };
    tool("zoomOut", QStringLiteral("\u2212"), QStringLiteral("Zoom out"),
         QKeySequence(Qt::CTRL | Qt::Key_Minus), [this] { zoom(-1); });
    m_zoomText = new QLabel;
    m_zoomText->setObjectName(QStringLiteral("zoomText"));
    m_zoomText->setFont(Theme::caption());
    m_zoomText->setMinimumWidth(m_zoomText->fontMetrics().horizontalAdvance(QStringLiteral("1000%")));
    m_zoomText->setAlignment(Qt::AlignCenter);
    top->addWidget(m_zoomText);
    QAction *zoomIn = tool("zoomIn", QStringLiteral("+"), QStringLiteral("Zoom in"),
                           QKeySequence(Qt::CTRL | Qt::Key_Plus), [this] { zoom(+1); });
    // Ctrl and the "=" key beside "-" too: "+" needs Shift on many keyboards.
    zoomIn->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)});
    tool("fitWidth", QStringLiteral("Fit width"), QStringLiteral("Fit the page's width"),
         QKeySequence(Qt::CTRL | Qt::Key_9), [this] { setFit(Fit::Width); });
    tool("fitPage", QStringLiteral("Fit page"), QStringLiteral("Show the whole page"),
         QKeySequence(Qt::CTRL | Qt::Key_0), [this] { setFit(Fit::Page); });
    tool("rotate", QStringLiteral("Rotate"), QStringLiteral("Turn the page a quarter turn clockwise"),
         QKeySequence(Qt::CTRL | Qt::Key_R), [this] { rotate(); });
    top->addSpacing(8);
    m_toggle = new QCheckBox(QStringLiteral("Show detected fields"));
    m_toggle->setChecked(true);
    top->addWidget(m_toggle);
    layout->addLayout(top);

    m_pageNote = new QLabel;
    m_pageNote->setObjectName(QStringLiteral("pageNote"));
    m_pageNote->setWordWrap(true);
    m_pageNote->setAlignment(Qt::AlignCenter);
    m_pageNote->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    layout->addWidget(m_pageNote);

    m_canvas = new PageCanvas;
    m_scroll = new QScrollArea;
    m_scroll->setObjectName(QStringLiteral("pageScroll"));
    m_scroll->setWidget(m_canvas);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setAlignment(Qt::AlignCenter);
    m_scroll->viewport()->installEventFilter(this);
    layout->addWidget(m_scroll, 1);

    auto *legend = new QHBoxLayout;
    legend->setSpacing(5);
    legend->addStretch();
    const std::pair<OutlineKind, QString> entries[] = {
        {OutlineKind::Detected, QStringLiteral("Detected")},
        {OutlineKind::LowConfidence, QStringLiteral("Low confidence")},
        {OutlineKind::LineItem, QStringLiteral("Line item")}};
    for (const auto &[kind, text] : entries) {
        legend->addWidget(swatch(OutlineBox{{}, {}, kind, false, {}}.color()));
        auto *label = new QLabel(text);
        label->setFont(Theme::caption());
        legend->addWidget(label);
        legend->addSpacing(10);
    }
    legend->addStretch();
    layout->addLayout(legend);

    connect(m_previous, &QToolButton::clicked, this, [this] { setPage(m_page - 1); });
    connect(m_next, &QToolButton::clicked, this, [this] { setPage(m_page + 1); });
    SafeFocus::guard(m_previous);
    SafeFocus::guard(m_next);
    connect(m_toggle, &QCheckBox::toggled, this, &DocumentPane::setShowOutlines);
    // Through the store: the pages of a reopened batch arrive without a change to the document itself.
    connect(&m_store, &Store::docChanged, this, [this](DocItem *changed) {
        if (changed == m_doc.get())
            refresh();
    });
    connect(&m_store, &Store::highlightKeyChanged, this, &DocumentPane::followHighlight);
    refresh();
}

int DocumentPane::pageCount() const
{
    return int(m_doc->pages.size());
}

void DocumentPane::setPage(int page)
{
    const int clamped = std::clamp(page, 0, std::max(0, pageCount() - 1));
    if (clamped == m_page)
        return;
    m_page = clamped;
    refresh();
}

void DocumentPane::setShowOutlines(bool show)
{
    if (show == m_showOutlines)
        return;
    m_showOutlines = show;
    m_toggle->setChecked(show);
    refresh();
}

void DocumentPane::followHighlight()
{
    if (const std::optional<PageBox> box = Outlines::boxOf(*m_doc, m_store.highlightKey());
        box && box->page != m_page && box->page < pageCount())
        setPage(box->page);
    else
        refresh();
}

void DocumentPane::refresh()
{
    const int count = pageCount();
    if (m_page >= count)
        m_page = std::max(0, count - 1);
    m_pageNav->setVisible(count > 1);
    m_pageText->setText(QStringLiteral("Page ") + QString::number(m_page + 1) + QStringLiteral(" of ") +
                        QString::number(count));
    m_previous->setEnabled(m_page > 0);
    m_next->setEnabled(m_page + 1 < count);
    m_canvas->setPage(count > 0 ? m_doc->pages[m_page] : nullptr);
    // A document restored from a kept batch has its values but not yet (or never) its pages.
    const bool pageless = count == 0 && m_doc->status().kind() == DocStatus::Ready;
    const QString why = m_store.pagesNotice(m_doc);
    m_pageNote->setText(why.isEmpty() ? QStringLiteral("Loading the page\u2026") : why);
    m_pageNote->setVisible(pageless);
    m_canvas->setQuarterTurns(quarterTurns());
    applyFit();
    m_canvas->setOutlines(m_showOutlines ? Outlines::forPage(*m_doc, m_page, m_store.highlightKey())
                                         : QList<OutlineBox>());
}

double DocumentPane::scale() const
{
    if (m_fit == Fit::Free)
        return m_freeScale;
    const QSizeF page = m_canvas->turnedPageSize();
    if (page.isEmpty())
        return 1.0;
    const int room = 2 * PageCanvas::margin;
    const QSize view = m_scroll->viewport()->size();
    // Fit width leaves room for the vertical scroll bar the taller page brings.
    const double byWidth = (view.width() - room -
                            (m_fit == Fit::Width ? m_scroll->verticalScrollBar()->sizeHint().width() : 0)) /
                           page.width();
    if (m_fit == Fit::Width)
        return std::max(0.01, byWidth);
    return std::max(0.01, std::min(byWidth, (view.height() - room) / page.height()));
}

void DocumentPane::setFit(Fit fit)
{
    m_fit = fit;
    applyFit();
}

void DocumentPane::zoom(int steps)
{
    constexpr double minScale = 0.1, maxScale = 8.0;
    setScale(std::clamp(scale() * std::pow(1.25, steps), minScale, maxScale));
}

void DocumentPane::setScale(double scale)
{
    // The point in the middle of the view stays there.
    QScrollBar *h = m_scroll->horizontalScrollBar(), *v = m_scroll->verticalScrollBar();
    const QSize view = m_scroll->viewport()->size();
    const QSize before = m_canvas->size();
    const double fx = before.width() > 0 ? (h->value() + view.width() / 2.0) / before.width() : 0.5;
    const double fy = before.height() > 0 ? (v->value() + view.height() / 2.0) / before.height() : 0.5;
    m_fit = Fit::Free;
    m_freeScale = scale;
    applyFit();
    const QSize after = m_canvas->size();
    h->setValue(int(fx * after.width() - view.width() / 2.0));
    v->setValue(int(fy * after.height() - view.height() / 2.0));
}

void DocumentPane::applyFit()
{
    // Fit page lets the canvas fill the view; any other fit gives it the page's size, to scroll over.
    m_canvas->setScale(m_fit == Fit::Page ? 0.0 : scale());
    m_canvas->setMinimumSize(m_fit == Fit::Page ? QSize(0, 0) : m_canvas->sizeHint());
    m_canvas->resize(m_canvas->minimumSize().expandedTo(m_scroll->viewport()->size()));
    m_zoomText->setText(QString::number(std::lround(scale() * 100)) + QLatin1Char('%'));
}

void DocumentPane::rotate()
{
    m_turns[m_page] = (quarterTurns() + 1) % 4;
    m_canvas->setQuarterTurns(quarterTurns());
    applyFit();
}

int DocumentPane::quarterTurns() const
{
    return m_turns.value(m_page);
}

bool DocumentPane::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_scroll->viewport()) {
        if (event->type() == QEvent::Wheel) {
            auto *wheel = static_cast<QWheelEvent *>(event);
            if (wheel->modifiers() & Qt::ControlModifier) {
                if (const int delta = wheel->angleDelta().y(); delta != 0)
                    zoom(delta > 0 ? 1 : -1);
                return true;
            }
        } else if (event->type() == QEvent::Resize && m_fit != Fit::Free) {
            applyFit();
        }
    }
    return QWidget::eventFilter(watched, event);
}

#include "ReviewView.h"

#include "DocumentPane.h"
#include "FormPane.h"
#include "NavBar.h"
#include "SafeFocus.h"
#include "SymbolLabel.h"
#include "Theme.h"

#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QStackedLayout>
#include <QVBoxLayout>

namespace {

// The screens shown instead of the page say which file they are about.
QLabel *fileNameLabel(const QString &name)
{
    auto *label = new QLabel(name);
    label->setObjectName(QStringLiteral("fileName"));
    label->setAlignment(Qt::AlignCenter);
    label->setWordWrap(true);
    label->setFont(Theme::title(1.1));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

ReviewView::ReviewView(Store &store, const DocPtr &doc, QWidget *parent)
    : QWidget(parent), m_store(store), m_doc(doc)
{
    m_stack = new QStackedLayout(this);

    m_progressPage = new QWidget;
    auto *progress = new QVBoxLayout(m_progressPage);
    progress->addStretch();
    progress->addWidget(fileNameLabel(doc->fileName()));
    progress->addSpacing(6);
    m_progressText = new QLabel;
    m_progressText->setObjectName(QStringLiteral("progressText"));
    m_progressText->setAlignment(Qt::AlignCenter);
    m_progressBar = new QProgressBar;
    m_progressBar->setRange(0, 1000);
    m_progressBar->setTextVisible(false);
    m_progressBar->setFixedWidth(320);
    m_progressBar->setMaximumHeight(8);
    progress->addWidget(m_progressBar, 0, Qt::AlignHCenter);
    progress->addSpacing(4);
    progress->addWidget(m_progressText);
    progress->addStretch();
    m_stack->addWidget(m_progressPage);

    m_failedPage = new QWidget;
    auto *failed = new QVBoxLayout(m_failedPage);
    failed->setSpacing(10);
    failed->addStretch();
    failed->addWidget(new SymbolLabel(QStringLiteral("exclamationmark.triangle"), 44, Theme::orange()), 0,
                      Qt::AlignHCenter);
    failed->addWidget(fileNameLabel(doc->fileName()));
    m_failedText = new QLabel;
    m_failedText->setObjectName(QStringLiteral("failureText"));
    m_failedText->setAlignment(Qt::AlignCenter);
    m_failedText->setWordWrap(true);
    m_failedText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    failed->addWidget(m_failedText);
    auto *retry = new QPushButton(QStringLiteral("Try again"));
    retry->setObjectName(QStringLiteral("tryAgain"));
    failed->addWidget(retry, 0, Qt::AlignHCenter);
    failed->addStretch();
    m_stack->addWidget(m_failedPage);

    connect(retry, &QPushButton::clicked, this, [this] { m_store.reprocess(m_doc); });
    SafeFocus::guard(retry);
    connect(m_doc.get(), &DocItem::changed, this, &ReviewView::refresh);
    refresh();
}

void ReviewView::refresh()
{
    const DocStatus &status = m_doc->status();
    switch (status.kind()) {
    case DocStatus::Ready:
        if (!m_readyPage)
            buildReady();
        m_stack->setCurrentWidget(m_readyPage);
        break;
    case DocStatus::Failed:
        m_failedText->setText(status.label());
        m_stack->setCurrentWidget(m_failedPage);
        break;
    default:
        m_progressText->setText(status.label());
        m_progressBar->setValue(int(std::lround(std::clamp(m_doc->progress(), 0.0, 1.0) * 1000)));
        m_stack->setCurrentWidget(m_progressPage);
        break;
    }
}

void ReviewView::setSplitState(const QByteArray &state)
{
    m_splitState = state;
    if (m_split && !state.isEmpty())
        m_split->restoreState(state);
}

void ReviewView::buildReady()
{
    m_readyPage = new QWidget;
    auto *layout = new QVBoxLayout(m_readyPage);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(new NavBar(m_store, m_doc));
    auto *line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setStyleSheet(QStringLiteral("color: palette(mid)"));
    layout->addWidget(line);

    auto *split = new QSplitter(Qt::Horizontal);
    split->setObjectName(QStringLiteral("reviewSplit"));
    split->setChildrenCollapsible(false);
    m_split = split;
    m_pane = new DocumentPane(m_store, m_doc);
    // Scrolls rather than clipping the legend on a short screen.
    auto *paneScroll = new QScrollArea;
    paneScroll->setWidget(m_pane);
    paneScroll->setWidgetResizable(true);
    paneScroll->setFrameShape(QFrame::NoFrame);
    m_form = new FormPane(m_store, m_doc);
    auto *scroll = new QScrollArea;
    scroll->setWidget(m_form);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setMinimumWidth(340);
    split->addWidget(paneScroll);
    split->addWidget(scroll);
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 1);
    split->setSizes({1000, 1000}); // halves, whatever either side's preferred width
    if (!m_splitState.isEmpty())
        split->restoreState(m_splitState);
    connect(split, &QSplitter::splitterMoved, this, [this] {
        m_splitState = m_split->saveState();
        emit splitMoved(m_splitState);
    });
    layout->addWidget(split, 1);
    m_stack->addWidget(m_readyPage);
}

#include "DocumentPane.h"

#include "Icons.h"
#include "Outlines.h"
#include "PageCanvas.h"
#include "SafeFocus.h"
#include "Theme.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QToolButton>
#include <QVBoxLayout>

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
    m_toggle = new QCheckBox(QStringLiteral("Show detected fields"));
    m_toggle->setChecked(true);
    top->addWidget(m_toggle);
    layout->addLayout(top);

    m_canvas = new PageCanvas;
    layout->addWidget(m_canvas, 1);

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
    connect(m_doc.get(), &DocItem::changed, this, &DocumentPane::refresh);
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
    m_canvas->setOutlines(m_showOutlines ? Outlines::forPage(*m_doc, m_page, m_store.highlightKey())
                                         : QList<OutlineBox>());
}

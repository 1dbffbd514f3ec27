#include "NavBar.h"

#include "Icons.h"
#include "PlatformText.h"
#include "SafeFocus.h"
#include "SymbolLabel.h"
#include "Theme.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QLabel>
#include <QPushButton>

NavBar::NavBar(Store &store, const DocPtr &doc, QWidget *parent) : QWidget(parent), m_store(store), m_doc(doc)
{
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 8, 12, 8);
    layout->setSpacing(8);

    m_previous = new QPushButton(Icons::icon(QStringLiteral("chevron.left")), QStringLiteral("Previous"));
    m_previous->setObjectName(QStringLiteral("previous"));
    m_position = new QLabel;
    m_position->setObjectName(QStringLiteral("position"));
    m_position->setFont(Theme::amounts());
    m_next = new QPushButton(Icons::icon(QStringLiteral("chevron.right")), QStringLiteral("Next"));
    m_next->setObjectName(QStringLiteral("next"));
    m_next->setLayoutDirection(Qt::RightToLeft); // the chevron after the word
    m_next->setToolTip(nextTooltip());
    layout->addWidget(m_previous);
    layout->addWidget(m_position);
    layout->addWidget(m_next);
    layout->addStretch();

    m_approvedBox = new QWidget;
    auto *approved = new QHBoxLayout(m_approvedBox);
    approved->setContentsMargins(0, 0, 0, 0);
    approved->setSpacing(6);
    approved->addWidget(new SymbolLabel(QStringLiteral("checkmark.seal.fill"), 18, Theme::green()));
    auto *approvedText = new QLabel(QStringLiteral("Approved"));
    approvedText->setStyleSheet(QStringLiteral("color: %1; font-weight: bold").arg(Theme::green().name()));
    approved->addWidget(approvedText);
    m_undo = new QPushButton(QStringLiteral("Undo approval"));
    m_undo->setObjectName(QStringLiteral("undoApproval"));
    approved->addSpacing(4);
    approved->addWidget(m_undo);
    layout->addWidget(m_approvedBox);

    // Why approval waits (a value typed in the form that is not what its box takes), beside the buttons.
    m_blocked = new QLabel;
    m_blocked->setObjectName(QStringLiteral("approvalBlock"));
    m_blocked->setStyleSheet(QStringLiteral("color: %1").arg(Theme::red().name()));
    m_blocked->setWordWrap(true);
    m_blocked->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    layout->addWidget(m_blocked, 1);

    m_approve = new QPushButton(QStringLiteral("Approve"));
    m_approve->setObjectName(QStringLiteral("approve"));
    // "&&" shows one ampersand: a single one would mark a mnemonic.
    m_approveNext = new QPushButton(QStringLiteral("Approve && Next"));
    m_approveNext->setObjectName(QStringLiteral("approveAndNext"));
    m_approveNext->setDefault(true);
    layout->addWidget(m_approve);
    layout->addWidget(m_approveNext);

    connect(m_previous, &QPushButton::clicked, this, [this] { m_store.move(-1); });
    connect(m_next, &QPushButton::clicked, this, [this] { m_store.move(+1); });
    connect(m_undo, &QPushButton::clicked, this, [this] { m_doc->setApproved(false); });
    connect(m_approve, &QPushButton::clicked, this, [this] {
        if (m_doc->status().kind() == DocStatus::Ready)
            m_doc->setApproved(true);
    });
    connect(m_approveNext, &QPushButton::clicked, &m_store, &Store::approveAndNext);
    connect(&m_store, &Store::changed, this, &NavBar::refresh);
    for (QPushButton *button : {m_previous, m_next, m_undo, m_approve, m_approveNext})
        SafeFocus::guard(button);
    refresh();
}

QString NavBar::nextTooltip()
{
    return PlatformText::adapt(QStringLiteral("Next document (\u2318])"));
}

void NavBar::refresh()
{
    m_previous->setEnabled(m_store.canGoPrevious());
    m_next->setEnabled(m_store.canGoNext());
    m_position->setText(m_store.position());
    const bool approved = m_doc->approved();
    m_approvedBox->setVisible(approved);
    m_approve->setVisible(!approved);
    m_approveNext->setVisible(!approved);
    const QString block = m_doc->approvalBlock();
    m_blocked->setText(approved ? QString() : block);
    m_blocked->setVisible(!approved && !block.isEmpty());
    m_approve->setEnabled(m_doc->status().kind() == DocStatus::Ready && block.isEmpty());
    m_approveNext->setEnabled(block.isEmpty());
}

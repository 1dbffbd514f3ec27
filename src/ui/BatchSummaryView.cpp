#include "BatchSummaryView.h"

#include "SafeFocus.h"
#include "SymbolLabel.h"
#include "Theme.h"
#include "model/Money.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

BatchSummaryView::BatchSummaryView(Store &store, QWidget *parent) : QWidget(parent), m_store(store)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 10, 14, 10);
    layout->setSpacing(6);

    auto *title = new QLabel(QStringLiteral("Batch totals"));
    title->setFont(Theme::title(1.0));
    layout->addWidget(title);

    m_counts = new QLabel;
    m_counts->setObjectName(QStringLiteral("counts"));
    m_counts->setFont(Theme::caption());
    layout->addWidget(m_counts);

    m_duplicateRow = new QWidget;
    auto *dupLayout = new QHBoxLayout(m_duplicateRow);
    dupLayout->setContentsMargins(0, 0, 0, 0);
    dupLayout->setSpacing(5);
    dupLayout->addWidget(
        new SymbolLabel(QStringLiteral("exclamationmark.triangle.fill"), 13, Theme::orange()));
    m_duplicates = new QLabel;
    m_duplicates->setObjectName(QStringLiteral("duplicates"));
    m_duplicates->setFont(Theme::caption());
    m_duplicates->setWordWrap(true);
    dupLayout->addWidget(m_duplicates, 1);
    layout->addWidget(m_duplicateRow);

    auto *totalsBox = new QWidget;
    m_totals = new QGridLayout(totalsBox);
    m_totals->setContentsMargins(0, 2, 0, 2);
    m_totals->setHorizontalSpacing(12);
    m_totals->setVerticalSpacing(1);
    layout->addWidget(totalsBox);

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    m_approveAll = new QPushButton(QStringLiteral("Approve all ready"));
    m_clear = new QPushButton(QStringLiteral("Clear"));
    buttons->addWidget(m_approveAll);
    buttons->addWidget(m_clear);
    buttons->addStretch();
    layout->addLayout(buttons);

    connect(m_approveAll, &QPushButton::clicked, &m_store, &Store::approveAllReady);
    connect(m_clear, &QPushButton::clicked, &m_store, &Store::clearAllAsking);
    SafeFocus::guard(m_approveAll);
    SafeFocus::guard(m_clear);
    connect(&m_store, &Store::changed, this, &BatchSummaryView::refresh);
    refresh();
}

QString BatchSummaryView::countsText(qsizetype files, qsizetype ready, qsizetype approved, qsizetype failed,
                                     qsizetype flagged)
{
    const QString dot = QStringLiteral(" \u00B7 ");
    QString text = QString::number(files) + QStringLiteral(" file") +
                   (files == 1 ? QString() : QStringLiteral("s")) + dot + QString::number(ready) +
                   QStringLiteral(" ready") + dot + QString::number(approved) + QStringLiteral(" approved");
    if (failed >= 1)
        text += dot + QString::number(failed) + QStringLiteral(" failed");
    if (flagged >= 1)
        text += dot + QString::number(flagged) + QStringLiteral(" to check");
    return text;
}

QString BatchSummaryView::duplicatesText(qsizetype count)
{
    return QString::number(count) + QStringLiteral(" likely duplicates (same vendor, number and total)");
}

void BatchSummaryView::refresh()
{
    const QList<DocPtr> &docs = m_store.docs();
    qsizetype ready = 0, failed = 0, readyUnapproved = 0;
    for (const DocPtr &d : docs) {
        if (d->status().kind() == DocStatus::Ready) {
            ++ready;
            if (!d->approved())
                ++readyUnapproved;
        } else if (d->status().kind() == DocStatus::Failed) {
            ++failed;
        }
    }
    m_counts->setText(
        countsText(docs.size(), ready, m_store.approvedDocs().size(), failed, m_store.flaggedIDs().size()));

    const qsizetype duplicates = m_store.duplicateIDs().size();
    m_duplicateRow->setVisible(duplicates > 0);
    m_duplicates->setText(duplicatesText(duplicates));

    const QList<CurrencyTotals> totals = m_store.currencyTotals();
    const QMap<QString, qsizetype> flagged = m_store.flaggedPerCurrency();
    if (!m_totalsShown || totals != m_shownTotals || flagged != m_shownFlagged)
        rebuildTotals(totals, flagged);

    m_approveAll->setEnabled(readyUnapproved > 0);
    m_clear->setEnabled(!docs.isEmpty());
}

void BatchSummaryView::rebuildTotals(const QList<CurrencyTotals> &totals,
                                     const QMap<QString, qsizetype> &flagged)
{
    m_shownTotals = totals;
    m_shownFlagged = flagged;
    m_totalsShown = true;
    while (QLayoutItem *item = m_totals->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (totals.isEmpty()) {
        auto *none = new QLabel(QStringLiteral("No totals yet"));
        none->setObjectName(QStringLiteral("noTotals"));
        none->setFont(Theme::caption());
        none->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
        m_totals->addWidget(none, 0, 0, 1, 3);
        return;
    }
    auto caption = [](const QString &text) {
        auto *label = new QLabel(text);
        label->setFont(Theme::caption());
        label->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
        return label;
    };
    auto amount = [](double value) {
        auto *label = new QLabel(Money::pretty(value));
        label->setFont(Theme::amounts());
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        return label;
    };
    int row = 0;
    for (const CurrencyTotals &t : totals) {
        auto *currency = new QLabel(t.currency);
        currency->setFont(Theme::title(1.0));
        m_totals->addWidget(currency, row, 0, 2, 1, Qt::AlignLeft | Qt::AlignVCenter);
        // The sums keep every document; the row says how many of them are in doubt.
        if (const qsizetype count = flagged.value(t.currency); count > 0) {
            auto *note = new QLabel(QString::number(count) + QStringLiteral(" to check"));
            note->setObjectName(QStringLiteral("flagged-") + t.currency);
            note->setFont(Theme::caption());
            note->setStyleSheet(QStringLiteral("color: %1").arg(Theme::orange().name()));
            note->setToolTip(QStringLiteral("Documents of this currency whose amounts do not add up"));
            m_totals->addWidget(note, row + 1, 3, Qt::AlignLeft);
        }
        m_totals->addWidget(caption(QStringLiteral("Total")), row, 1, Qt::AlignRight);
        m_totals->addWidget(caption(QStringLiteral("Approved")), row, 2, Qt::AlignRight);
        m_totals->addWidget(amount(t.total), row + 1, 1, Qt::AlignRight);
        m_totals->addWidget(amount(t.approvedTotal), row + 1, 2, Qt::AlignRight);
        row += 2;
    }
    m_totals->setColumnStretch(4, 1);
    m_totals->setColumnMinimumWidth(1, 70);
    m_totals->setColumnMinimumWidth(2, 70);
}

#pragma once

#include "store/Store.h"

#include <QWidget>

class QGridLayout;
class QLabel;
class QPushButton;
class SymbolLabel;

/// The batch at a glance, under the queue: how many files in which state, likely duplicates, totals
/// per currency, and the "Approve all ready" and "Clear" commands.
class BatchSummaryView : public QWidget {
    Q_OBJECT
public:
    explicit BatchSummaryView(Store &store, QWidget *parent = nullptr);

    /// "4 files · 3 ready · 1 approved · 1 failed · 2 to check": the failed and doubtful parts only when
    /// there are such documents.
    static QString countsText(qsizetype files, qsizetype ready, qsizetype approved, qsizetype failed,
                              qsizetype flagged = 0);
    /// "2 likely duplicates (same vendor, number and total)".
    static QString duplicatesText(qsizetype count);

private:
    void refresh();
    void rebuildTotals(const QList<CurrencyTotals> &totals, const QMap<QString, qsizetype> &flagged);

    Store &m_store;
    QLabel *m_counts;
    QWidget *m_duplicateRow;
    QLabel *m_duplicates;
    QGridLayout *m_totals;
    QPushButton *m_approveAll;
    QPushButton *m_clear;
    QList<CurrencyTotals> m_shownTotals;
    QMap<QString, qsizetype> m_shownFlagged;
    bool m_totalsShown = false;
};

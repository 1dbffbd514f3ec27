#pragma once

#include "store/Store.h"

#include <QWidget>

class QLabel;
class QPushButton;
class SymbolLabel;

/// The bar above a document under review: previous and next, the position in the batch, and the
/// approval controls ("Approve", "Approve & Next", or the approved mark with "Undo approval"). While a
/// value typed in the form is not what its box takes, approval is disabled and the bar says why.
class NavBar : public QWidget {
    Q_OBJECT
public:
    NavBar(Store &store, const DocPtr &doc, QWidget *parent = nullptr);

    /// The tooltip of "Next": the shortcut as this platform writes it.
    static QString nextTooltip();

private:
    void refresh();

    Store &m_store;
    DocPtr m_doc;
    QPushButton *m_previous;
    QLabel *m_position;
    QPushButton *m_next;
    QWidget *m_approvedBox;
    QPushButton *m_undo;
    QLabel *m_blocked;
    QPushButton *m_approve;
    QPushButton *m_approveNext;
};

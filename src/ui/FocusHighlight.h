#pragma once

#include "store/Store.h"

#include <QObject>

class QWidget;

/// Makes the text box with keyboard focus name the store's highlight, so the page outline of the field
/// or item it edits is emphasised while the box has focus.
class FocusHighlight : public QObject {
    Q_OBJECT
public:
    FocusHighlight(Store &store, QObject *parent);

    /// Highlights `key` while `edit` has focus.
    void watch(QWidget *edit, const QString &key);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    Store &m_store;
};

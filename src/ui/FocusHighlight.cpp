#include "FocusHighlight.h"

#include <QEvent>
#include <QFocusEvent>
#include <QWidget>

namespace {

constexpr const char *keyProperty = "tabrixKey";

} // namespace

FocusHighlight::FocusHighlight(Store &store, QObject *parent) : QObject(parent), m_store(store) {}

void FocusHighlight::watch(QWidget *edit, const QString &key)
{
    edit->setProperty(keyProperty, key);
    edit->installEventFilter(this);
}

bool FocusHighlight::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        m_store.setHighlightKey(watched->property(keyProperty).toString());
    } else if (event->type() == QEvent::FocusOut) {
        // Leaving for a menu or another window keeps the emphasis; leaving the entry clears it.
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        const QString key = watched->property(keyProperty).toString();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason &&
            m_store.highlightKey() == key)
            m_store.setHighlightKey(QString());
    }
    return QObject::eventFilter(watched, event);
}

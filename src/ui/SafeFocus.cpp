#include "SafeFocus.h"

#include <QAbstractButton>
#include <QPointer>
#include <QTimer>

namespace SafeFocus {

Home::Home(QWidget *window) : QObject(window)
{
    setObjectName(QStringLiteral("safeFocusHome"));
}

void guard(QAbstractButton *button)
{
    QObject::connect(button, &QAbstractButton::clicked, button, [button] {
        QPointer<QAbstractButton> self = button;
        QPointer<Home> home = button->window()->findChild<Home *>(QString(), Qt::FindDirectChildrenOnly);
        if (!home)
            return;
        // Queued: the click may replace the review screen, which happens after its handlers return.
        QTimer::singleShot(0, home, [self, home] {
            if (self && self->isVisible() && self->isEnabled())
                return;
            emit home->stranded();
        });
    });
}

} // namespace SafeFocus

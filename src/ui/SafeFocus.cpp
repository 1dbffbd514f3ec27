#include "SafeFocus.h"

#include "MainWindow.h"

#include <QAbstractButton>
#include <QPointer>
#include <QTimer>

namespace SafeFocus {

void guard(QAbstractButton *button)
{
    QObject::connect(button, &QAbstractButton::clicked, button, [button] {
        QPointer<QAbstractButton> self = button;
        QPointer<MainWindow> window = qobject_cast<MainWindow *>(button->window());
        if (!window)
            return;
        // Queued: the click may replace the review screen, which happens after its handlers return.
        QTimer::singleShot(0, window, [self, window] {
            if (self && self->isVisible() && self->isEnabled())
                return;
            window->focusWork();
        });
    });
}

} // namespace SafeFocus

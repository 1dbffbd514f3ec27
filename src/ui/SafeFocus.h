#pragma once

#include <QObject>

class QAbstractButton;
class QWidget;

/// Keyboard focus after a click. A button that disables or hides itself (or whose screen is replaced)
/// drops the focus onto whatever comes next in the chain, where a stray Space or Return could clear
/// the batch or hide the outlines. Guarded buttons hand it to the window's harmless place instead.
namespace SafeFocus {

/// The harmless place of one window, announced by signal so that views never need to know the window
/// they sit in. A window that wants guarded buttons creates one as its child and connects `stranded`.
class Home : public QObject {
    Q_OBJECT
public:
    explicit Home(QWidget *window);

signals:
    /// A guarded button of this window lost the focus it had: give it a place where no key loses work.
    void stranded();
};

/// Once `button`'s click handlers have run and the event loop turns, if the button is gone, disabled or
/// hidden, its window's Home emits `stranded`. Buttons in a window without a Home are left alone.
void guard(QAbstractButton *button);

} // namespace SafeFocus

#pragma once

class QAbstractButton;

/// Keyboard focus after a click. A button that disables or hides itself (or whose screen is replaced)
/// drops the focus onto whatever comes next in the chain, where a stray Space or Return could clear
/// the batch or hide the outlines. Guarded buttons hand it to the window's harmless place instead.
namespace SafeFocus {

/// Once `button`'s click handlers have run and the event loop turns, if the button is gone, disabled or
/// hidden, focus goes to MainWindow::focusWork() of its window.
void guard(QAbstractButton *button);

} // namespace SafeFocus

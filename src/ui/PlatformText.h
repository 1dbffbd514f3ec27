#pragma once

#include <QString>

/// Texts written for macOS, said the way the running platform says them.
namespace PlatformText {

constexpr bool runningOnMac =
#ifdef Q_OS_MACOS
    true;
#else
    false;
#endif

/// `text` unchanged on macOS; elsewhere "this Mac" becomes "this computer" and the command key "⌘"
/// becomes "Ctrl+", as Linux and Windows write shortcuts.
QString adapt(const QString &text, bool mac = runningOnMac);

} // namespace PlatformText

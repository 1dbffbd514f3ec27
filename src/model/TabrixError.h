#pragma once

#include <QString>

/// The intake pipeline's error: `message` is exactly what the user reads (and the failed status text).
struct TabrixError {
    QString message;

    bool operator==(const TabrixError &) const = default;
};

#include <variant>

/// A value or the error that prevented it.
template <class T> using Expected = std::variant<T, TabrixError>;

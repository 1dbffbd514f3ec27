#pragma once

#include "TextLine.h"

#include <QString>
#include <QUuid>
#include <optional>

/// One row of a document's item table; amounts stay text, parsed by Money where numbers are needed.
struct LineItem {
    /// The text columns, in the order the form and the exports show them.
    enum Column { Description, Quantity, UnitPrice, Amount };

    QUuid id = QUuid::createUuid();
    QString description;
    QString quantity;
    QString unitPrice;
    QString amount;
    double confidence = 0.0;
    bool edited = false;
    std::optional<PageBox> box;

    bool operator==(const LineItem &) const = default;
};

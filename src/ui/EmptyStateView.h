#pragma once

#include "store/Store.h"

#include <QWidget>

/// What the right side shows when no document is selected: an invitation to drop files, and a button
/// that opens the file chooser.
class EmptyStateView : public QWidget {
    Q_OBJECT
public:
    explicit EmptyStateView(Store &store, QWidget *parent = nullptr);
};

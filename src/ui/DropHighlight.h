#pragma once

#include <QWidget>

/// The frame drawn over the whole window while files are dragged over it. It never takes mouse
/// events, so the drop still reaches the window below it.
class DropHighlight : public QWidget {
    Q_OBJECT
public:
    explicit DropHighlight(QWidget *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *) override;
};

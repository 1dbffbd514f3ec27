#pragma once

#include <QColor>
#include <QWidget>

/// One bundled symbol (see Icons) in one colour, `size` pixels square, drawn sharp at the screen's
/// pixel ratio.
class SymbolLabel : public QWidget {
    Q_OBJECT
public:
    SymbolLabel(const QString &name, int size, const QColor &color, QWidget *parent = nullptr);

    QString name() const { return m_name; }
    QColor color() const { return m_color; }
    void setSymbol(const QString &name, const QColor &color);

    QSize sizeHint() const override { return QSize(m_size, m_size); }

protected:
    void paintEvent(QPaintEvent *) override;

private:
    QString m_name;
    int m_size;
    QColor m_color;
};

#include "ValueEdit.h"

#include "Theme.h"

#include <QStyle>
#include <QStyleOptionFrame>

ValueEdit::ValueEdit(QWidget *parent) : QLineEdit(parent)
{
    connect(this, &QLineEdit::textChanged, this, &ValueEdit::updateToolTip);
}

void ValueEdit::setValue(const QString &value)
{
    setText(value);
    setCursorPosition(0);
}

bool ValueEdit::fits() const
{
    QStyleOptionFrame option;
    initStyleOption(&option);
    const QRect inner = style()->subElementRect(QStyle::SE_LineEditContents, &option, this);
    const QMargins margins = textMargins();
    // QLineEdit keeps two pixels free on each side of the text.
    const int room = inner.width() - margins.left() - margins.right() - 4;
    return fontMetrics().horizontalAdvance(text()) <= room;
}

void ValueEdit::resizeEvent(QResizeEvent *event)
{
    QLineEdit::resizeEvent(event);
    updateToolTip();
}

void ValueEdit::setProblem(const QString &problem)
{
    if (problem == m_problem)
        return;
    m_problem = problem;
    setStyleSheet(problem.isEmpty()
                      ? QString()
                      : QStringLiteral("ValueEdit { border: 1.5px solid %1; border-radius: 3px; }")
                            .arg(Theme::red().name()));
    updateToolTip();
}

void ValueEdit::updateToolTip()
{
    setToolTip(!m_problem.isEmpty() ? m_problem : fits() ? QString() : text());
}

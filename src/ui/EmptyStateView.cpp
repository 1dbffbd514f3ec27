#include "EmptyStateView.h"

#include "SymbolLabel.h"
#include "Theme.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

EmptyStateView::EmptyStateView(Store &store, QWidget *parent) : QWidget(parent)
{
    auto *layout = new QVBoxLayout(this);
    layout->setSpacing(12);
    layout->addStretch();

    auto *symbol = new SymbolLabel(QStringLiteral("tray.and.arrow.down"), 64, Theme::secondaryText());
    layout->addWidget(symbol, 0, Qt::AlignHCenter);

    auto *title = new QLabel(QStringLiteral("Drop invoices, receipts and forms here"));
    title->setFont(Theme::title(1.5));
    title->setAlignment(Qt::AlignCenter);
    layout->addWidget(title);

    auto *text =
        new QLabel(QStringLiteral("PDF, PNG, JPEG, HEIC and TIFF files, or whole folders.\nTabrix reads "
                                  "each one and turns it into structured data you can review and export."));
    text->setAlignment(Qt::AlignCenter);
    text->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    layout->addWidget(text);

    auto *choose = new QPushButton(QStringLiteral("Choose Files\u2026"));
    choose->setObjectName(QStringLiteral("chooseFiles"));
    layout->addSpacing(4);
    layout->addWidget(choose, 0, Qt::AlignHCenter);
    layout->addStretch();

    connect(choose, &QPushButton::clicked, &store, &Store::openPanel);
}

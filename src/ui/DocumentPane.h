#pragma once

#include "store/Store.h"

#include <QWidget>

class PageCanvas;
class QCheckBox;
class QLabel;
class QToolButton;

/// The left half of the review screen: one page of the document with an outline over every value that
/// was read from it, page buttons for documents of several pages, the "Show detected fields" toggle and
/// the legend of outline colours. Focusing a value that lies on another page turns to that page.
class DocumentPane : public QWidget {
    Q_OBJECT
public:
    DocumentPane(Store &store, const DocPtr &doc, QWidget *parent = nullptr);

    /// Zero-based index of the page shown.
    int page() const { return m_page; }
    void setPage(int page);
    int pageCount() const;

    bool showOutlines() const { return m_showOutlines; }
    void setShowOutlines(bool show);

    PageCanvas *canvas() const { return m_canvas; }

private:
    void refresh();
    void followHighlight();

    Store &m_store;
    DocPtr m_doc;
    int m_page = 0;
    bool m_showOutlines = true;

    QWidget *m_pageNav;
    QToolButton *m_previous;
    QToolButton *m_next;
    QLabel *m_pageText;
    QCheckBox *m_toggle;
    PageCanvas *m_canvas;
};

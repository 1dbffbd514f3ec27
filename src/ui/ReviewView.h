#pragma once

#include "store/Store.h"

#include <QWidget>

class DocumentPane;
class FormPane;
class NavBar;
class QLabel;
class QProgressBar;
class QPushButton;
class QSplitter;
class QStackedLayout;

/// The right side for one selected document: its progress while it is read, the failure with "Try
/// again", and once ready the navigation bar over the page and the form. Made afresh for each selected
/// document.
class ReviewView : public QWidget {
    Q_OBJECT
public:
    ReviewView(Store &store, const DocPtr &doc, QWidget *parent = nullptr);

    const DocPtr &doc() const { return m_doc; }
    /// Null until the document is first ready.
    DocumentPane *documentPane() const { return m_pane; }
    FormPane *formPane() const { return m_form; }
    /// The page beside the form, once ready; null before.
    QSplitter *splitter() const { return m_split; }
    /// Positions for the splitter between page and form (QSplitter::saveState), applied now or when the
    /// document is ready.
    void setSplitState(const QByteArray &state);

signals:
    /// The user moved the splitter between page and form.
    void splitMoved(const QByteArray &state);

private:
    void refresh();
    void buildReady();

    Store &m_store;
    DocPtr m_doc;
    QStackedLayout *m_stack;
    QWidget *m_progressPage;
    QLabel *m_progressText;
    QProgressBar *m_progressBar;
    QWidget *m_failedPage;
    QLabel *m_failedText;
    QWidget *m_readyPage = nullptr;
    DocumentPane *m_pane = nullptr;
    FormPane *m_form = nullptr;
    QSplitter *m_split = nullptr;
    QByteArray m_splitState;
};

#pragma once

#include "frame/Hilfedokument.h"

#include <QPointer>
#include <QTextBrowser>
#include <QWidget>
#include <memory>

class QLabel;
class QLineEdit;
class QToolButton;
class QTreeWidget;
class QTreeWidgetItem;

namespace frame {

// The text view of the help window: the help file comes from its Hilfedokument, so that a file
// is decoded and read the same way for the table of contents and for the display.
class Hilfeanzeige : public QTextBrowser
{
    Q_OBJECT

public:
    using QTextBrowser::QTextBrowser;
    void setDokument(std::shared_ptr<const Hilfedokument> dokument);
    QVariant loadResource(int type, const QUrl &name) override;

private:
    std::shared_ptr<const Hilfedokument> m_dokument;
};

// The product's help window: the table of contents on the left, the help text on the right,
// back and forward, and a search over the text (all matches marked, Enter or F3 to the next,
// Shift+F3 to the previous). One window serves every screen; it belongs to the window that
// asked for it last, so that it stays usable while that window runs modally, and moves to the
// owner's own parent when the owner closes.
class Hilfefenster : public QWidget
{
    Q_OBJECT

public:
    // Shows `dokument` at `anker` (its beginning when the anchor is empty or unknown) in the
    // help window of `besitzer` (the active modal window, else the caller's window), creating
    // it when there is none. Returns the window.
    static Hilfefenster *oeffnen(std::shared_ptr<const Hilfedokument> dokument,
                                 const QString &anker, QWidget *besitzer);
    // The help window, null when none was opened or it was closed for good.
    static Hilfefenster *offenes();

    explicit Hilfefenster(QWidget *besitzer = nullptr);
    ~Hilfefenster() override;

    void zeigen(std::shared_ptr<const Hilfedokument> dokument, const QString &anker);

    // The anchor shown last ("" at the beginning) and the title of its section.
    QString anker() const;
    QString abschnitt() const;
    // Matches of the search text in the document.
    int treffer() const { return m_treffer; }

    Hilfeanzeige *anzeige() const { return m_anzeige; }
    QTreeWidget *inhalt() const { return m_inhalt; }
    QLineEdit *suchfeld() const { return m_suche; }

    // The next (or previous) match after the cursor, wrapping at the end; false when none.
    bool weiterSuchen(bool rueckwaerts = false);

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override;

private:
    void setBesitzer(QWidget *besitzer);
    void inhaltAufbauen();
    void inhaltGewaehlt(QTreeWidgetItem *eintrag);
    void quelleGeaendert(const QUrl &url);
    // Selects the table-of-contents entry of the section holding `position` (none for -1).
    void abschnittMarkieren(int position);
    void suchtextGeaendert(const QString &text);
    void zurPosition(int position);
    void knoepfeAktualisieren();

    std::shared_ptr<const Hilfedokument> m_dokument;
    Hilfeanzeige *m_anzeige = nullptr;
    QTreeWidget *m_inhalt = nullptr;
    QLineEdit *m_suche = nullptr;
    QLabel *m_trefferText = nullptr;
    QToolButton *m_zurueck = nullptr;
    QToolButton *m_vor = nullptr;
    int m_treffer = 0;
    QPointer<QWidget> m_besitzer;
};

} // namespace frame

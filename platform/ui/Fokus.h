#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

class QPushButton;

namespace platform {

// The focus events of the original's controls for one window: Validate (with Cancel),
// LostFocus and GotFocus, and the control that receives the focus.
//
// Contract, when the focus is about to move from A to B inside the window:
// 1. If A has a Validate handler and B causes validation (the default; see
//    setCausesValidation), A's Validate runs. Cancel = true puts the focus back into A; no
//    LostFocus or GotFocus follows, and a mouse click that moved the focus (on a button, a combo,
//    a check box) is swallowed, so its Click does not run.
// 2. Otherwise A's LostFocus runs, then B's GotFocus. A LostFocus that moves the focus away from
//    B (puts it back into A, as the original's checks do) refuses the move like Cancel: the
//    click that moved the focus is swallowed and B's GotFocus does not run.
// While these handlers run, ActiveControl() is B, the control receiving the focus; at any other
// time it is the window's focus widget. Focus moves made by the handlers themselves raise no
// further events (they are the original's "put the focus back into the field").
//
// Enter pressed in a control that is not a button, while the window has a default push button
// that causes validation, runs the control's Validate with the default button as receiver; Cancel
// swallows the key. The focus stays in the control, so the button's Click sees it as the
// ActiveControl, and no LostFocus runs (the original's default button did not take the focus).
//
// A click on a button that does not take the focus (the arrows of a data control) counts as a
// move to that button: the control with the focus is asked first, and Cancel swallows the click.
// Actions that never move the focus (a page header, a record move by key, closing) ask with
// verlassen().
//
// Qt moves the focus before the old control is asked, so the check runs right after the move
// and a cancel restores it; the receiving widget sees a FocusIn/FocusOut pair but none of our
// handlers. Focus leaving the window (a message box, another window) raises nothing.
class Fokus : public QObject
{
    Q_OBJECT

public:
    explicit Fokus(QWidget *fenster);
    ~Fokus() override;

    using ValidateHandler = std::function<void(bool &Cancel)>;
    using Handler = std::function<void()>;

    void setValidate(QWidget *w, ValidateHandler h);
    void setLostFocus(QWidget *w, Handler h);
    void setGotFocus(QWidget *w, Handler h);
    void setCausesValidation(QWidget *w, bool an);
    bool causesValidation(QWidget *w) const;

    // Runs the Validate of the control that has the focus as if the focus were about to move to
    // `ziel`, for an action that does not move it. False when it cancelled; the focus stays where
    // it is (or where the handler put it) and no LostFocus or GotFocus runs.
    bool verlassen(QWidget *ziel);

    // The control receiving the focus while a handler runs, else the window's focus widget
    // (mapped to the registered control that contains it).
    QWidget *ActiveControl() const;
    // objectName of ActiveControl(), "" when there is none.
    QString empfaengerName() const;

    QWidget *fenster() const { return m_fenster; }

protected:
    bool eventFilter(QObject *obj, QEvent *ev) override;

private:
    struct Eintrag
    {
        ValidateHandler validate;
        Handler lostFocus;
        Handler gotFocus;
        bool causesValidation = true;
    };

    Eintrag &eintragFuer(QWidget *w);
    void entfernen(QObject *o);
    void fokusGewechselt(QWidget *alt, QWidget *neu);
    // The move to `neuWidget` was refused: a click that caused it is swallowed.
    void ablehnen(QWidget *neuWidget);
    bool imFenster(const QWidget *w) const;
    // The registered control containing w (w itself when none is registered).
    QWidget *steuerelement(QWidget *w) const;
    const Eintrag *eintrag(QWidget *w) const;
    QPushButton *standardKnopf() const;

    QPointer<QWidget> m_fenster;
    QHash<QWidget *, Eintrag> m_eintraege;
    QPointer<QWidget> m_empfaenger; // set while handlers run
    bool m_laeuft = false;
    QPointer<QWidget> m_abgelehnt; // refused by Validate during the current event
    QPointer<QWidget> m_loslassenSchlucken; // swallow the release of a swallowed press
};

} // namespace platform

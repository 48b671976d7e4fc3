#include "Fokus.h"

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>

namespace platform {

Fokus::Fokus(QWidget *fenster)
    : QObject(fenster)
    , m_fenster(fenster)
{
    connect(qApp, &QApplication::focusChanged, this, &Fokus::fokusGewechselt);
    qApp->installEventFilter(this);
}

Fokus::~Fokus()
{
    if (qApp)
        qApp->removeEventFilter(this);
}

void Fokus::setValidate(QWidget *w, ValidateHandler h)
{
    eintragFuer(w).validate = std::move(h);
}

Fokus::Eintrag &Fokus::eintragFuer(QWidget *w)
{
    if (!m_eintraege.contains(w))
        connect(w, &QObject::destroyed, this, &Fokus::entfernen);
    return m_eintraege[w];
}

void Fokus::entfernen(QObject *o)
{
    m_eintraege.remove(static_cast<QWidget *>(o));
}

void Fokus::setLostFocus(QWidget *w, Handler h)
{
    eintragFuer(w).lostFocus = std::move(h);
}

void Fokus::setGotFocus(QWidget *w, Handler h)
{
    eintragFuer(w).gotFocus = std::move(h);
}

void Fokus::setCausesValidation(QWidget *w, bool an)
{
    eintragFuer(w).causesValidation = an;
}

bool Fokus::causesValidation(QWidget *w) const
{
    const Eintrag *e = eintrag(w);
    return !e || e->causesValidation;
}

bool Fokus::imFenster(const QWidget *w) const
{
    return w && m_fenster && w->window() == m_fenster;
}

QWidget *Fokus::steuerelement(QWidget *w) const
{
    for (QWidget *p = w; p && p != m_fenster; p = p->parentWidget()) {
        if (m_eintraege.contains(p))
            return p;
    }
    return w;
}

const Fokus::Eintrag *Fokus::eintrag(QWidget *w) const
{
    const auto it = m_eintraege.constFind(w);
    return it == m_eintraege.constEnd() ? nullptr : &it.value();
}

QWidget *Fokus::ActiveControl() const
{
    if (m_laeuft)
        return m_empfaenger;
    if (!m_fenster)
        return nullptr;
    QWidget *f = m_fenster->focusWidget();
    return f ? steuerelement(f) : nullptr;
}

QString Fokus::empfaengerName() const
{
    const QWidget *w = ActiveControl();
    return w ? w->objectName() : QString();
}

QPushButton *Fokus::standardKnopf() const
{
    const auto knoepfe = m_fenster->findChildren<QPushButton *>();
    for (QPushButton *b : knoepfe) {
        if (b->isDefault() && b->isVisible() && b->isEnabled())
            return b;
    }
    return nullptr;
}

void Fokus::fokusGewechselt(QWidget *altWidget, QWidget *neuWidget)
{
    // Focus moves made by our own handlers, or to and from other windows, raise nothing.
    if (m_laeuft || !imFenster(neuWidget))
        return;
    QWidget *neu = steuerelement(neuWidget);
    QWidget *alt = imFenster(altWidget) ? steuerelement(altWidget) : nullptr;
    if (alt == neu)
        return;

    m_laeuft = true;
    m_empfaenger = neu;
    const auto ende = qScopeGuard([this] {
        m_laeuft = false;
        m_empfaenger = nullptr;
    });

    if (alt) {
        const Eintrag *a = eintrag(alt);
        if (a && a->validate && causesValidation(neu)) {
            bool cancel = false;
            const ValidateHandler h = a->validate; // the handler may re-register itself
            h(cancel);
            if (cancel) {
                // Unless the handler put the focus somewhere itself, it goes back into A.
                if (m_fenster && m_fenster->focusWidget() == neuWidget && alt->isVisible()
                    && alt->isEnabled()) {
                    alt->setFocus(Qt::OtherFocusReason);
                }
                ablehnen(neuWidget);
                return;
            }
        }
        a = eintrag(alt);
        if (a && a->lostFocus) {
            const Handler h = a->lostFocus;
            h();
            // A LostFocus that put the focus back (a check of the original's kind) refuses
            // the move as well: the click that caused it must not act on a failed check.
            if (m_fenster && m_fenster->focusWidget() != neuWidget) {
                ablehnen(neuWidget);
                return;
            }
        }
    }
    // GotFocus only when the focus stayed where it went.
    if (m_fenster && m_fenster->focusWidget() == neuWidget) {
        const Eintrag *n = eintrag(neu);
        if (n && n->gotFocus) {
            const Handler h = n->gotFocus;
            h();
        }
    }
}

void Fokus::ablehnen(QWidget *neuWidget)
{
    m_abgelehnt = neuWidget;
    // A click that caused this move is delivered within the same event and consumes the
    // refusal; one caused by a key must not block later clicks.
    QTimer::singleShot(0, this, [this] { m_abgelehnt = nullptr; });
}

bool Fokus::verlassen(QWidget *ziel)
{
    if (m_laeuft || !m_fenster)
        return true;
    QWidget *f = m_fenster->focusWidget();
    if (!f)
        return true;
    const Eintrag *a = eintrag(steuerelement(f));
    if (!a || !a->validate || !causesValidation(ziel))
        return true;
    m_laeuft = true;
    m_empfaenger = ziel;
    const auto ende = qScopeGuard([this] {
        m_laeuft = false;
        m_empfaenger = nullptr;
    });
    bool cancel = false;
    const ValidateHandler h = a->validate;
    h(cancel);
    return !cancel;
}

bool Fokus::eventFilter(QObject *obj, QEvent *ev)
{
    switch (ev->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        auto *w = qobject_cast<QWidget *>(obj);
        if (m_abgelehnt && w && (w == m_abgelehnt || m_abgelehnt->isAncestorOf(w))) {
            m_abgelehnt = nullptr; // consumed by the press that caused it
            m_loslassenSchlucken = w;
            return true;
        }
        // A button that keeps the focus where it is acts only when the control is left.
        auto *knopf = qobject_cast<QAbstractButton *>(w);
        if (knopf && imFenster(knopf) && knopf->isEnabled()
            && !(knopf->focusPolicy() & Qt::ClickFocus)
            && static_cast<QMouseEvent *>(ev)->button() == Qt::LeftButton && !verlassen(knopf)) {
            m_loslassenSchlucken = knopf;
            return true;
        }
        break;
    }
    case QEvent::MouseButtonRelease:
        if (m_loslassenSchlucken && obj == m_loslassenSchlucken) {
            m_loslassenSchlucken = nullptr;
            return true;
        }
        break;
    case QEvent::KeyPress: {
        const auto *k = static_cast<QKeyEvent *>(ev);
        if (k->key() != Qt::Key_Return && k->key() != Qt::Key_Enter)
            break;
        auto *w = qobject_cast<QWidget *>(obj);
        if (m_laeuft || !w || !imFenster(w) || w != m_fenster->focusWidget()
            || qobject_cast<QPushButton *>(w)) {
            break;
        }
        QPushButton *knopf = standardKnopf();
        QWidget *alt = steuerelement(w);
        const Eintrag *a = eintrag(alt);
        if (!knopf || !a || !a->validate || !causesValidation(knopf))
            break;
        bool cancel = false;
        {
            m_laeuft = true;
            m_empfaenger = knopf;
            const auto ende = qScopeGuard([this] {
                m_laeuft = false;
                m_empfaenger = nullptr;
            });
            const ValidateHandler h = a->validate;
            h(cancel);
        }
        if (cancel)
            return true;
        break;
    }
    default:
        break;
    }
    return QObject::eventFilter(obj, ev);
}

} // namespace platform

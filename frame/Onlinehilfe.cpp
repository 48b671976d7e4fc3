#include "frame/Onlinehilfe.h"

#include "frame/Hilfedokument.h"
#include "frame/Hilfefenster.h"
#include "frame/mdlFehlerZL.h"
#include "frame/mdlKontenStamm.h"
#include "platform/ui/MsgBox.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace frame {

namespace {

QString kontextAngabe(const QWidget *w)
{
    const QString kontext = w->property("HelpContextID").toString().trimmed();
    return kontext == QLatin1String("0") ? QString() : kontext;
}

bool oeffnenFuer(const QString &datei, const QString &kontext, const QWidget *ausloeser)
{
    QString fehler;
    const auto dokument = Hilfedokument::laden(datei, &fehler);
    if (!dokument) {
        platform::MsgBox(fehler
                         + QStringLiteral("\r\nEs kann keine Onlinehilfe angezeigt "
                                          "werden !"));
        return false;
    }
    // The help must stay usable while a screen runs modally: it belongs to the modal window.
    QWidget *besitzer = QApplication::activeModalWidget();
    if (!besitzer && ausloeser)
        besitzer = ausloeser->window();
    Hilfefenster::oeffnen(dokument, kontext, besitzer);
    return true;
}

} // namespace

QString hilfekontext(const QWidget *steuerelement)
{
    const QString datei = mdlFehlerZL::hilfedatei();
    const auto dokument = datei.isEmpty() ? nullptr : Hilfedokument::laden(datei);
    if (!dokument) {
        for (const QWidget *w = steuerelement; w; w = w->parentWidget()) {
            if (!kontextAngabe(w).isEmpty())
                return kontextAngabe(w);
        }
        return steuerelement ? steuerelement->window()->objectName() : QString();
    }
    // Names that several screens use ("cmdOK") have their anchor with the screen's name first.
    const QString maske = steuerelement ? steuerelement->window()->objectName() + u'.' : QString();
    for (const QWidget *w = steuerelement; w; w = w->parentWidget()) {
        for (const QString &anker : {kontextAngabe(w), maske + w->objectName(), w->objectName()}) {
            if (dokument->hatAnker(anker))
                return anker;
        }
    }
    return {};
}

bool hilfeZeigen(const QWidget *steuerelement)
{
    if (!mdlKontenStamm::HilfeVorhanden)
        return false;
    return oeffnenFuer(mdlFehlerZL::hilfedatei(), hilfekontext(steuerelement), steuerelement);
}

bool hilfeOeffnen(const QString &datei, const QString &kontext)
{
    return oeffnenFuer(datei, kontext, QApplication::activeWindow());
}

F1Hilfe::F1Hilfe(QWidget *fenster)
    : QObject(fenster)
    , m_fenster(fenster)
{
    fenster->installEventFilter(this);
    for (QWidget *w : fenster->findChildren<QWidget *>())
        w->installEventFilter(this);
}

bool F1Hilfe::eventFilter(QObject *objekt, QEvent *ereignis)
{
    if (ereignis->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(ereignis)->key() == Qt::Key_F1) {
        // The window's own focus widget: the key may arrive before the window is the active one.
        QWidget *fokus = m_fenster->focusWidget();
        hilfeZeigen(fokus ? fokus : m_fenster);
        return true;
    }
    return QObject::eventFilter(objekt, ereignis);
}

} // namespace frame

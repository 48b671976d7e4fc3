#include "frame/Onlinehilfe.h"

#include "frame/mdlFehlerZL.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QWidget>

namespace frame {

namespace {

std::function<bool(const QUrl &)> &oeffner()
{
    static std::function<bool(const QUrl &)> f;
    return f;
}

bool hatAnker(const QString &hilfedatei, const QString &name)
{
    if (name.isEmpty())
        return false;
    QFile f(hilfedatei);
    if (!f.open(QIODevice::ReadOnly))
        return false;
    const QByteArray anker = QByteArrayLiteral("id=\"") + name.toUtf8() + '"';
    return f.readAll().contains(anker);
}

} // namespace

QString hilfekontext(const QWidget *steuerelement)
{
    for (const QWidget *w = steuerelement; w; w = w->parentWidget()) {
        const QString kontext = w->property("HelpContextID").toString();
        if (!kontext.isEmpty() && kontext != QLatin1String("0"))
            return kontext;
    }
    if (!steuerelement)
        return {};
    if (hatAnker(mdlFehlerZL::hilfedatei(), steuerelement->objectName()))
        return steuerelement->objectName();
    return steuerelement->window()->objectName();
}

QUrl hilfeAdresse(const QString &datei, const QWidget *steuerelement)
{
    if (datei.isEmpty())
        return {};
    QUrl url = QUrl::fromLocalFile(QFileInfo(datei).absoluteFilePath());
    const QString kontext = hilfekontext(steuerelement);
    if (!kontext.isEmpty())
        url.setFragment(kontext);
    return url;
}

bool hilfeZeigen(const QWidget *steuerelement)
{
    const QUrl url = hilfeAdresse(mdlFehlerZL::hilfedatei(), steuerelement);
    if (url.isEmpty() || !QFileInfo::exists(url.toLocalFile()))
        return false;
    return oeffner() ? oeffner()(url) : QDesktopServices::openUrl(url);
}

void setHilfeOeffner(std::function<bool(const QUrl &)> f)
{
    oeffner() = std::move(f);
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
        QWidget *fokus = QApplication::focusWidget();
        hilfeZeigen(fokus && m_fenster->isAncestorOf(fokus) ? fokus : m_fenster);
        return true;
    }
    return QObject::eventFilter(objekt, ereignis);
}

} // namespace frame

#include "Fehlerfalle.h"

#include "MsgBox.h"
#include "Sprache.h"

#include <new>

namespace platform {

namespace {

void standardReporter(const QString &ort, const RuntimeError &fehler)
{
    QString text = laufzeitfehlerText(fehler);
    if (!ort.isEmpty())
        text += QStringLiteral("\r\n\r\n") + ort;
    MsgBox(text, vbCritical);
}

FehlerReporter &reporter()
{
    static FehlerReporter r = standardReporter;
    return r;
}

} // namespace

void setFehlerReporter(FehlerReporter neu)
{
    reporter() = neu ? std::move(neu) : FehlerReporter(standardReporter);
}

void fehlerMelden(const QString &ort, const RuntimeError &fehler)
{
    try {
        // A copy: the reporter may replace itself while it runs.
        const FehlerReporter r = reporter();
        r(ort, fehler);
    } catch (const std::exception &e) {
        qWarning("Fehlerbericht für %s (%d: %s) gescheitert: %s", qUtf8Printable(ort),
                 fehler.nummer(), qUtf8Printable(fehler.beschreibung()), e.what());
    }
}

RuntimeError alsLaufzeitfehler(const std::exception &e)
{
    if (dynamic_cast<const std::bad_alloc *>(&e))
        return RuntimeError(7, QStringLiteral("Nicht genügend Speicher"));
    return RuntimeError(5, QString::fromLocal8Bit(e.what()));
}

void WeiterBeiFehler::gefangen(const RuntimeError &e)
{
    ++m_anzahl;
    m_letzter = e;
    if (m_art == Art::Melden)
        fehlerMelden(m_ort, e);
}

QString laufzeitfehlerText(const RuntimeError &fehler)
{
    return QStringLiteral("Laufzeitfehler '%1':\r\n\r\n%2")
        .arg(fehler.nummer())
        .arg(fehler.beschreibung());
}

void zeigeLaufzeitfehler(const RuntimeError &fehler)
{
    try {
        MsgBox(laufzeitfehlerText(fehler), vbCritical, anwendungsTitel());
    } catch (const std::exception &e) {
        qWarning("Laufzeitfehler %d nicht anzeigbar: %s", fehler.nummer(), e.what());
    }
}

Anwendung::Anwendung(int &argc, char **argv)
    : QApplication(argc, argv)
{
    deutscheStandardtexte();
}

bool Anwendung::notify(QObject *empfaenger, QEvent *ereignis)
{
    try {
        return QApplication::notify(empfaenger, ereignis);
    } catch (const RuntimeError &e) {
        zeigeLaufzeitfehler(e);
    } catch (const std::exception &e) {
        zeigeLaufzeitfehler(alsLaufzeitfehler(e));
    }
    return false;
}

} // namespace platform

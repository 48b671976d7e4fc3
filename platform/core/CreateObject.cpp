#include "CreateObject.h"

#include "RuntimeError.h"

#include <QHash>
#include <QMetaMethod>
#include <QMetaProperty>
#include <array>

namespace platform {

namespace {

QHash<QString, Komponentenfabrik> &registry()
{
    static QHash<QString, Komponentenfabrik> r;
    return r;
}

QString schluessel(const QString &progId)
{
    return progId.trimmed().toLower();
}

[[noreturn]] void methodeFehlt()
{
    throw RuntimeError(fehlernummer::MethodeNichtUnterstuetzt,
                       QStringLiteral("Objekt unterstützt diese Eigenschaft oder Methode nicht"));
}

void objektPruefen(const QObject *objekt)
{
    if (!objekt)
        RuntimeError::ausloesen(fehlernummer::ObjektvariableNichtFestgelegt);
}

} // namespace

void registriereKomponente(const QString &progId, Komponentenfabrik fabrik)
{
    registry().insert(schluessel(progId), std::move(fabrik));
}

void entferneKomponente(const QString &progId)
{
    registry().remove(schluessel(progId));
}

bool komponenteRegistriert(const QString &progId)
{
    return registry().contains(schluessel(progId));
}

std::unique_ptr<QObject> CreateObject(const QString &progId)
{
    const auto it = registry().constFind(schluessel(progId));
    if (it == registry().constEnd() || !*it)
        RuntimeError::ausloesen(fehlernummer::ObjektNichtErstellbar);
    // Copy the factory: it may register other components while it runs.
    const Komponentenfabrik fabrik = *it;
    auto objekt = fabrik();
    if (!objekt)
        RuntimeError::ausloesen(fehlernummer::ObjektNichtErstellbar);
    return objekt;
}

KomponentenRegistrierung::KomponentenRegistrierung(QString progId, Komponentenfabrik fabrik)
    : m_progId(std::move(progId))
{
    const auto it = registry().constFind(schluessel(m_progId));
    if (it != registry().constEnd())
        m_vorher = *it;
    registriereKomponente(m_progId, std::move(fabrik));
}

KomponentenRegistrierung::~KomponentenRegistrierung()
{
    if (m_vorher)
        registriereKomponente(m_progId, *m_vorher);
    else
        entferneKomponente(m_progId);
}

QVariant aufrufen(QObject *objekt, const char *methode, const QVariantList &argumente)
{
    objektPruefen(objekt);
    constexpr int maxArgumente = 10; // what QMetaMethod::invoke takes
    const QMetaObject *meta = objekt->metaObject();
    const QByteArray name(methode);
    QMetaMethod gefunden;
    bool nameBekannt = false;
    for (int i = meta->methodCount() - 1; i >= 0; --i) {
        const QMetaMethod m = meta->method(i);
        if (m.methodType() == QMetaMethod::Signal || m.name().compare(name, Qt::CaseInsensitive))
            continue;
        nameBekannt = true;
        if (m.parameterCount() == argumente.size()) {
            gefunden = m;
            break;
        }
    }
    if (!nameBekannt)
        methodeFehlt();
    if (!gefunden.isValid() || argumente.size() > maxArgumente)
        throw RuntimeError(fehlernummer::FalscheArgumentanzahl,
                           QStringLiteral("Falsche Anzahl an Argumenten oder ungültige "
                                          "Eigenschaftszuweisung"));

    // Each argument converted to its parameter's type; QVariant parameters take it as it is.
    QVariantList werte;
    werte.reserve(argumente.size());
    std::array<QGenericArgument, maxArgumente> args {};
    for (int i = 0; i < argumente.size(); ++i) {
        const QMetaType typ = gefunden.parameterMetaType(i);
        if (typ == QMetaType::fromType<QVariant>()) {
            werte.append(argumente[i]);
            args[i] = QGenericArgument("QVariant", &werte[i]);
            continue;
        }
        QVariant w = argumente[i];
        if (!w.isValid())
            w = QVariant(typ);
        if (!w.convert(typ))
            RuntimeError::ausloesen(fehlernummer::Typenkonflikt);
        werte.append(w);
        args[i] = QGenericArgument(typ.name(), werte[i].constData());
    }

    QVariant ergebnis;
    QVariant ergebnisVariant;
    QGenericReturnArgument rueckgabe;
    const QMetaType rueckTyp = gefunden.returnMetaType();
    if (rueckTyp == QMetaType::fromType<QVariant>()) {
        rueckgabe = QGenericReturnArgument("QVariant", &ergebnisVariant);
    } else if (rueckTyp.isValid() && rueckTyp.id() != QMetaType::Void) {
        ergebnis = QVariant(rueckTyp);
        rueckgabe = QGenericReturnArgument(rueckTyp.name(), ergebnis.data());
    }
    const bool ok
        = gefunden.invoke(objekt, Qt::DirectConnection, rueckgabe, args[0], args[1], args[2],
                          args[3], args[4], args[5], args[6], args[7], args[8], args[9]);
    if (!ok)
        methodeFehlt();
    return rueckTyp == QMetaType::fromType<QVariant>() ? ergebnisVariant : ergebnis;
}

QVariant eigenschaft(const QObject *objekt, const char *name)
{
    objektPruefen(objekt);
    const int index = objekt->metaObject()->indexOfProperty(name);
    if (index < 0)
        methodeFehlt();
    return objekt->metaObject()->property(index).read(objekt);
}

void eigenschaftSetzen(QObject *objekt, const char *name, const QVariant &wert)
{
    objektPruefen(objekt);
    const int index = objekt->metaObject()->indexOfProperty(name);
    if (index < 0)
        methodeFehlt();
    const QMetaProperty p = objekt->metaObject()->property(index);
    QVariant w = wert;
    if (p.metaType() != QMetaType::fromType<QVariant>() && !w.convert(p.metaType()))
        RuntimeError::ausloesen(fehlernummer::Typenkonflikt);
    if (!p.write(objekt, w))
        methodeFehlt();
}

} // namespace platform

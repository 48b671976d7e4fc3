#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <functional>
#include <memory>
#include <optional>

namespace platform {

// Error numbers of late binding, beside those in RuntimeError.h.
namespace fehlernummer {
constexpr int MethodeNichtUnterstuetzt = 438;
constexpr int FalscheArgumentanzahl = 450;
} // namespace fehlernummer

using Komponentenfabrik = std::function<std::unique_ptr<QObject>()>;

// Registers (or replaces) the factory for a program id. Program ids are matched without regard
// to case, as the system's registry does.
void registriereKomponente(const QString &progId, Komponentenfabrik fabrik);
void entferneKomponente(const QString &progId);
bool komponenteRegistriert(const QString &progId);

// Creates the component registered under `progId`. Raises RuntimeError 429 when no factory is
// registered or the factory yields nothing; errors of the factory itself pass through.
std::unique_ptr<QObject> CreateObject(const QString &progId);

// Registers a factory for the lifetime of the object and then restores what was registered
// before (another factory or none). Meant for tests that put fakes in place of the siblings.
class KomponentenRegistrierung
{
public:
    KomponentenRegistrierung(QString progId, Komponentenfabrik fabrik);
    ~KomponentenRegistrierung();
    KomponentenRegistrierung(const KomponentenRegistrierung &) = delete;
    KomponentenRegistrierung &operator=(const KomponentenRegistrierung &) = delete;

private:
    QString m_progId;
    std::optional<Komponentenfabrik> m_vorher;
};

// Late-bound call of an operation of a component (a Q_INVOKABLE method or slot), as the original
// calls its siblings. Arguments are converted to the parameter types; the result comes back as
// a variant (invalid for void). Raises 91 for a null object, 438 when no method of that name
// exists, 450 when none takes that many arguments, 13 when an argument cannot be converted.
QVariant aufrufen(QObject *objekt, const char *methode, const QVariantList &argumente = {});

// Late-bound property access; 438 when the object has no such property, 91 for a null object.
QVariant eigenschaft(const QObject *objekt, const char *name);
void eigenschaftSetzen(QObject *objekt, const char *name, const QVariant &wert);

} // namespace platform

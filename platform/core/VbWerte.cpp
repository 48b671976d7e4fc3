#include "VbWerte.h"

#include "RuntimeError.h"

#include <QDate>
#include <QDateTime>
#include <cmath>
#include <limits>
#include <optional>

namespace platform::vb {

namespace {

constexpr int Ueberlauf = 6;
constexpr int UnzulaessigesNull = 94;

[[noreturn]] void fehler(int nummer)
{
    switch (nummer) {
    case Ueberlauf:
        throw RuntimeError(nummer, QStringLiteral("Überlauf"));
    case UnzulaessigesNull:
        throw RuntimeError(nummer, QStringLiteral("Unzulässige Verwendung von Null"));
    default:
        RuntimeError::ausloesen(nummer);
    }
}

bool istNull(const QVariant &w)
{
    // A null QVariant of a concrete type (e.g. a database NULL) is the runtime's Null;
    // an invalid QVariant is Empty.
    return w.isValid() && w.isNull() && w.typeId() != QMetaType::QString;
}

std::optional<double> alsZahl(const QString &text)
{
    QString t = text.trimmed();
    if (t.isEmpty())
        return std::nullopt;
    t.replace(QLatin1Char(','), QLatin1Char('.'));
    bool ok = false;
    const double d = t.toDouble(&ok);
    if (!ok || !std::isfinite(d))
        return std::nullopt;
    return d;
}

double zahlVon(const QVariant &wert)
{
    if (!wert.isValid())
        return 0;
    if (istNull(wert))
        fehler(UnzulaessigesNull);
    switch (wert.typeId()) {
    case QMetaType::Bool:
        return wert.toBool() ? -1 : 0;
    case QMetaType::QString: {
        const QString t = wert.toString();
        if (t.trimmed().compare(QLatin1String("Wahr"), Qt::CaseInsensitive) == 0
            || t.trimmed().compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
            return -1;
        if (t.trimmed().compare(QLatin1String("Falsch"), Qt::CaseInsensitive) == 0
            || t.trimmed().compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
            return 0;
        const auto d = alsZahl(t);
        if (!d)
            fehler(fehlernummer::Typenkonflikt);
        return *d;
    }
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Double:
    case QMetaType::Float:
        return wert.toDouble();
    default:
        fehler(fehlernummer::Typenkonflikt);
    }
}

template<typename T> T ganzzahl(const QVariant &wert)
{
    const double d = std::nearbyint(zahlVon(wert)); // default rounding: half to even
    if (d < std::numeric_limits<T>::min() || d > std::numeric_limits<T>::max())
        fehler(Ueberlauf);
    return static_cast<T>(d);
}

} // namespace

QString CStr(const QVariant &wert)
{
    if (!wert.isValid())
        return {};
    if (istNull(wert))
        fehler(UnzulaessigesNull);
    switch (wert.typeId()) {
    case QMetaType::Bool:
        return wert.toBool() ? QStringLiteral("Wahr") : QStringLiteral("Falsch");
    case QMetaType::Double:
    case QMetaType::Float: {
        QString t = QString::number(wert.toDouble(), 'g', 15);
        return t.replace(QLatin1Char('.'), QLatin1Char(','));
    }
    case QMetaType::QDate:
        return wert.toDate().toString(QStringLiteral("dd.MM.yyyy"));
    case QMetaType::QDateTime:
        return wert.toDateTime().toString(QStringLiteral("dd.MM.yyyy hh:mm:ss"));
    default:
        if (wert.canConvert<QString>())
            return wert.toString();
        fehler(fehlernummer::Typenkonflikt);
    }
}

qint16 CInt(const QVariant &wert)
{
    return ganzzahl<qint16>(wert);
}

qint32 CLng(const QVariant &wert)
{
    return ganzzahl<qint32>(wert);
}

bool gleich(const QVariant &wert, double zahl)
{
    if (istNull(wert))
        return false;
    return zahlVon(wert) == zahl;
}

} // namespace platform::vb

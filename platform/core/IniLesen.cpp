#include "IniLesen.h"

#include <QDir>
#include <QFile>
#include <QStringDecoder>

namespace platform {

namespace {

// The original reads into a buffer of 32 blanks; the system call keeps one for the terminator.
constexpr qsizetype PufferLaenge = 32;

QString dateiText(QFile &f)
{
    const QByteArray daten = f.readAll();
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8.decode(daten);
    if (utf8.hasError())
        text = QString::fromLatin1(daten);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    return text;
}

QString ohneAnfuehrungszeichen(const QString &wert)
{
    if (wert.size() > 1 && (wert.front() == u'"' || wert.front() == u'\'')
        && wert.back() == wert.front())
        return wert.mid(1, wert.size() - 2);
    return wert;
}

} // namespace

QString IniLesen(const QString &datei, const QString &sektion, const QString &schluessel)
{
    const QString gesuchteSektion = sektion.trimmed();
    const QString gesuchterSchluessel = schluessel.trimmed();
    if (gesuchteSektion.isEmpty() || gesuchterSchluessel.isEmpty())
        return {};
    QFile f(datei);
    if (!f.open(QIODevice::ReadOnly))
        return {};

    const QString text = dateiText(f);
    bool inSektion = false;
    bool sektionGesehen = false;
    for (QStringView zeileRoh : QStringView(text).split(u'\n')) {
        const QStringView zeile = zeileRoh.trimmed();
        if (zeile.isEmpty() || zeile.front() == u';')
            continue;
        if (zeile.front() == u'[') {
            // Only the first section of that name is searched.
            if (inSektion)
                return {};
            qsizetype ende = zeile.lastIndexOf(u']');
            if (ende < 0)
                ende = zeile.size();
            const QStringView name = zeile.mid(1, ende - 1).trimmed();
            inSektion = !sektionGesehen && name.compare(gesuchteSektion, Qt::CaseInsensitive) == 0;
            sektionGesehen = sektionGesehen || inSektion;
            continue;
        }
        if (!inSektion)
            continue;
        const qsizetype gleich = zeile.indexOf(u'=');
        const QStringView name = (gleich < 0 ? zeile : zeile.left(gleich)).trimmed();
        if (name.compare(gesuchterSchluessel, Qt::CaseInsensitive) != 0)
            continue;
        if (gleich < 0)
            return {};
        const QString wert = ohneAnfuehrungszeichen(zeile.mid(gleich + 1).trimmed().toString());
        return wert.left(PufferLaenge - 1);
    }
    return {};
}

QString EinstellungsDatei()
{
    QString profil = qEnvironmentVariable("USERPROFILE");
    if (profil.isEmpty())
        profil = QDir::homePath();
    return profil + QStringLiteral("/ZEL-Settings.ini");
}

} // namespace platform

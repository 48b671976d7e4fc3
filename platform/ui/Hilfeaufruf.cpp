#include "platform/ui/Hilfeaufruf.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace platform {

namespace {

HilfeOeffner &oeffner()
{
    static HilfeOeffner f;
    return f;
}

bool desktopOeffnen(const QString &datei, const QString &kontext)
{
    if (datei.isEmpty())
        return false;
    QUrl url = QUrl::fromLocalFile(QFileInfo(datei).absoluteFilePath());
    if (!kontext.isEmpty() && kontext != QLatin1String("0"))
        url.setFragment(kontext);
    return QDesktopServices::openUrl(url);
}

} // namespace

void setHilfeOeffner(HilfeOeffner f)
{
    oeffner() = std::move(f);
}

bool hilfeOeffnen(const QString &datei, const QString &kontext)
{
    const QString k = kontext.trimmed();
    return oeffner() ? oeffner()(datei, k) : desktopOeffnen(datei, k);
}

} // namespace platform

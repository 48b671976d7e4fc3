#include "Fehlerbericht.h"

#include <cstdio>

namespace frame {

namespace {

void aufStderr(const QString &fehlerOrt, const platform::RuntimeError &fehler)
{
    const QByteArray text = QStringLiteral("Fehler %1 %2: %3\n")
                                .arg(fehler.nummer())
                                .arg(fehlerOrt, fehler.beschreibung())
                                .toLocal8Bit();
    std::fputs(text.constData(), stderr);
}

FehlerMelder &melder()
{
    static FehlerMelder m = aufStderr;
    return m;
}

} // namespace

void setFehlerMelder(FehlerMelder neu)
{
    melder() = neu ? std::move(neu) : FehlerMelder(aufStderr);
}

void FehlerMelden(const QString &fehlerOrt, const platform::RuntimeError &fehler)
{
    // A report must not end the procedure that trapped the error.
    try {
        melder()(fehlerOrt, fehler);
    } catch (const std::exception &e) {
        std::fprintf(stderr, "Fehlerbericht fehlgeschlagen: %s\n", e.what());
    }
}

} // namespace frame

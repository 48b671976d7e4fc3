#include "jahr/Einfuegen.h"

namespace jahr {

void kontenEinfuegen(kontenregeln::Database &db, const QStringList &spalten, qint64 anzahl,
                     const std::function<QVariantList(qint64)> &zeile,
                     const std::function<void(qint64)> &fortschritt)
{
    // Parameters per statement: SQLite before 3.32 takes 999, PostgreSQL 65,535; a year of half
    // a million accounts then needs a thousand statements, not half a million.
    const qsizetype grenze = db.engine() == platform::storage::Engine::PostgreSql ? 30000 : 999;
    const qint64 proAnweisung
        = std::max<qint64>(1, grenze / std::max<qsizetype>(1, spalten.size()));
    const QString kopf = QStringLiteral("INSERT INTO ObjKanzleiKontenstamm (%1) VALUES ")
                             .arg(spalten.join(QStringLiteral(", ")));
    const QString platzhalter
        = u'(' + QStringList(spalten.size(), QStringLiteral("?")).join(u',') + u')';
    for (qint64 anfang = 0; anfang < anzahl; anfang += proAnweisung) {
        const qint64 n = std::min(proAnweisung, anzahl - anfang);
        QVariantList params;
        params.reserve(n * spalten.size());
        for (qint64 i = anfang; i < anfang + n; ++i)
            params += zeile(i);
        db.execute(kopf + QStringList(n, platzhalter).join(u','), params);
        if (fortschritt)
            fortschritt(anfang + n);
    }
}

} // namespace jahr

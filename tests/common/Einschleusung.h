#pragma once

#include <QStringList>

namespace testhilfe {

// About a hundred attempts to smuggle SQL into a statement through a typed value: each of the
// base forms as typed, after a number, in capitals and with trailing blanks. ASCII only, so
// that they can be typed key by key.
inline QStringList einschleusungen()
{
    const QStringList basis = {
        "' OR '1'='1",
        "'; DROP TABLE ObjKanzleiKontenstamm; --",
        "\" OR \"\"=\"",
        "1; DELETE FROM ObjKanzleiKontenstamm",
        "' UNION SELECT * FROM AllgSchluesselDaten --",
        "admin'--",
        "') OR ('a'='a",
        "%' OR 1=1 --",
        "1' AND SLEEP(1)--",
        "'||(SELECT 1)||'",
        "\\'; --",
        "'/*",
        "*/'",
        "' OR 1=1#",
        "'; UPDATE ObjKanzleiKontenstamm SET KontoTypus=9; --",
        "'); INSERT INTO ObjKanzleiKontenstamm (KontoNr) VALUES ('6666'); --",
        "$$; DROP TABLE KreditorenKontenstamm; $$",
        "E'\\x27'",
        "1 OR 1=1",
        "''''",
        "\";",
        "?",
        "?, ?",
        "$1",
        "'; COMMIT; DROP TABLE BilanzPos; --",
    };
    QStringList alle;
    for (const QString &b : basis)
        alle << b << QStringLiteral("1000") + b << b.toUpper() << b + QStringLiteral("  ");
    return alle;
}

} // namespace testhilfe

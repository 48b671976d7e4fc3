#pragma once

#include "accounts/regeln/Kontenzeilen.h"

#include <QStringList>
#include <functional>

namespace jahr {

// Inserts `anzahl` rows of ObjKanzleiKontenstamm (values in the order of `spalten`), many rows
// per statement, inside the caller's transaction. Progress after every statement.
void kontenEinfuegen(kontenregeln::Database &db, const QStringList &spalten, qint64 anzahl,
                     const std::function<QVariantList(qint64)> &zeile,
                     const std::function<void(qint64)> &fortschritt = {});

} // namespace jahr

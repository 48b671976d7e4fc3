#pragma once

#include "common/TestDatenbank.h"

#include <QString>
#include <cstdio>
#include <vector>

// The engines a stress program runs on: "sqlcipher", "postgresql" or "beide". PostgreSQL needs
// ZEP_TEST_PG_URI; without it that engine is left out and `vollstaendig` becomes false.
inline std::vector<testhilfe::Engine> engines(const QString &welche, bool &vollstaendig)
{
    std::vector<testhilfe::Engine> e;
    if (welche != u"postgresql")
        e.push_back(testhilfe::Engine::SqlCipher);
    if (welche != u"sqlcipher") {
        if (qEnvironmentVariableIsEmpty("ZEP_TEST_PG_URI")) {
            std::fprintf(stderr, "PostgreSQL: ZEP_TEST_PG_URI ist nicht gesetzt.\n");
            vollstaendig = false;
        } else {
            e.push_back(testhilfe::Engine::PostgreSql);
        }
    }
    return e;
}

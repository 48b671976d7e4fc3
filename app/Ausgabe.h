#pragma once

#include <QTextStream>

// The terminal tools' standard output and error, one stream each for the whole program, so that
// the tools' lines come out in the order they were written.
inline QTextStream &aus()
{
    static QTextStream s(stdout);
    return s;
}

inline QTextStream &err()
{
    static QTextStream s(stderr);
    return s;
}

#pragma once

// A layer over the default file system of the file engine that fails every write with a chosen
// error while it is set, as a full or a broken disk does; for tests of what the user is told and
// that nothing is half-written. Only connections opened while it lives go through it.

#include <sqlite3.h>

namespace testhilfe {

struct SchreibMethoden
{
    const sqlite3_io_methods *original = nullptr;
    sqlite3_io_methods kopie {};
};

class Schreibfehler
{
public:
    explicit Schreibfehler()
    {
        s_unten = sqlite3_vfs_find(nullptr);
        m_vfs = *s_unten;
        m_vfs.zName = "zep_schreibfehler";
        m_vfs.xOpen = &oeffnen;
        sqlite3_vfs_register(&m_vfs, 1);
    }
    ~Schreibfehler()
    {
        sqlite3_vfs_register(s_unten, 1);
        sqlite3_vfs_unregister(&m_vfs);
        s_fehler = SQLITE_OK;
    }
    static inline int s_fehler = SQLITE_OK;

private:
    // The file stays the lower layer's; only its write method is exchanged. The lower layer has
    // methods of its own per kind of file (with locking or without, for the WAL and journal):
    // one exchanged copy of each.
    static inline SchreibMethoden s_methoden[8];
    static int oeffnen(sqlite3_vfs *, sqlite3_filename name, sqlite3_file *f, int flags, int *aus)
    {
        const int rc = s_unten->xOpen(s_unten, name, f, flags, aus);
        if (rc != SQLITE_OK || !f->pMethods)
            return rc;
        for (SchreibMethoden &m : s_methoden) {
            if (!m.original) {
                m.original = f->pMethods;
                m.kopie = *f->pMethods;
                m.kopie.xWrite = &schreiben;
            }
            if (m.original == f->pMethods) {
                f->pMethods = &m.kopie;
                break;
            }
        }
        return rc;
    }
    static int schreiben(sqlite3_file *f, const void *daten, int n, sqlite3_int64 wo)
    {
        if (s_fehler != SQLITE_OK)
            return s_fehler;
        for (const SchreibMethoden &m : s_methoden) {
            if (&m.kopie == f->pMethods)
                return m.original->xWrite(f, daten, n, wo);
        }
        return SQLITE_IOERR_WRITE;
    }
    static inline sqlite3_vfs *s_unten = nullptr;
    sqlite3_vfs m_vfs {};
};

} // namespace testhilfe

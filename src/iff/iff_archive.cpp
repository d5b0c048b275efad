#include "iff/iff_archive.h"

bool IffArchive::CanDeliver(i64 count) {
    if (m_bFailed || count < 0 || count > GetRemaining() || count > i64{GetSourceRemaining()})
        m_bFailed = true;
    return !m_bFailed;
}

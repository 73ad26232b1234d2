// The contract operations that the catalogues ask, on what a fuzz input holds: one file, one record, one setting.
#pragma once

#include "contracts/CoreServices.h"

#include <string>
#include <sys/mman.h>
#include <unistd.h>

namespace fuzz {

/// A file in memory, always the same, that is reached by a path.
class MemoryFile {
public:
    MemoryFile() : m_file(memfd_create("catalog", 0)), m_path(L"/proc/self/fd/" + std::to_wstring(m_file)) {}
    void hold(const std::string &bytes)
    {
        m_isThere = ftruncate(m_file, 0) == 0 &&
                    pwrite(m_file, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size());
    }
    void remove() { m_isThere = false; }
    bool isThere() const { return m_isThere; }
    const std::wstring &path() const { return m_path; }

private:
    int m_file;
    std::wstring m_path;
    bool m_isThere = false;
};

inline MemoryFile file;
inline bool hasRecord = false;
inline std::wstring record;
inline int codePage = 1250;

} // namespace fuzz

int acedFindFile(const wchar_t *, std::wstring &path)
{
    if (!fuzz::file.isThere())
        return RTERROR;
    path = fuzz::file.path();
    return RTNORM;
}

CZEMCDictionaryPtr::CZEMCDictionaryPtr(AcDb::OpenMode mode) : m_mode(mode) {}
bool CZEMCDictionaryPtr::upgradeOpen()
{
    m_mode = AcDb::kForWrite;
    return true;
}
bool CZEMCDictionaryPtr::dctRead(const wchar_t *, const wchar_t *, std::wstring &value, bool) const
{
    if (fuzz::hasRecord)
        value = fuzz::record;
    return fuzz::hasRecord;
}
bool CZEMCDictionaryPtr::dctWrite(const wchar_t *, const wchar_t *, const std::wstring &value, bool, bool, short)
{
    if (m_mode != AcDb::kForWrite)
        return false;
    fuzz::hasRecord = true;
    fuzz::record = value;
    return true;
}

ZEMGis::CModuleConfiguration *ZEMGis::CModuleConfiguration::Instance()
{
    static CModuleConfiguration configuration;
    return &configuration;
}
int ZEMGis::CModuleConfiguration::GetGSValueInt(const wchar_t *, int &value) const
{
    value = fuzz::codePage;
    return 1;
}
std::wstring ZEMGis::CModuleConfiguration::GetPath(const wchar_t *) const
{
    return {};
}

// GUIDs, and the attributes of a block definition.
#include "contracts/CoreServices.h"
#include "host/drawing/Blocks.h"
#include "host/drawing/Journal.h"

#include <array>
#include <random>

#include <unistd.h>

namespace ZEMGis::Utility {

std::wstring CUtility::CreateGUID()
{
    std::array<std::uint32_t, 4> words{};
    // The system's own source: no seed that two runs could share.
    if (::getentropy(words.data(), sizeof words) != 0) {
        std::random_device device;
        for (auto &word : words)
            word = device();
    }
    words[1] = (words[1] & 0xFFFF0FFF) | 0x00004000; // version 4
    words[2] = (words[2] & 0x3FFFFFFF) | 0x80000000; // the standard variant
    std::wstring guid = L"{";
    for (int digit = 0; digit < 32; ++digit) {
        if (digit == 8 || digit == 12 || digit == 16 || digit == 20)
            guid += L'-';
        guid += L"0123456789ABCDEF"[words[static_cast<std::size_t>(digit / 8)] >> (28 - 4 * (digit % 8)) & 15];
    }
    guid += L'}';
    velmor::journal("CUtility::CreateGUID", guid);
    return guid;
}

int CUtility::GetAttributesFromBlockDef(const AcDbObjectId &definition, CStringArray &tags)
{
    velmor::journal("CUtility::GetAttributesFromBlockDef", definition);
    AcDbObject *object = nullptr;
    if (acdbOpenAcDbObject(object, definition, AcDb::kForRead) != Acad::eOk)
        return 0;
    std::vector<std::wstring> found;
    if (const auto *record = dynamic_cast<const velmor::BlockRecord *>(object))
        found = velmor::attributeTagsOf(*record);
    object->close();
    tags.insert(tags.end(), found.begin(), found.end());
    return static_cast<int>(found.size());
}

} // namespace ZEMGis::Utility

#include "host/sewage/JournalWords.h"

namespace velmor {
namespace {

constexpr char kNull[] = "null";

template <class List, class Word>
std::string joined(const List &list, const char *separator, Word word)
{
    std::string text;
    for (const auto &entry : list) {
        if (!text.empty())
            text += separator;
        text += word(entry);
    }
    return text;
}

} // namespace

std::string journalWord(const boost::shared_ptr<ZEMGis::Topology::CSection> &section)
{
    return section ? journalText(section->GetHandleText()) : kNull;
}

std::string journalWord(const boost::shared_ptr<ZEMGis::Sewage::CCatchmentArea> &area)
{
    return area ? journalText(area->GetGuid()) : kNull;
}

std::string journalWord(const CStringArray &texts)
{
    return '[' + joined(texts, ", ", [](const std::wstring &t) { return journalText(t); }) + ']';
}

std::string journalWord(const ZEMGis::Data::CDataBox &box)
{
    const auto &value = box.value();
    if (const auto *real = std::get_if<double>(&value))
        return journalText(*real);
    if (const auto *whole = std::get_if<int>(&value))
        return journalText(*whole);
    if (const auto *text = std::get_if<std::wstring>(&value))
        return journalText(*text);
    if (const auto *list = std::get_if<CStringArray>(&value))
        return journalWord(*list);
    return kNull;
}

std::string journalWord(const boost::shared_ptr<ZEMGis::Data::CProperties> &properties)
{
    if (!properties)
        return kNull;
    return joined(properties->GetProperties(), "; ", [](const boost::shared_ptr<ZEMGis::Data::CProperty> &p) {
        return p ? journalText(p->GetTag()) + '=' + journalWord(p->GetValue()) : std::string(kNull);
    });
}

std::string journalWord(const ZEMGis::Sewage::SectionShares &sections)
{
    return '[' +
           joined(sections, ", ",
                  [](const ZEMGis::Sewage::SectionShare &s) {
                      return journalWord(s.first) + ' ' + journalText(s.second);
                  }) +
           ']';
}

} // namespace velmor

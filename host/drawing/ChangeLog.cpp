#include "host/drawing/ChangeLog.h"

#include <utility>

namespace velmor {

ChangeLog::ChangeLog(Drawing &drawing) : m_drawing(drawing)
{
    m_drawing.addObserver(*this);
}

ChangeLog::~ChangeLog()
{
    m_drawing.removeObserver(*this);
}

void ChangeLog::begin()
{
    m_runs.push_back(m_changes.size());
}

void ChangeLog::keep()
{
    if (m_runs.empty())
        return;
    m_runs.pop_back();
    if (m_runs.empty())
        m_changes.clear();
}

void ChangeLog::keepForGood()
{
    if (m_runs.empty())
        return;
    m_runs.assign(m_runs.size() - 1, 0);
    m_changes.clear();
}

void ChangeLog::takeBack()
{
    if (m_runs.empty())
        return;
    // Taking back makes changes too, which are nobody's to take back again.
    const auto runs = std::exchange(m_runs, {});
    for (; m_changes.size() > runs.back(); m_changes.pop_back()) {
        if (const auto *erasure = std::get_if<Erasure>(&m_changes.back()))
            m_drawing.erase(*erasure->entity, erasure->erased);
        else if (const auto *attached = std::get_if<Attached>(&m_changes.back()))
            m_drawing.setData(*attached->object, attached->key, attached->before);
        else if (const auto *entry = std::get_if<Entry>(&m_changes.back()))
            m_drawing.setDictionaryEntry(entry->dictionary, entry->key, entry->before);
    }
    m_runs.assign(runs.begin(), runs.end() - 1);
}

void ChangeLog::entityAppended(AcDbEntity &entity)
{
    if (!m_runs.empty())
        m_changes.emplace_back(Erasure{&entity, true});
}

void ChangeLog::entityErased(AcDbEntity &entity, bool erased)
{
    if (!m_runs.empty())
        m_changes.emplace_back(Erasure{&entity, !erased});
}

void ChangeLog::dataChanging(AcDbObject &object, const std::string &key)
{
    if (!m_runs.empty())
        m_changes.emplace_back(Attached{&object, key, m_drawing.data(object, key).value_or(DataItems())});
}

void ChangeLog::dictionaryChanging(const std::string &dictionary, const std::string &key)
{
    if (!m_runs.empty())
        m_changes.emplace_back(
            Entry{dictionary, key, m_drawing.dictionaryEntry(dictionary, key).value_or(DataItems())});
}

} // namespace velmor

// Commands run as a script runs them: a line with the name and its answers.
#pragma once

#include "host/editor/UndoHistory.h"
#include "tests/host/editor/EditorFixture.h"
#include "tests/host/editor/QtFixture.h"

#include <gmock/gmock.h>

namespace velmor::test {

class CommandsFixture : public EditorFixture {
protected:
    CommandsFixture()
    {
        application();
        session.setMessageSink([this](MessageKind, const std::wstring &text) { told.push_back(text); });
    }

    /// Runs a line; false, with why, when it did not end well.
    bool run(const std::wstring &line)
    {
        why.clear();
        return session.commands().run(line, &why);
    }
    /// The living entities of model space, in order.
    std::vector<AcDbEntity *> living()
    {
        std::vector<AcDbEntity *> found;
        for (AcDbEntity *entity : drawing().modelSpace().entities())
            if (!entity->isErased())
                found.push_back(entity);
        return found;
    }
    template <class T>
    T *only()
    {
        const auto all = living();
        return all.size() == 1 ? dynamic_cast<T *>(all[0]) : nullptr;
    }
    template <class T>
    T *last()
    {
        const auto all = living();
        return all.empty() ? nullptr : dynamic_cast<T *>(all.back());
    }
    bool wasTold(const std::wstring &part) const
    {
        return std::ranges::any_of(told, [&](const std::wstring &line) { return line.find(part) != line.npos; });
    }

    std::vector<std::wstring> told;
    std::wstring why;
};

} // namespace velmor::test

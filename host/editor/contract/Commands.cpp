// Commands over argument lists.
#include "contracts/DrawingHost.h"
#include "host/drawing/Journal.h"
#include "host/editor/CommandStack.h"
#include "host/editor/SelectionSets.h"
#include "host/editor/Session.h"

#include <fmt/xchar.h>

#include <cstdarg>
#include <string>
#include <vector>

using velmor::Answer;
using velmor::RunStatus;
using velmor::Session;

namespace {

/// The answers of an argument list, and the same as text for the journal.
struct Arguments {
    std::vector<Answer> answers;
    std::vector<std::string> texts;
    bool bad = false; ///< a value of a kind that is not taken

    void addText(const wchar_t *text)
    {
        const std::wstring words = text ? text : L"";
        texts.push_back(velmor::journalText(words));
        answers.push_back({words});
    }
    void addNumber(double number) { addText(fmt::format(L"{}", number).c_str()); }
    void addPoint(const double *values, bool hasZ)
    {
        if (!values) {
            bad = true;
            return;
        }
        const AcGePoint3d point(values[0], values[1], hasZ ? values[2] : 0.0);
        texts.push_back(velmor::journalText(point));
        answers.push_back({point});
    }
    void addName(const std::int64_t *name)
    {
        AcDbObjectId id;
        texts.push_back(velmor::SelectionSets::textOf(name));
        if (name && velmor::SelectionSets::isSetName(name)) {
            answers.push_back({Answer::Set{name[0]}});
        } else if (name && acdbGetObjectId(id, name) == Acad::eOk) {
            answers.push_back({AcDbObjectIdArray{id}});
        } else {
            bad = true;
        }
    }
};

int run(const char *operation, const Arguments &arguments)
{
    auto &log = velmor::Journal::instance();
    if (log.isRecording())
        log.add({operation, arguments.texts});
    Session *session = Session::currentOrNull();
    if (!session)
        return RTERROR;
    if (arguments.bad || arguments.answers.empty())
        return RTREJ;
    switch (session->commands().runScripted(arguments.answers)) {
    case RunStatus::Done:
        return RTNORM;
    case RunStatus::InputRefused:
        return RTREJ;
    case RunStatus::Cancelled:
        return RTCAN;
    default:
        return RTERROR;
    }
}

} // namespace

int acedCommand(int kind, ...)
{
    Arguments arguments;
    std::va_list list;
    va_start(list, kind);
    for (; kind != RTNONE && kind != 0 && !arguments.bad; kind = va_arg(list, int)) {
        switch (kind) {
        case RTSTR:
            arguments.addText(va_arg(list, const wchar_t *));
            break;
        case RTPOINT:
            arguments.addPoint(va_arg(list, const double *), false);
            break;
        case RT3DPOINT:
            arguments.addPoint(va_arg(list, const double *), true);
            break;
        case RTPICKS:
        case RTENAME:
            arguments.addName(va_arg(list, const std::int64_t *));
            break;
        case RTSHORT:
        case RTLONG:
            arguments.addNumber(va_arg(list, int));
            break;
        case RTREAL:
            arguments.addNumber(va_arg(list, double));
            break;
        default:
            arguments.bad = true;
            break; // the rest of the list can't be read
        }
    }
    va_end(list);
    return run("acedCommand", arguments);
}

int acedCmd(const resbuf *chain)
{
    Arguments arguments;
    for (; chain && chain->restype != RTNONE; chain = chain->rbnext) {
        switch (chain->restype) {
        case RTSTR:
            arguments.addText(chain->resval.rstring);
            break;
        case RTPOINT:
            arguments.addPoint(chain->resval.rpoint, false);
            break;
        case RT3DPOINT:
            arguments.addPoint(chain->resval.rpoint, true);
            break;
        case RTPICKS:
        case RTENAME:
            arguments.addName(chain->resval.rlname);
            break;
        case RTSHORT:
            arguments.addNumber(chain->resval.rint);
            break;
        case RTLONG:
            arguments.addNumber(chain->resval.rlong);
            break;
        case RTREAL:
            arguments.addNumber(chain->resval.rreal);
            break;
        default:
            arguments.bad = true;
            break;
        }
    }
    return run("acedCmd", arguments);
}

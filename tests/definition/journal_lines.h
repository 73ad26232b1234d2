// The journal as lines of text, "operation(argument, argument)", for tests that compare a whole road of calls.
#pragma once

#include "host/drawing/Journal.h"

#include <string>
#include <vector>

using JournalLines = std::vector<std::string>;

inline std::string journalLine(const velmor::JournalEntry &entry)
{
    std::string line = entry.operation + '(';
    for (const std::string &argument : entry.arguments)
        line += (line.back() == '(' ? "" : ", ") + argument;
    return line + ')';
}

/// What stands in the journal.
inline JournalLines journalLines()
{
    JournalLines lines;
    for (const velmor::JournalEntry &entry : velmor::Journal::instance().entries())
        lines.push_back(journalLine(entry));
    return lines;
}

/// What the work wrote into the journal.
template <class Work>
JournalLines recorded(Work work)
{
    velmor::Journal::instance().setRecording(true);
    work();
    velmor::Journal::instance().setRecording(false);
    return journalLines();
}

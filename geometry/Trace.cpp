#include "geometry/Trace.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iostream>

namespace {

constexpr std::size_t kPrefixSize = 999;
constexpr std::size_t kTextSize = 4096;

bool IsWritten(const TraceRecord &record)
{
    return record.m_nLevel <= TraceThreshold();
}

std::ostream &StreamOf(const TraceRecord &record)
{
    return record.m_pStream ? *record.m_pStream : TraceSink();
}

std::string LinePrefix(const TraceRecord &record)
{
    const char *backslash = std::strrchr(record.m_pFile, '\\');
    const char *file = backslash ? backslash + 1 : record.m_pFile;

    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    localtime_r(&now, &local);
    char time[16] = "";
    std::strftime(time, sizeof time, "%H:%M:%S", &local);

    char prefix[kPrefixSize];
    std::snprintf(prefix, sizeof prefix, "[%s] %-32s(%5.5i): [%-16s], ", time, file, record.m_nLine,
                  record.m_pFunction);
    return prefix;
}

/// Writes the pieces as one line behind the prefix, if the level passes.
template <class... Pieces>
void WriteLine(const TraceRecord &record, const Pieces &...pieces)
{
    if (!IsWritten(record))
        return;
    std::ostream &stream = StreamOf(record);
    stream << LinePrefix(record);
    (stream << ... << pieces) << '\n' << std::flush;
}

} // namespace

TraceRecord::TraceRecord(const char *file, int line, const char *function, int level, bool writePrefixNow,
                         std::ostream *stream)
    : m_pFile(file), m_nLine(line), m_pFunction(function), m_nLevel(level), m_pStream(stream)
{
    if (writePrefixNow && IsWritten(*this))
        StreamOf(*this) << LinePrefix(*this);
}

CTraceFrame::CTraceFrame(const char *file, int line, const char *function, int level, bool writePrefixNow,
                         std::ostream *stream)
    : TraceRecord(file, line, function, level, writePrefixNow, stream)
{
    if (!CLogEngine::GetLoggingOnOff())
        return;
    WriteLine(*this, "Entering function ", ", ", m_pFunction);
    TraceCallStack().emplace_back(m_pFunction);
}

CTraceFrame::~CTraceFrame()
{
    if (!CLogEngine::GetLoggingOnOff())
        return;
    WriteLine(*this, "Exiting function ", ", ", m_pFunction);
    if (!TraceCallStack().empty())
        TraceCallStack().pop_back();
}

void TraceText(const TraceRecord &record, const char *text)
{
    WriteLine(record, text);
}

void TraceFormat(const TraceRecord &record, const char *format, ...)
{
    char text[kTextSize];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    WriteLine(record, text);
}

bool TraceVerify(const TraceRecord &record, bool condition, const char *expression)
{
    if (!condition)
        WriteLine(record, "Failed verification:  '", expression, "'");
    return condition;
}

int TraceThreshold(bool onlyRead, int value)
{
    static int threshold = kTraceLevel;
    if (!onlyRead)
        threshold = value;
    return threshold;
}

std::ostream &TraceSink()
{
    static const std::string path = CLogEngine::GetLogFileFullPath();
    static std::ofstream file(path, std::ios::out | std::ios::app);
    static const bool opened = file.is_open();
    return opened ? file : std::cout;
}

std::vector<std::string> &TraceCallStack()
{
    static std::vector<std::string> stack;
    return stack;
}

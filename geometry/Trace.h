// Diagnostic trace: one line at a time to the logging library's file.
//
// It stands with the geometry, the lowest folder that writes traces; what stands above includes it from here.
// A site asks CLogEngine::GetLoggingOnOff() before it makes a record, so that it costs one call when tracing is off:
//
//     CTraceFrame frame(__FILE__, __LINE__, "CClass::Function");
//     if (CLogEngine::GetLoggingOnOff())
//         TraceFormat(TraceRecord(__FILE__, __LINE__, "CClass::Function"), "count:%d", count);
//
// A line is written when its record's level is at most TraceThreshold, and is flushed. Nothing reads the trace, no
// write is checked, nothing throws. Main thread only.
#pragma once

#include "contracts/LogEngine.h"

#include <iosfwd>
#include <string>
#include <vector>

/// Level of every site of the module.
inline constexpr int kTraceLevel = 3;

/// A source position with its level. The texts must outlive it; they are literals at every site.
class TraceRecord {
public:
    /// stream null means TraceSink. writePrefixNow writes the line prefix at once when the level passes.
    TraceRecord(const char *file, int line, const char *function, int level = kTraceLevel, bool writePrefixNow = false,
                std::ostream *stream = nullptr);

    const char *m_pFile;
    int m_nLine;
    const char *m_pFunction;
    int m_nLevel;
    void *m_context[5] = {}; ///< handed on to the line writers, which ignore it
    std::ostream *m_pStream;
};

/// Writes an enter line at once and an exit line (with the same line number) when its scope ends, by an exception too,
/// and keeps the function on TraceCallStack meanwhile. Does nothing while the master switch is off.
class CTraceFrame : public TraceRecord {
public:
    CTraceFrame(const char *file, int line, const char *function, int level = kTraceLevel, bool writePrefixNow = false,
                std::ostream *stream = nullptr);
    ~CTraceFrame();
    CTraceFrame(const CTraceFrame &) = delete;
    CTraceFrame &operator=(const CTraceFrame &) = delete;
};

void TraceText(const TraceRecord &record, const char *text);
/// As printf, cut at a buffer of 4096 characters.
void TraceFormat(const TraceRecord &record, const char *format, ...) __attribute__((format(printf, 2, 3)));
/// Writes a line when condition is false; condition comes back in every case.
bool TraceVerify(const TraceRecord &record, bool condition, const char *expression);

/// The greatest level that is written, at first 3. With onlyRead false it becomes value before it is returned.
int TraceThreshold(bool onlyRead = true, int value = 0);
/// The log file, opened for appending at first use, or standard output when it can't be opened.
std::ostream &TraceSink();
/// Names of the functions whose frames are open, outermost first.
std::vector<std::string> &TraceCallStack();

#include "host/drawing/StepRecorder.h"

namespace velmor {

StepRecorder::StepRecorder(Drawing &drawing) : m_log(drawing.component<ChangeLog>())
{
    if (!m_log.knowsEverything() || m_log.undoCount() != 0 || m_log.redoCount() != 0)
        return;
    m_steps.emplace();
    m_steps->codec = std::make_unique<StepCodec>(drawing);
    m_log.addFollower(*this);
}

StepRecorder::~StepRecorder()
{
    end();
}

std::optional<RecordedSteps> StepRecorder::take()
{
    auto steps = std::move(m_steps);
    end();
    return steps;
}

void StepRecorder::end()
{
    m_log.removeFollower(*this);
    m_steps.reset();
}

void StepRecorder::put(char type, std::optional<std::string> bytes)
{
    if (!m_steps)
        return;
    if (bytes)
        m_steps->records.push_back({type, *std::move(bytes)});
    else
        m_steps.reset();
}

void StepRecorder::stepDone(const ChangeStep &step)
{
    if (m_steps)
        put(journal_record::kStep, m_steps->codec->encode(step));
}

void StepRecorder::stepUndone(const ChangeStep &)
{
    put(journal_record::kUndone, "");
}

void StepRecorder::stepRedone(const ChangeStep &)
{
    put(journal_record::kRedone, "");
}

void StepRecorder::stepsMerged()
{
    put(journal_record::kMerged, "");
}

void StepRecorder::handleGiven(const AcDbObject &object)
{
    if (m_steps)
        put(journal_record::kHandle, m_steps->codec->encodeHandle(object));
}

void StepRecorder::numbersKept(std::uint64_t next)
{
    put(journal_record::kNumbers, bytesOfNumber(next));
}

/// Who keeps the drawing names its file by himself, and counts from there.
void StepRecorder::drawingSaved()
{
    m_steps.reset();
}

} // namespace velmor

// The steps of a drawing that nobody keeps yet, as records for its journal.
//
// Made (drawing.component<StepRecorder>()) before a drawing is filled, say by an import, it spares whoever keeps the
// drawing later to undo and redo all that was done till then.
#pragma once

#include "host/drawing/ChangeLog.h"
#include "host/drawing/StepCodec.h"
#include "host/drawing/StepJournal.h"

#include <memory>
#include <optional>
#include <vector>

namespace velmor {

struct RecordedSteps {
    std::unique_ptr<StepCodec> codec; ///< which took part in all of them; to go on with
    std::vector<JournalRecordInFile> records;
};

class StepRecorder final : private StepFollower {
public:
    /// From now on the drawing's steps are recorded, if it is as it was read.
    explicit StepRecorder(Drawing &drawing);
    ~StepRecorder() override;
    /// Ends the recording. Nothing when not all steps are known that were done, or one can't be told as bytes.
    std::optional<RecordedSteps> take();

private:
    void stepDone(const ChangeStep &step) override;
    void stepUndone(const ChangeStep &step) override;
    void stepRedone(const ChangeStep &step) override;
    void stepsMerged() override;
    void handleGiven(const AcDbObject &object) override;
    void numbersKept(std::uint64_t next) override;
    void drawingSaved() override;
    void put(char type, std::optional<std::string> bytes);
    void end();

    ChangeLog &m_log;
    std::optional<RecordedSteps> m_steps; ///< nothing: it is not recorded (any more)
};

} // namespace velmor

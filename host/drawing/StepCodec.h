// Steps of a drawing as bytes and back, so that a journal can repeat them on the text that the drawing was read from.
//
// Both sides number what comes in as the steps come: the one that writes follows the drawing's log from the first step
// on, the one that reads takes the steps in the same order. What stood in the text is named by its place there, what
// came later by its number. The bytes are for the machine that wrote them: native byte order, no versions.
#pragma once

#include "host/drawing/ChangeRecord.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velmor {

class StepCodec {
public:
    /// REQUIRES: the drawing is as it was read (no step was done to it yet).
    explicit StepCodec(Drawing &drawing);

    /// A step that is done, as bytes; nothing when it names something that the text can't tell from others.
    std::optional<std::string> encode(const ChangeStep &step);
    std::optional<std::string> encodeHandle(const AcDbObject &object);

    /// The step, in the state of one that was undone: ChangeLog::replay does it. Its objects are made, erased. Nothing
    /// for bytes that are no step of this drawing; the drawing is as before then, but for erased objects.
    std::optional<ChangeStep> decode(std::string_view bytes);
    /// Gives an object the handle that it got. False for bytes that say no such thing.
    bool applyHandle(std::string_view bytes);

private:
    class Writer;
    class Reader;
    friend class Writer;
    friend class Reader;
    AcDbObject *atOffset(std::uint64_t offset);

    Drawing &m_drawing;
    std::vector<AcDbObject *> m_made; ///< objects that came since, by number
    std::unordered_map<const AcDbObject *, std::uint64_t> m_numbers;
    std::vector<std::uint32_t> m_layers; ///< index of each layer by number
    std::unordered_map<std::uint32_t, std::uint32_t> m_layerNumbers;
    std::vector<BlockRecord *> m_blocks;
    std::unordered_map<const BlockRecord *, std::uint32_t> m_blockNumbers;
    std::unordered_map<std::uint64_t, AcDbObject *> m_byOffset; ///< made at the first question
};

} // namespace velmor

// The tree list's model under random steps read from bytes, also from inside its notices and with memory that fails:
// after each step it equals a plain tree that is counted anew.
#include "fuzz/Require.h"
#include "tests/controls/EditOps.h"
#include "tests/controls/TreeListSteps.h"

namespace {

constexpr unsigned kMostSteps = 400;

class ByteSource : public tree_list_steps::Source {
public:
    ByteSource(const std::uint8_t *data, std::size_t size) : m_bytes(data, size) {}
    unsigned Below(unsigned bound) override
    {
        return (bound > 256 ? m_bytes.Next() * 256 + m_bytes.Next() : m_bytes.Next()) % bound;
    }
    bool AtEnd() const { return m_bytes.AtEnd(); }

private:
    edit_ops::Bytes m_bytes;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ByteSource bytes(data, size);
    const unsigned kind = bytes.Below(4);
    tree_list_steps::Options options;
    options.wide = kind >= 2;
    options.most = options.wide ? 300 : 30;
    options.pooled = kind % 2 == 0;
    options.everyText = true;
    tree_list_steps::Walk walk(bytes, options);
    while (!bytes.AtEnd() && walk.Steps() < kMostSteps)
        require(walk.Step(), walk.What().c_str());
    require(walk.Close() == 0, "memory is given back");
    return 0;
}

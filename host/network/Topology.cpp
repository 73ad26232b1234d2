// The contract's way to the network of the drawing that is worked on.
#include "host/network/Network.h"

namespace ZEMGis::Topology {

CEntity::~CEntity() = default;
CTopologyStorage::~CTopologyStorage() = default;

std::wstring CEntity::GetHandleText() const
{
    const AcDbHandle handle = GetObjectId().handle();
    wchar_t text[17];
    return !handle.isNull() && handle.getIntoAsciiBuffer(text) ? text : std::wstring();
}

namespace {

/// What there is without a drawing.
class EmptyTopology final : public CTopologyStorage {
public:
    boost::shared_ptr<CSection> GetSectionById(const AcDbObjectId &) const override { return {}; }
    boost::shared_ptr<CSection> GetSectionByHandle(const wchar_t *) const override { return {}; }
    boost::shared_ptr<CSection> GetSectionByGuid(const wchar_t *) const override { return {}; }
};

struct KeepAlive {
    void operator()(CTopologyStorage *) const {} // the drawing owns its network
};

} // namespace

CTopologyMultiStorage *CTopologyMultiStorage::Instance()
{
    static CTopologyMultiStorage storage;
    return &storage;
}

boost::shared_ptr<CTopologyStorage> &CTopologyMultiStorage::GetTopology()
{
    static EmptyTopology none;
    static boost::shared_ptr<CTopologyStorage> current;
    velmor::Drawing *drawing = velmor::workingDrawing();
    CTopologyStorage *wanted = &none;
    if (drawing)
        wanted = &drawing->component<velmor::Network>();
    if (current.get() != wanted)
        current.reset(wanted, KeepAlive());
    return current;
}

} // namespace ZEMGis::Topology

// Data attached to an entity that the caller opened.
#include "host/drawing/Journal.h"
#include "host/services/DataBox.h"
#include "host/services/Text.h"

namespace ZEMGis::Data {

int CDataRW::Read(const wchar_t *key, CZEMCEntityPtr &entity, CDataBox &box, int /*flag*/, CGisSystem * /*system*/)
{
    velmor::journal("CDataRW::Read", key);
    velmor::Drawing *drawing = velmor::workingDrawing();
    box = CDataBox();
    if (!key || !entity.isOpen() || !drawing)
        return 0;
    if (const auto items = drawing->data(*entity.get(), velmor::utf8(key)))
        box = velmor::boxOf(*items);
    return box.IsNotNull() ? 1 : 0;
}

int CDataRW::Write(const wchar_t *key, CZEMCEntityPtr &entity, const CDataBox &box, CGisSystem * /*system*/)
{
    velmor::Drawing *drawing = velmor::workingDrawing();
    const bool can = key && *key && drawing && entity.isOpen() && entity.openMode() == AcDb::kForWrite;
    if (!can) {
        velmor::journal("CDataRW::Write", key, "refused");
        return 0;
    }
    velmor::journal("CDataRW::Write", key, velmor::handleText(*entity.get()), velmor::describe(box));
    drawing->setData(*entity.get(), velmor::utf8(key), velmor::itemsOf(box));
    return 1;
}

} // namespace ZEMGis::Data

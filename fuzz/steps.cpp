// Steps of a journal from any bytes: refused, or a step that can be done, undone and done again.
#include "fuzz/Require.h"
#include "host/drawing/StepCodec.h"

#include <string>
#include <string_view>

namespace {

const std::string &townText()
{
    static const std::string text = [] {
        const auto town = velmor::Drawing::createNew();
        for (int i = 0; i < 5; ++i)
            town->append(std::make_unique<AcDbLine>(AcGePoint3d(i, 0), AcGePoint3d(i, 1)));
        town->setData(*town->modelSpace().entities().front(), "KEY", {{1, L"value"}});
        town->ensureLayer(L"Layer");
        auto &block = town->addBlock(L"Block");
        town->append(std::make_unique<velmor::CircleEntity>(AcGePoint3d(), 1.0), block);
        return town->write();
    }();
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const auto town = velmor::Drawing::read(townText()).drawing;
    auto &log = town->component<velmor::ChangeLog>();
    velmor::StepCodec codec(*town);
    const std::string first = town->write();
    auto step = codec.decode({reinterpret_cast<const char *>(data), size});
    require(town->write() == first);
    if (!step)
        return 0;
    log.replay(std::move(*step));
    const std::string last = town->write();
    require(log.undo());
    require(log.redo());
    require(town->write() == last);
    require(velmor::Drawing::read(last).drawing != nullptr);
    return 0;
}

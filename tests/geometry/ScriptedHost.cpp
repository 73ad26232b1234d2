#include "tests/geometry/ScriptedHost.h"

#include "contracts/LogEngine.h"

#include <fmt/format.h>

#include <unistd.h>

#include <cstdarg>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

ScriptedHost *s_current = nullptr;

std::string narrow(const wchar_t *text)
{
    std::string result = "'";
    for (; *text; ++text)
        result += static_cast<char>(*text);
    return result + "'";
}

std::string pointText(const double *point)
{
    return fmt::format("<{},{},{}>", point[0], point[1], point[2]);
}

std::string picksText(const std::int64_t *name)
{
    return fmt::format("<picks {}>", name[0]);
}

int runCommand(std::vector<std::string> arguments, bool throughChain)
{
    ScriptedHost &host = ScriptedHost::current();
    host.commands.push_back(std::move(arguments));
    host.locksDuringCommand.push_back(host.locks);
    host.throughChain = throughChain;
    host.command();
    return RTERROR; // nobody looks at it
}

/// The log file of this process, gone at its end.
class LogFile {
public:
    LogFile()
    {
        std::string name = (std::filesystem::temp_directory_path() / "velmor-boundary-XXXXXX").string();
        const int file = mkstemp(name.data());
        if (file < 0)
            throw std::runtime_error("no temporary file");
        close(file);
        m_path = name;
    }
    ~LogFile() { std::filesystem::remove(m_path); }
    const std::filesystem::path &path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

LogFile &logFile()
{
    static LogFile file;
    return file;
}

class PlacedSection final : public ZEMGis::Topology::CSection {
public:
    PlacedSection(AcDbObjectId id, const SectionPlace &place) : m_id(id), m_place(place) {}
    AcDbObjectId GetObjectId() const override { return m_id; }
    void DrawTemporary(int, int) override {}
    std::wstring GetGuid() const override { return L""; }
    std::wstring GetName() const override { return L""; }
    int GetPropertyData(const wchar_t *, ZEMGis::Data::CDataBox &) const override { return 0; }
    int SetPropertyData(const wchar_t *, const ZEMGis::Data::CDataBox &) override { return 0; }
    ZEMGis::Topology::enmSectionType GetType() const override
    {
        return static_cast<ZEMGis::Topology::enmSectionType>(m_place.type);
    }
    double GetLength2D() const override { return m_place.start.distanceTo(m_place.end); }
    boost::shared_ptr<ZEMGis::Topology::CNode> GetStartingNode() const override { return {}; }
    boost::shared_ptr<ZEMGis::Topology::CNode> GetEndingNode() const override { return {}; }
    AcGePoint3d GetStartPoint() const override { return m_place.start; }
    AcGePoint3d GetEndPoint() const override { return m_place.end; }

private:
    AcDbObjectId m_id;
    SectionPlace m_place;
};

class PlacedSections final : public ZEMGis::Topology::CTopologyStorage {
public:
    boost::shared_ptr<ZEMGis::Topology::CSection> GetSectionById(const AcDbObjectId &id) const override
    {
        const auto &sections = ScriptedHost::current().sections;
        const auto found = sections.find(id.handle().value());
        if (id.isNull() || found == sections.end())
            return {};
        return boost::shared_ptr<ZEMGis::Topology::CSection>(new PlacedSection(id, found->second));
    }
    boost::shared_ptr<ZEMGis::Topology::CSection> GetSectionByHandle(const wchar_t *) const override { return {}; }
    boost::shared_ptr<ZEMGis::Topology::CSection> GetSectionByGuid(const wchar_t *) const override { return {}; }
};

} // namespace

ScriptedHost::ScriptedHost() : m_drawing(velmor::Drawing::createNew())
{
    s_current = this;
    velmor::setWorkingDrawing(m_drawing.get());
    takeTrace();
}

ScriptedHost::~ScriptedHost()
{
    velmor::setWorkingDrawing(nullptr);
    s_current = nullptr;
}

ScriptedHost &ScriptedHost::current()
{
    return *s_current;
}

AcDbObjectId ScriptedHost::addPolyline(const std::vector<AcDbPolyline::Vertex> &vertices, bool closed)
{
    return m_drawing->append(std::make_unique<AcDbPolyline>(vertices, closed));
}

AcDbObjectId ScriptedHost::addSquare(double x, double y, double side)
{
    return addPolyline({{x, y, 0}, {x + side, y, 0}, {x + side, y + side, 0}, {x, y + side, 0}});
}

std::vector<std::string> ScriptedHost::takeTrace()
{
    std::vector<std::string> lines;
    std::ifstream stream(logFile().path());
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line.size() > 11 ? line.substr(11) : line);
    stream.close();
    std::filesystem::resize_file(logFile().path(), 0);
    return lines;
}

// --- The contract's functions that this program brings
// ------------------------------------------------------------------

int CLogEngine::GetLoggingOnOff()
{
    return s_current ? s_current->logging : 0;
}

std::string CLogEngine::GetLogFileFullPath()
{
    return logFile().path().string();
}

int acedCommand(int kind, ...)
{
    std::vector<std::string> arguments;
    std::va_list list;
    va_start(list, kind);
    for (; kind != RTNONE; kind = va_arg(list, int)) {
        if (kind == RTSTR)
            arguments.push_back(narrow(va_arg(list, const wchar_t *)));
        else if (kind == RTPOINT || kind == RT3DPOINT)
            arguments.push_back(pointText(va_arg(list, const double *)));
        else if (kind == RTPICKS)
            arguments.push_back(picksText(va_arg(list, const std::int64_t *)));
        else
            break;
    }
    va_end(list);
    return runCommand(std::move(arguments), false);
}

int acedCmd(const resbuf *chain)
{
    std::vector<std::string> arguments;
    for (; chain && chain->restype != RTNONE; chain = chain->rbnext) {
        if (chain->restype == RTSTR)
            arguments.push_back(narrow(chain->resval.rstring));
        else if (chain->restype == RTPOINT || chain->restype == RT3DPOINT)
            arguments.push_back(pointText(chain->resval.rpoint));
        else if (chain->restype == RTPICKS)
            arguments.push_back(picksText(chain->resval.rlname));
    }
    return runCommand(std::move(arguments), true);
}

int acedSSLength(const ads_name set, std::int32_t *length)
{
    if (set[1] != 1)
        return RTERROR;
    *length = static_cast<std::int32_t>(set[0]);
    return RTNORM;
}

void acedAlert(const wchar_t *text)
{
    throw std::logic_error("boundary tracing shows no messages, but: " + narrow(text));
}

AcAxDocLock::AcAxDocLock()
{
    ++ScriptedHost::current().locks;
}

AcAxDocLock::~AcAxDocLock()
{
    --ScriptedHost::current().locks;
}

ZEMGis::Topology::CEntity::~CEntity() = default;
std::wstring ZEMGis::Topology::CEntity::GetHandleText() const
{
    return {};
}
ZEMGis::Topology::CTopologyStorage::~CTopologyStorage() = default;

ZEMGis::Topology::CTopologyMultiStorage *ZEMGis::Topology::CTopologyMultiStorage::Instance()
{
    static CTopologyMultiStorage storage;
    return &storage;
}

boost::shared_ptr<ZEMGis::Topology::CTopologyStorage> &ZEMGis::Topology::CTopologyMultiStorage::GetTopology()
{
    static boost::shared_ptr<CTopologyStorage> sections(new PlacedSections);
    return sections;
}

// Commands drawn by lot with answers that fit the drawing: everyday ones, those of networks and areas, and what dialogs
// and modules do. The same seed over the same drawing gives the same row of commands.
#pragma once

#include "host/drawing/Blocks.h"
#include "host/drawing/ObjectAccess.h"
#include "host/editor/Asker.h"
#include "host/editor/CommandStack.h"
#include "host/editor/Guarded.h"
#include "host/editor/Session.h"
#include "host/network/Network.h"
#include "host/sewage/CatchmentStore.h"
#include "tests/host/drawing/RandomChanges.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <set>

namespace velmor::test {

class CommandLot {
public:
    /// folder takes the files that are imported and inserted.
    CommandLot(Session &session, unsigned seed, const std::filesystem::path &folder);
    ~CommandLot();
    CommandLot(const CommandLot &) = delete;
    CommandLot &operator=(const CommandLot &) = delete;

    /// Runs one command; its name, with the option that was taken. Every tenth is cancelled on its way.
    std::string run();
    /// All that run() can answer: names that a long enough row has each changed the drawing with.
    static const std::vector<std::string> &names();
    /// Regions of lines that lie in heaps take their time: one in so many of the commands that look for them.
    int regionsOneIn = 20;
    /// UNDO and REDO take that many steps at most.
    std::size_t undoneAtOnce = 4;
    /// Handlers that threw on purpose.
    std::size_t failedHandlers = 0;
    /// Called behind each handler of a dialog, whose changes are kept for good.
    std::function<void()> afterHandler;

private:
    using Answers = std::vector<Answer>;
    std::size_t upTo(std::size_t count) { return m_random() % count; }
    Drawing &drawing() { return *m_session.drawing(); }
    std::wstring number(std::size_t below = 2000) { return std::to_wstring(upTo(below)); }
    Answer point() { return {number() + L"," + number()}; }
    /// Some entities that are there; read: such as stand in the file with data attached to them.
    AcDbObjectIdArray objects(bool read = false);
    AcDbObjectIdArray closedOnes();
    /// A layer that is there, one of that state as far as the lot finds it.
    std::wstring layer(const std::function<bool(const Layer &)> &isWanted = {});
    void changeAreas();
    /// A section or a node gets another name, as a person types it in the overview.
    void changeNames();
    void runDialog();
    Answers layerAnswers(std::string &name);
    Answers insertAnswers(std::string &name);
    Answers hatchAnswers(std::string &name);
    Answers answersFor(std::string &name);

    Session &m_session;
    std::mt19937 m_random;
    std::filesystem::path m_network, m_block;
    std::string m_last;
};

inline const std::vector<std::string> &CommandLot::names()
{
    static const std::vector<std::string> all{"WORK",
                                              "AREAS",
                                              "DIALOG",
                                              "LAYER",
                                              "LAYER _MAke",
                                              "LAYER _SEt",
                                              "LAYER _NEw",
                                              "LAYER _ON",
                                              "LAYER _OFF",
                                              "LAYER _FReeze",
                                              "LAYER _THaw",
                                              "LAYER _LOck",
                                              "LAYER _UNlock",
                                              "LAYER _COlour",
                                              "BOUNDARY",
                                              "BOUNDARY-LAYERS",
                                              "IMPORT",
                                              "UNDO",
                                              "REDO",
                                              "LINE",
                                              "PLINE",
                                              "CIRCLE",
                                              "ARC",
                                              "POINT",
                                              "TEXT",
                                              "HATCH",
                                              "HATCH of objects",
                                              "INSERT",
                                              "INSERT of a file",
                                              "ERASE",
                                              "ERASE of what was read",
                                              "MOVE",
                                              "MOVE of what was read",
                                              "COPY",
                                              "COPY of what was read",
                                              "PURGE"};
    return all;
}

inline CommandLot::CommandLot(Session &session, unsigned seed, const std::filesystem::path &folder)
    : m_session(session), m_random(seed), m_network(folder / "network.inp"), m_block(folder / "valve.dxf")
{
    std::ofstream(m_network) << "[JUNCTIONS]\nA 1 0\nB 1 0\n[OUTFALLS]\nC 0 FREE\n[CONDUITS]\nP A B 30 0.01 0 0\n"
                                "Q B C 40 0.01 0 0\n[COORDINATES]\nA 0 0\nB 30 0\nC 70 0\n";
    const auto block = Drawing::createNew();
    block->append(std::make_unique<CircleEntity>(AcGePoint3d(0, 0), 2.0));
    block->append(std::make_unique<AttributeDefinitionEntity>(L"MARK", L"", TextShape{{}, 2.5, 0.0, 1.0, 0, 0, L"m"}));
    block->save(m_block, {.backup = false});
    // What dialogs and the module do to a drawing.
    const auto add = [&](const wchar_t *name, auto work) {
        session.commands().addWork(
            name, 0,
            [work](Asker &) {
                work();
                return Command::Next::Commit;
            },
            false);
    };
    add(L"WORK", [this] {
        RandomChanges changes(drawing(), static_cast<unsigned>(m_random()));
        for (std::size_t count = 1 + upTo(3); count > 0; --count)
            changes.make();
    });
    add(L"AREAS", [this] { changeAreas(); });
    add(L"DIALOG", [this] { runDialog(); });
}

inline CommandLot::~CommandLot()
{
    std::error_code error;
    std::filesystem::remove(m_network, error);
    std::filesystem::remove(m_block, error);
}

inline AcDbObjectIdArray CommandLot::objects(bool read)
{
    AcDbObjectIdArray ids;
    const auto &all = drawing().modelSpace().entities();
    const std::size_t wanted = 1 + upTo(3);
    for (std::size_t tries = read ? 200 : 6; tries > 0 && ids.size() < wanted && !all.empty(); --tries) {
        AcDbEntity *entity = all[upTo(all.size())];
        if (entity->isErased())
            continue;
        if (read) {
            const bool hasData = drawing().data(*entity, "KEY0") || drawing().data(*entity, "KEY1");
            if (ObjectAccess::host(*entity).sourceLength == 0 || !hasData)
                continue;
        }
        ids.push_back(idOf(*entity));
    }
    return ids;
}

inline AcDbObjectIdArray CommandLot::closedOnes()
{
    const auto &all = drawing().modelSpace().entities();
    for (std::size_t tries = 100; tries > 0 && !all.empty(); --tries) {
        AcDbEntity *entity = all[upTo(all.size())];
        const auto *polyline = dynamic_cast<const AcDbPolyline *>(entity);
        if (!entity->isErased() && (dynamic_cast<const CircleEntity *>(entity) || (polyline && polyline->isClosed())))
            return {idOf(*entity)};
    }
    return {};
}

inline std::wstring CommandLot::layer(const std::function<bool(const Layer &)> &isWanted)
{
    const auto &layers = drawing().layers();
    for (int tries = 0; tries < 100; ++tries)
        if (const Layer &one = layers[upTo(layers.size())]; !one.erased && (!isWanted || isWanted(one)))
            return one.name;
    return L"0";
}

inline void CommandLot::changeAreas()
{
    auto &store = drawing().component<CatchmentStore>();
    auto areas = store.areas();
    const double x = static_cast<double>(upTo(1000)), y = static_cast<double>(upTo(1000));
    switch (upTo(5)) {
    case 0:
    case 1:
        store.create({{x, y}, {x + 10, y}, {x + 10, y + 10}, {x, y + 10}}, L"area " + number(), 1, {});
        break;
    case 2:
        if (!areas.empty())
            store.remove(*areas[upTo(areas.size())]);
        break;
    case 3:
        if (!areas.empty())
            areas[upTo(areas.size())]->SetName(L"name " + number());
        break;
    default:
        if (const auto &sections = drawing().component<Network>().sections(); !areas.empty() && !sections.empty())
            store.assign(*areas[upTo(areas.size())], {{sections[upTo(sections.size())], 0.5}});
        break;
    }
}

inline void CommandLot::changeNames()
{
    const auto &network = drawing().component<Network>();
    const ZEMGis::Data::CDataBox name(L"name " + number());
    const auto &sections = network.sections();
    if (sections.empty())
        return;
    const auto section = sections[upTo(sections.size())];
    const auto node = section->GetStartingNode();
    if (node && upTo(2) == 0)
        node->SetPropertyData(ZEMGis::Topology::kNameProperty, name);
    else
        section->SetPropertyData(ZEMGis::Topology::kNameProperty, name);
}

inline void CommandLot::runDialog()
{
    for (std::size_t handlers = 1 + upTo(3); handlers > 0; --handlers) {
        const bool fails = upTo(8) == 0;
        runGuarded(
            m_session, L"Dialog",
            [&] {
                RandomChanges changes(drawing(), static_cast<unsigned>(m_random()));
                changes.make();
                changeAreas();
                changeNames();
                failedHandlers += fails ? 1 : 0;
                if (fails)
                    throw std::runtime_error("the handler fails");
            },
            Kept::ForGood);
        if (afterHandler)
            afterHandler();
    }
}

inline CommandLot::Answers CommandLot::layerAnswers(std::string &name)
{
    static const char *const options[] = {"",        "_MAke", "_SEt",  "_NEw",    "_ON",    "_OFF",
                                          "_FReeze", "_THaw", "_LOck", "_UNlock", "_COlour"};
    const std::string option = options[upTo(std::size(options))];
    const std::wstring fresh = L"Layer" + number(300);
    if (option.empty())
        return {{fresh}};
    name += " " + option;
    Answers answers{{std::wstring(option.begin(), option.end())}};
    if (option == "_COlour")
        answers.push_back({std::to_wstring(1 + upTo(255))});
    if (option == "_NEw")
        answers.push_back({fresh + L"," + fresh + L"a"});
    else
        answers.push_back({option == "_MAke" ? fresh : layer([&](const Layer &one) {
            return option == "_ON"       ? !one.on
                   : option == "_OFF"    ? one.on
                   : option == "_THaw"   ? one.frozen
                   : option == "_LOck"   ? !one.locked
                   : option == "_UNlock" ? one.locked
                                         : !one.frozen;
        })});
    return answers;
}

inline CommandLot::Answers CommandLot::insertAnswers(std::string &name)
{
    if (upTo(4) == 0) {
        name += " of a file";
        return {{m_block.wstring()}, point(), {std::to_wstring(1 + upTo(5))}, {number(360)}, {L"mark " + number()}};
    }
    for (const auto &block : drawing().blocks()) {
        if (block->isErased() || block->isLayout() || upTo(3) != 0)
            continue;
        Answers answers{{block->name()}, point(), {std::to_wstring(1 + upTo(5))}, {number(360)}};
        for (const AcDbEntity *entity : block->entities())
            if (!entity->isErased() && kindOf(*entity) == EntityKind::AttributeDefinition)
                answers.push_back({L"text " + number()});
        return answers;
    }
    return {};
}

inline CommandLot::Answers CommandLot::hatchAnswers(std::string &name)
{
    Answers answers{{std::wstring(L"_Pattern")},
                    {std::wstring(upTo(2) == 0 ? L"NET" : L"ANSI31")},
                    {std::wstring(L"_Scale")},
                    {std::to_wstring(1 + upTo(20))}};
    if (upTo(static_cast<std::size_t>(regionsOneIn)) != 0) {
        name += " of objects";
        answers.push_back({std::wstring(L"_Objects")});
        answers.push_back({closedOnes()});
        answers.push_back({Answer::Enter{}});
    } else {
        answers.push_back(point());
    }
    answers.push_back({Answer::Enter{}});
    return answers;
}

inline CommandLot::Answers CommandLot::answersFor(std::string &name)
{
    const Answer enter{Answer::Enter{}};
    if (name == "LAYER")
        return layerAnswers(name);
    if (name == "BOUNDARY")
        return {point(), enter};
    if (name == "BOUNDARY-LAYERS")
        return {{layer()}, enter};
    if (name == "IMPORT")
        return {{m_network.wstring()}};
    if (name == "UNDO" || name == "REDO")
        return {{std::to_wstring(1 + upTo(undoneAtOnce))}};
    if (name == "LINE" || name == "PLINE")
        return {point(), point(), point(), enter};
    if (name == "CIRCLE")
        return {point(), {std::to_wstring(1 + upTo(50))}};
    if (name == "ARC")
        return {point(), point(), point()};
    if (name == "POINT")
        return {point()};
    if (name == "TEXT")
        return {point(), {std::to_wstring(1 + upTo(5))}, {number(360)}, {L"written š " + number()}};
    if (name == "HATCH")
        return hatchAnswers(name);
    if (name == "INSERT")
        return insertAnswers(name);
    if (name == "PURGE")
        return {{std::wstring(upTo(2) == 0 ? L"_All" : L"_Blocks")}};
    if (name == "ERASE" || name == "MOVE" || name == "COPY") {
        const bool read = upTo(name == "ERASE" ? 8 : 2) == 0;
        Answers answers{{objects(read)}, enter};
        if (read)
            name += " of what was read";
        if (!name.starts_with("ERASE")) {
            answers.push_back(point());
            answers.push_back(point());
        }
        if (name.starts_with("COPY"))
            answers.push_back(enter);
        return answers;
    }
    return {};
}

inline std::string CommandLot::run()
{
    static const std::vector<std::string> commands = [] {
        std::set<std::string> first;
        for (const std::string &name : names())
            first.insert(name.substr(0, name.find(' ')));
        return std::vector<std::string>(first.begin(), first.end());
    }();
    std::string name = commands[upTo(commands.size())];
    if (name == "BOUNDARY" && upTo(static_cast<std::size_t>(regionsOneIn)) != 0)
        name = "WORK";
    if (m_last == "UNDO" && upTo(2) == 0)
        name = "REDO"; // behind anything else there is nothing to redo
    // What was purged is drawn again more often.
    if (name == "PURGE" && upTo(3) != 0)
        name = "DIALOG";
    const std::wstring typed(name.begin(), name.end());
    auto answers = answersFor(name);
    if (upTo(10) == 0 && answers.size() > 1) {
        answers.resize(1 + upTo(answers.size() - 1));
        answers.push_back({Answer::Escape{}});
    }
    m_session.commands().start(typed, answers);
    m_last = name;
    return name;
}

} // namespace velmor::test

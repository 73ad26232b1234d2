// Where the entities of model space lie: what a view draws from, and what points and windows are looked up in.
//
// A loose quadtree. An entity stands in the smallest cell that is at least as large as its extents, by its middle; a
// cell holds a thousand or so before it is divided. Long polylines stand in it as runs of some segments each. Straight
// lines carry their ends, so that drawing them touches no entity. Built at the first question and kept up with the
// drawing from then on, at a cost that follows what changed.
#pragma once

#include "host/drawing/Drawing.h"

#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <unordered_map>
#include <vector>

namespace velmor {

class DisplayIndex final : private DrawingObserver {
public:
    enum class ItemKind : std::uint8_t {
        Line,   ///< a straight line entity; shape holds x1, y1, x2, y2
        Run,    ///< some segments of a polyline; shape holds a box, as for all others
        Entity, ///< all of an entity
        Mark,   ///< a point: as large on the screen at every scale
        Text,
        Hatch,
    };
    /// Coordinates are relative to the node's middle; a box holds all that is drawn, so it may be
    /// larger than the entity's extents.
    struct Item {
        float shape[4];
        std::uint32_t entity; ///< number; grows in the order of drawing
        std::uint32_t pen;
        std::uint32_t first; ///< Run: vertex that the first segment starts at
        std::uint8_t count;  ///< Run: segments
        ItemKind kind;
        bool gone; ///< to be passed over
    };
    struct Node {
        double x = 0.0, y = 0.0;                  ///< middle of the cell
        double half = 0.0;                        ///< half of the cell's size; what it holds lies within twice of that
        Extents box;                              ///< of everything in it and below it; may be larger than that
        std::uint32_t children[4] = {0, 0, 0, 0}; ///< by quadrant (1: right, 2: upper); 0: none
        bool divided = false;
        bool hasHatches = false; ///< among the items
        std::uint32_t gone = 0;  ///< number of items that are gone
        std::vector<Item> items; ///< in the order of drawing
    };
    /// What an item is drawn with.
    struct Pen {
        std::uint32_t layer = 0;
        std::int16_t color = 256; ///< index; 256: the layer's
        bool operator==(const Pen &) const = default;
    };
    /// The part of an entity that an item stands for; count 0: all of it.
    struct Part {
        AcDbEntity *entity = nullptr;
        std::size_t first = 0, count = 0;
    };

    explicit DisplayIndex(Drawing &drawing); ///< made by Drawing::component
    ~DisplayIndex() override;
    DisplayIndex(const DisplayIndex &) = delete;
    DisplayIndex &operator=(const DisplayIndex &) = delete;

    /// Grows with every change that may be seen.
    std::uint64_t revision();
    /// What may look different since a revision: a box (empty for nothing), or no value for everything.
    std::optional<Extents> changedSince(std::uint64_t revision) const;

    /// Calls visit(const Node &) for each node whose box meets the part of the world, outer ones before inner ones,
    /// always in the same order. When it answers false, what is below the node is passed over.
    template <class Visit>
    void visitNodes(const Extents &part, Visit visit)
    {
        bringUpToDate();
        visitNode(kRoot, part, visit);
        visitNode(kOutside, part, visit);
    }
    /// Calls visit(const Item &) for each item on a visible layer whose box meets the part of the world; a long
    /// polyline may come more than once, with other runs. It stops when the answer is false.
    template <class Visit>
    void visitItems(const Extents &part, Visit visit)
    {
        bool on = true;
        visitNodes(part, [&](const Node &node) {
            if (!on || !meets(node.box, part))
                return false;
            for (const Item &item : node.items) {
                if (item.gone || !isVisible(item) || !meets(boxOf(node, item), part))
                    continue;
                on = visit(item);
                if (!on)
                    return false;
            }
            return true;
        });
    }

    AcDbEntity &entity(std::uint32_t number) const { return *m_entities[number]; }
    Part partOf(const Item &item) const
    {
        return {m_entities[item.entity], item.first, item.kind == ItemKind::Run ? item.count : std::size_t{0}};
    }
    /// In the world.
    static Extents boxOf(const Node &node, const Item &item);
    static bool meets(const Extents &a, const Extents &b)
    {
        return a.minX <= b.maxX && a.maxX >= b.minX && a.minY <= b.maxY && a.maxY >= b.minY;
    }
    const std::vector<Pen> &pens() const { return m_pens; }
    bool isVisible(const Pen &pen) const { return m_layers[pen.layer].visible; }
    bool isVisible(const Item &item) const { return isVisible(m_pens[item.pen]); }
    /// Extents of everything visible.
    Extents visibleExtents();
    std::size_t memoryBytes() const;
    /// How often it was built from nothing; for tests.
    std::size_t builds() const { return m_builds; }

private:
    static constexpr std::uint32_t kRoot = 1;    ///< node 0 stands for none
    static constexpr std::uint32_t kOutside = 2; ///< what lies beyond any map, in no cell
    static constexpr std::uint32_t kNowhere = 0;
    static constexpr std::uint32_t kStays = 4;             ///< instead of a quadrant: in no child
    static constexpr std::uint32_t kSeveral = 0x80000000u; ///< a place in m_several

    struct LayerState {
        bool visible = true;
        int color = 7;
        bool operator==(const LayerState &) const = default;
    };
    struct Loose { ///< an item on its way into a node
        Extents box;
        Item item;
    };

    void entityAppended(AcDbEntity &entity) override;
    void entityModified(AcDbEntity &entity) override;
    void entityErased(AcDbEntity &entity, bool erased) override;

    template <class Visit>
    void visitNode(std::uint32_t index, const Extents &part, Visit &visit)
    {
        const Node &node = m_nodes[index];
        if (!meets(node.box, part) || !visit(node) || !node.divided)
            return;
        for (const std::uint32_t child : node.children)
            if (child != 0)
                visitNode(child, part, visit);
    }

    void bringUpToDate();
    /// The entity's number; none when it does not stand in model space.
    std::optional<std::uint32_t> numberOf(const AcDbEntity &entity) const;
    void build();
    void measureReferences();
    void checkLayers();
    bool noteBlockChange(const AcDbEntity &entity);
    void changed(const Extents &box);
    void changedAll();

    std::uint32_t penOf(const AcDbEntity &entity);
    void looseItems(std::uint32_t number, std::vector<Loose> &items);
    void place(std::uint32_t number);
    void takeOut(std::uint32_t number);
    /// The box of what was taken out.
    Extents takeOutOf(std::uint32_t index, std::uint32_t number);
    void noteNode(std::uint32_t number, std::uint32_t node);
    void moveTo(std::uint32_t from, std::uint32_t to, std::uint32_t number);
    static bool isOnMap(const Extents &box);

    void insert(const Loose &loose);
    void put(std::uint32_t index, const Loose &loose);
    void growRoot(const Extents &box);
    void divide(std::uint32_t index);
    /// Puts items[begin, end), which all belong into the node, into it and below it; changes their order.
    void fill(std::uint32_t index, std::vector<Loose> &items, std::size_t begin, std::size_t end);
    static std::uint32_t childFor(const Node &node, const Extents &box);
    std::uint32_t childOf(std::uint32_t index, std::uint32_t quadrant); ///< made when there is none

    Drawing &m_drawing;
    double m_largestOvershoot = 0.0; ///< by which a box may be larger than the entity's extents
    bool m_built = false, m_referencesStale = false;
    std::size_t m_builds = 0;
    std::vector<Node> m_nodes;
    std::vector<Pen> m_pens;
    std::unordered_map<std::uint64_t, std::uint32_t> m_penNumbers;
    std::vector<AcDbEntity *> m_entities; ///< by number
    std::vector<std::uint32_t> m_where;   ///< by number: a node, kNowhere, or kSeveral + a place in m_several
    std::vector<std::vector<std::uint32_t>> m_several; ///< nodes of entities with more than one run
    std::vector<std::uint32_t> m_freeSeveral;          ///< places in it that may be taken again
    std::vector<std::uint32_t> m_byAddress;            ///< numbers of those that were there when it was built
    std::unordered_map<const AcDbEntity *, std::uint32_t> m_later;
    std::vector<LayerState> m_layers;
    std::uint64_t m_checkedRevision = std::numeric_limits<std::uint64_t>::max(); ///< of the drawing
    std::uint64_t m_revision = 1;
    std::uint64_t m_allSince = 1;                            ///< the latest revision at which everything changed
    std::deque<std::pair<std::uint64_t, Extents>> m_changes; ///< the last ones, oldest first
    std::uint64_t m_forgotten = 0;                           ///< the latest revision that is no longer among m_changes
};

} // namespace velmor
